#include "operation/list_pane.hpp"

#include "core/files/files.hpp"
#include "core/port_choice.hpp"
#include "core/serial_format.hpp"
#include "core/text.hpp"
#include "core/usage_error.hpp"
#include "operation/trial.hpp"

#include <algorithm>
#include <array>
#include <utility>

namespace telvox::operation {

namespace {

/// Whether a list says what its devices are reached by; else that is the user's, once for all of them.
bool names_ports(const DeviceList &list) {
    constexpr std::array names = {"schnittstelle", "modemanschluss", "com-direkt", "com-fern"};
    return std::find_first_of(list.columns.begin(), list.columns.end(), names.begin(), names.end()) !=
           list.columns.end();
}

} // namespace

ListPane::ListPane(Telvox &program, PortScan &ports, Profiles &profiles, Now now)
    : program_(program),
      desk_(program.desk),
      main_(program.desk.frmModem),
      ports_(ports),
      profiles_(profiles),
      operator_(program, ports),
      now_(std::move(now)) {
    profiles.list_is_open = [this] { return work_ != nullptr; };
    main_.mnuListe_oeffnen.clicked = [this] { ask_to_open(); };
    main_.tblListe.chosen = [this](std::size_t row) {
        told_.clear();
        choose(row);
    };
    main_.tblListe.cell = [this](std::size_t row, std::size_t column) { return cell(row, column); };
    main_.tblListe.mark = [this](std::size_t row) {
        const auto &last = work_->results.last(row);
        return !last || runs(row) ? RowTable::Mark::none : mark_of(last->outcome);
    };
    main_.tblListe.marked = 2; // the outcome
    main_.cbuListe_starten.clicked = [this] { start(); };
    main_.cbuListe_ueberspringen.clicked = [this] { skip(); };
    main_.cbuListe_schliessen.clicked = [this] { close(); };
    plan_.begun = [this](const Button &by) { begun(by); };
    plan_.over = [this](const WorkEnd &end) { over(end); };
    plan_.opened = [this](Form &form) {
        profiles_.leave_to_others();
        dialog_ = &form;
    };
    plan_.done_before = [this](const std::string &imei) {
        return work_ ? device_of_other_row(work_->list, work_->results, current_, imei) : "";
    };
    desk_.observers.add(*this);
}

void ListPane::with(AllRows &all) {
    all_ = &all;
    all.over = [this] { all_over(); };
    main_.cbuListe_alle.clicked =
        main_.mnuListe_alle.clicked = [this] { all_->running() ? all_->hold(!all_->held()) : start_all(); };
}

void ListPane::with(CableWatch &watch) {
    watch_ = &watch;
    watch.noticed = [this] {
        if (watch_->seen() == CableWatch::Seen::back)
            last_at_cable_ = none;
        program_.refresh();
    };
}

void ListPane::ask_to_open() {
    desk_.files.ask({.title = "Liste öffnen", .filter = "Tabellen (*.csv)"},
                    [this](const FileAnswer &answer) {
                        if (!answer.path.empty())
                            open(answer.path);
                    });
}

void ListPane::open(const std::string &path) {
    try {
        if (busy())
            throw UsageError(already_running);
        DeviceList list = read_list(path_of(path));
        Values base = work_ ? base_ : main_window_values(desk_, names_ports(list));
        std::vector<Order> orders = checked(list, base);
        const std::filesystem::path results = result_path(path_of(path));
        if (std::error_code error; work_ && std::filesystem::equivalent(results, work_->path, error))
            close(); // nobody else may write them
        std::unique_ptr<Work> work(new Work{list, std::move(orders), results, ResultFile(results, list)});
        close();
        work_ = std::move(work);
        base_ = std::move(base);
    } catch (const UsageError &failure) {
        return program_.together([&] {
            desk_.outbox.show_unrecorded(std::string("Die Liste wurde nicht geöffnet.\r") + failure.what());
        });
    }
    program_.together([&] {
        main_.fraListe.visible = true;
        show_columns();
        main_.tblListe.rows = work_->list.rows.size();
        desk_.focus(main_.tblListe);
        current_ = none;
        told_.clear();
        go_on();
    });
}

/// Every row is tried out, so that what a field refuses is known before the first device is begun. The
/// buttons are not pressed: what is missing in a row may be what the user enters at each device.
std::vector<Order> ListPane::checked(const DeviceList &list, const Values &base) const {
    std::vector<Order> orders;
    Profile profile = profiles_.in_force();
    std::erase_if(profile.main, [](const auto &value) { // what is left of it is the form's
        return !find_option(around_options(), value.first);
    });
    try_out(
        list, {.values = {}, .profile = std::move(profile)}, base,
        {.folders = desk_.folders,
         .exists = [&](const std::string &device) { return ports_.number_of(device) != 0; },
         .listed = true,
         .presses = false},
        [](std::size_t) { return true; },
        [&](std::size_t, const Order &order, const Trial &) { orders.push_back(order); });
    return orders;
}

void ListPane::choose(std::size_t row) {
    if (!work_ || busy())
        return;
    program_.together([&] {
        if (dialog_) // of another row, whose values it holds
            program_.dismiss(*std::exchange(dialog_, nullptr));
        current_ = row;
        filled_ = fill(row);
    });
}

/// What was right when the list was opened may have become impossible: its adapter has been unplugged since.
bool ListPane::fill(std::size_t row) {
    try {
        operator_.begin_with(base_);
        operator_.fill_main_window(work_->orders[row].values);
        return true;
    } catch (const UsageError &failure) {
        operator_.begin_with(base_);
        desk_.outbox.show_unrecorded(failure.what());
        return false;
    }
}

void ListPane::start() {
    if (current_ == none || busy())
        return;
    if (!filled_)
        choose(current_);
    if (!filled_)
        return;
    const auto &last = work_->results.last(current_);
    const std::string question = last && last->outcome == RowOutcome::begun
                                     ? label_of(work_->list.rows[current_]) + ": " + word_of(last->outcome) +
                                           ". Noch einmal ausführen?"
                                     : question_about_device();
    if (question.empty())
        return start_row();
    desk_.outbox.ask(question, [this, row = current_](bool yes) {
        if (yes && row == current_ && !busy())
            start_row();
    });
}

/// A device that tells no number may be the last one still; one Enter too many must not write it again.
std::string ListPane::question_about_device() const {
    const Order &order = work_->orders[current_];
    const ModemType type = main_.modem_type();
    if (!main_.chkListe_pruefen.value || last_at_cable_ == none || last_at_cable_ == current_ ||
        !main_.optDirektverbindung.value || type == ModemType::GSM || type == ModemType::GPRS ||
        work_->orders[last_at_cable_].job != order.job || work_->results.last(last_at_cable_)->port != port())
        return {};
    return "Am Kabel hing zuletzt das Gerät von " + named(work_->list.rows[last_at_cable_]) +
           ". Ist jetzt das andere angeschlossen?";
}

void ListPane::start_row() {
    Order order = work_->orders[current_];
    if (!main_.chkListe_pruefen.value)
        order.values.emplace("geraet-pruefen", Given{"aus", {}});
    try {
        plan_.start(order, true);
    } catch (const UsageError &failure) {
        desk_.outbox.show_unrecorded(failure.what());
    }
}

/// So many writes at once begin by no key alone.
void ListPane::start_all() {
    if (!work_ || busy())
        return;
    const std::size_t rows = all_->look({.list = work_->list,
                                         .orders = work_->orders,
                                         .results = work_->results,
                                         .base = base_,
                                         .now = [this] { return local_time(now_()); }});
    if (rows == 0)
        return desk_.outbox.show_unrecorded(
            "Keine Zeile lässt sich ausführen, ohne dass jemand am Kabel ist.\r"
            "Dafür braucht sie ein Modem oder eine Schnittstelle für sich und alle Angaben.");
    desk_.outbox.ask_unrecorded("Zeilen, die jetzt ausgeführt werden: " + std::to_string(rows) +
                                    ". Offen bleiben: " + std::to_string(all_->left()) + ". Fortfahren?",
                                [this](bool yes) {
                                    if (yes && work_ && !busy())
                                        begin_all();
                                });
}

void ListPane::begin_all() {
    if (dialog_)
        program_.dismiss(*std::exchange(dialog_, nullptr));
    told_.clear();
    wants_ports();
    desk_.prz_Eingaben_deaktivieren();
    all_->begin(main_.chkListe_pruefen.value, main_.chkListe_nochmal.value);
}

void ListPane::all_over() {
    desk_.prz_Eingaben_aktivieren();
    told_ = all_->summary();
    if (const std::string why = all_->unwritten(); !why.empty())
        desk_.outbox.show_unrecorded(why);
    current_ = none;
    go_on();
}

void ListPane::skip() {
    if (current_ == none || busy() || !keep(current_, {.outcome = RowOutcome::skipped}))
        return;
    told_.clear();
    desk_.focus(main_.tblListe); // the usual Enter is for the next device
    go_on();
}

void ListPane::close() {
    if (!work_ || busy())
        return;
    program_.together([&] {
        if (dialog_)
            program_.dismiss(*std::exchange(dialog_, nullptr));
        wants_ports();
        operator_.begin_with(base_);
        work_.reset();
        current_ = last_at_cable_ = none;
        main_.tblListe.rows = 0;
        main_.fraListe.visible = main_.mnuListe_alle.enabled = false;
        program_.tell("Bereit");
    });
}

/// The row's job may also be started by its own button, after the user has put something right in the form. A
/// dialog that the user has opened himself holds nothing of the row.
bool ListPane::of_row(const Button &by) const {
    return work_ && filled_ && current_ != none && &by == &button_of(work_->orders[current_]) &&
           (by.form == &main_ || by.form == dialog_);
}

void ListPane::begun(const Button &by) {
    if (!of_row(by))
        return;
    running_ = current_;
    told_.clear();
    hint_.clear();
    if (!keep(running_, {.outcome = RowOutcome::begun, .port = port()}))
        program_.cancel(); // nothing has been sent, and nobody would know of it
}

void ListPane::over(const WorkEnd &end) {
    if (running_ == none || end.by != &button_of(work_->orders[running_]))
        return;
    const std::size_t row = std::exchange(running_, none);
    const Order &order = work_->orders[row];
    const bool well = went_well(end.outcome);
    Attempt attempt = attempt_of(end, *order.job, desk_);
    attempt.port = port();
    const bool kept = keep(row, std::move(attempt));
    const std::string label = label_of(work_->list.rows[row]);
    told_ = label + ": " + word_of(row_outcome(end.outcome));
    for (auto &[message, answered] : desk_.outbox.waiting())
        for (const Message &of_job : end.said)
            if (message == of_job) {
                message.about = label;
                // A box about it would lie over the next device's data.
                message.shown = message.tone == Tone::failure ||
                                !(end.outcome == Outcome::succeeded || end.outcome == Outcome::differs) ||
                                !kept;
            }
    if (!kept || !(well || end.outcome == Outcome::differs))
        return;
    last_at_cable_ = main_.optDirektverbindung.value ? row : none;
    if (Form &form = *button_of(order).form; &form != &main_)
        program_.dismiss(form);
    dialog_ = nullptr;
    go_on();
    watch_cable(*order.job);
}

/// So that the user need not say what can be seen: that the next device is there.
void ListPane::watch_cable(const JobCommand &job) {
    const JobValues &done = desk_.job_values;
    const auto port = parse_port_number(done.cable_port);
    const auto format = parse_format(done.strCOMparameter_direkt);
    if (watch_ && port && format && !job.leaves_busy && current_ != none && !question_about_device().empty())
        watch_->begin(done.type, *port, *format);
}

void ListPane::wants_ports() {
    if (watch_)
        watch_->end();
}

/// They are the computer's, not a device's: they hold for the rows to come.
void ListPane::settings_saved() {
    base_["com-direkt"].value = desk_.session.strCOMparameter_direkt;
    base_["com-fern"].value = desk_.session.strCOMparameter_fern;
}

void ListPane::happened() {
    if (dialog_ && !dialog_->open)
        dialog_ = nullptr;
    if (work_ && !main_.chkListe_pruefen.value)
        wants_ports();
    if (work_)
        show();
}

void ListPane::hint(const std::string &text) {
    if (!work_)
        return program_.tell(text);
    hint_ = text;
    show();
}

std::string ListPane::running() const {
    return work_ && running_ != none ? label_of(work_->list.rows[running_]) : "";
}

std::optional<ListRecord> ListPane::record() const {
    if (!work_)
        return std::nullopt;
    return ListRecord{work_->list, work_->results, all_rows(work_->list)};
}

std::string ListPane::port() const {
    const bool remote = main_.optFernverbindung.value;
    return operator_.by_path(port_name(remote ? main_.cobModem_Port.text : main_.cobSchnittstelle.text));
}

bool ListPane::keep(std::size_t row, Attempt attempt) {
    attempt.time = local_time(now_());
    const std::string failure = work_->results.append(row, std::move(attempt));
    const auto &waiting = desk_.outbox.waiting();
    if (!failure.empty() && std::none_of(waiting.begin(), waiting.end(),
                                         [&](const auto &box) { return box.message.text == failure; }))
        desk_.outbox.show_unrecorded(failure);
    return failure.empty();
}

void ListPane::go_on() {
    if (const std::size_t next = next_open(); next != none)
        return choose(next);
    current_ = none; // one Enter too many does no device again
    show();
    program_.tell(work_->list.source + ": alle Geräte sind erledigt");
}

/// The next row that nobody has tried, round the end of the list; when there is none, the first that did not
/// go well.
std::size_t ListPane::next_open() const {
    const std::size_t count = work_->list.rows.size(), from = current_ == none ? 0 : current_ + 1;
    for (std::size_t i = 0; i < count; ++i)
        if (const std::size_t row = (from + i) % count; !work_->results.last(row))
            return row;
    for (std::size_t row = 0; row < count; ++row)
        if (!work_->results.done(row))
            return row;
    return none;
}

Button &ListPane::button_of(const Order &order) const {
    return dynamic_cast<Button &>(order.job->button(desk_));
}

} // namespace telvox::operation
