#include "telvox.hpp"

#include "core/port_choice.hpp"
#include "dialogues/families.hpp"
#include "ui/jobs.hpp"
#include "ui/port_lists.hpp"

#include <algorithm>
#include <utility>

namespace telvox {

Telvox::Telvox(const Ports &ports, DataFolders folders)
    : ports_(ports),
      recorder_(ports.comSeriell, Mask([this] { return desk.secrets(); }, secret_labels()),
                [&timer = ports.Timer1] { return timer.now(); }),
      link_(recorder_),
      sequencer_({.desk = desk,
                  .panel = desk,
                  .jobs = desk.jobs,
                  .session = desk.session,
                  .values = desk.job_values,
                  .findings = desk.findings,
                  .link = link_,
                  .timer = ports.Timer1,
                  .outbox = desk.outbox,
                  .families = family_of_job,
                  .reports = device_reports,
                  .blocked =
                      [this] {
                          desk.observers.tell(&Observer::wants_ports);
                          return long_work() && long_work()->by_others();
                      },
                  .started = [this](const Button &by) { starts_.push_back(job_by_ = &by); },
                  .ended = [this](JobEnd end) { ends_.push_back(std::move(end)); }}),
      network_({.Winsock = ports.Winsock,
                .processes = ports.processes,
                .Timer2 = ports.Timer2,
                .outbox = desk.outbox,
                .data_folder = desk.folders.settings,
                .observers = desk.observers,
                .started = [this](const Button &by) { starts_.push_back(action_by_ = &by); },
                .ended = [this](JobEnd end) { ends_.push_back(std::move(end)); }}) {
    desk.folders = std::move(folders);
    desk.observers.add(*this);
    connect_main_window(desk, sequencer_);
    connect_small_dialogs(desk, sequencer_);
    connect_ethernet(desk, sequencer_, network_, ethernet_dialogues);
    connect_gprs_dialogs(desk, sequencer_);
    connect_settings(desk, sequencer_);
    connect_protocol(desk, recorder_);
    connect_port_lists(desk, ports_.scan);
    connect_the_end();
    desk.frmModem.mnuHilfe.clicked = [this] { show_help({}); };
    sequencer_.prz_Initialisieren();
    prz_Einstellungen_laden(desk.session, desk.folders.settings);
    for (const auto format : {&Session::strCOMparameter_direkt, &Session::strCOMparameter_fern})
        if (!(desk.session.*format).empty())
            record_format(format);
    desk.frmModem.open = true;
    desk.frmModem.compute();
}

void Telvox::connect_the_end() {
    FrmModem &main = desk.frmModem;
    main.cancel = &main.cbuBeenden;
    main.cbuAbbrechen.clicked = [this] { end_running(); };
    main.mnuBeenden.clicked = [&main] { main.cbuBeenden.clicked(); };
    main.cbuBeenden.clicked = [this] {
        if (!busy() && !unsaved_)
            return desk.frmModem.unload();
        if (!busy())
            return desk.outbox.ask("Es gibt nicht gespeicherte Angaben. Trotzdem beenden?", [this](bool yes) {
                if (yes)
                    desk.frmModem.unload();
            });
        desk.outbox.ask("Es läuft noch ein Vorgang. Trotzdem beenden?", [this](bool yes) {
            if (yes)
                leave();
        });
    };
}

LongWork *Telvox::long_work() const {
    const auto running =
        std::find_if(works_.begin(), works_.end(), [](auto work) { return work->running(); });
    return running == works_.end() ? nullptr : *running;
}

void Telvox::leave() {
    if (LongWork *work = long_work())
        work->cancel();
    sequencer_.abandon();
    network_.abandon();
    leaving_ = true;
}

/// Counts as long as it lives.
struct Deeper {
    explicit Deeper(int &of) : depth(of) { ++depth; }
    ~Deeper() { --depth; }
    Deeper(const Deeper &) = delete;
    Deeper &operator=(const Deeper &) = delete;
    int &depth;
};

template <class Handler> void Telvox::event(Handler &&handler) {
    if (gone_)
        return;
    {
        const Deeper deeper(depth_);
        handler();
        for (Form *form : desk.forms)
            form->compute();
        if (depth_ == 1)
            tell_observers();
    }
    if (depth_ == 0)
        after_event();
}

/// What they do about an end may end something else.
void Telvox::tell_observers() {
    do {
        while (!starts_.empty() || !ends_.empty()) {
            for (const Button *by : std::exchange(starts_, {}))
                desk.observers.tell(&Observer::started, *by);
            for (const JobEnd &end : std::exchange(ends_, {}))
                desk.observers.tell(&Observer::ended, end);
        }
        desk.observers.tell(&Observer::happened);
    } while (!starts_.empty() || !ends_.empty());
}

void Telvox::status(std::string_view text) {
    recorder_.note(RecordLine::Kind::done, "status " + std::string(text));
}

/// A job sends what stands there, but for one that only looks.
void Telvox::ended(const JobEnd &end) {
    const bool looks = end.by == &desk.frmModem.cbuErkennen || end.by->form == &desk.frmGSM_Status;
    if (went_well(end.outcome) && !looks)
        unsaved_ = false;
}

/// Of what is filled in, only what the user does counts: his events are within no other.
void Telvox::note_change(bool typed) {
    unsaved_ |= depth_ == 1 && (typed || of_profile_);
    changed_ |= depth_ == 1;
}

void Telvox::saved() {
    unsaved_ = changed_ = false;
    of_profile_ = true;
}

void Telvox::record_format(std::string Session::*format) {
    recorder_.input(
        "set", format == &Session::strCOMparameter_direkt ? "strCOMparameter_direkt" : "strCOMparameter_fern",
        desk.session.*format);
}

void Telvox::set_format(std::string Session::*format, const std::string &value) {
    event([&] {
        desk.session.*format = value;
        record_format(format);
    });
}

void Telvox::tell(const std::string &text) {
    if (text == desk.frmModem.StatusBar.text)
        return;
    event([&] {
        recorder_.input("tell", text, {});
        desk.frmModem.StatusBar.text = text;
    });
}

void Telvox::together(const std::function<void()> &events) { event(events); }

void Telvox::begin_again(const std::string &what, const std::function<void()> &fill) {
    struct Pause {
        explicit Pause(Recorder &of) : recorder(of) { recorder.pause(true); }
        ~Pause() { recorder.pause(false); }
        Recorder &recorder;
    };
    event([&] {
        recorder_.input("begin", what, {});
        const Pause pause(recorder_);
        const std::size_t said = desk.outbox.waiting().size();
        desk.frmModem.reset();
        for (const auto code : {&Session::strSMS_Protokoll, &Session::strSMS_Protokoll_ISDN,
                                &Session::strSMS_Protokoll_ISDN_fern})
            (desk.session.*code).clear();
        fill();
        desk.outbox.forget(said);
    });
}

void Telvox::dismiss(Form &form) {
    if (form.open)
        event([&] {
            recorder_.input("dismiss", form.name, {});
            form.unload();
        });
}

void Telvox::after_event() {
    if (leaving_ && !busy())
        desk.frmModem.unload();
    if (ports_.comSeriell.PortOpen())
        ports_.comSeriell.watch_carrier(desk.jobs.boolAnwahl_Fehler || desk.jobs.carrier_up);
    const Progress progress = this->progress();
    const bool ends = long_work() || sequencer_.busy() ? !progress.hangs_up : network_.busy();
    desk.frmModem.show_progress(progress, ends);
    desk.observers.tell(&Observer::draw);
    for (auto &[message, answered] : desk.outbox.take()) {
        if (message.recorded)
            recorder_.note(RecordLine::Kind::done, record_of(message));
        if (!message.shown)
            continue;
        if (!answered)
            ports_.boxes.show(message, {});
        else
            ports_.boxes.show(message, [this, answered = std::move(answered),
                                        asks = message.asks && message.recorded](bool yes) {
                if (asks)
                    recorder_.input("answer", yes ? "ja" : "nein", {});
                event([&] { answered(yes); });
            });
    }
    for (auto &[question, answered] : desk.files.take())
        if (ports_.files)
            ports_.files->show(question, [this, answered = std::move(answered)](const FileAnswer &answer) {
                event([&] { answered(answer); });
            });
    desk.observers.tell(&Observer::settled);
}

/// How a record names a control: with its window, because several have one of that name.
static std::string recorded(const Control &control) {
    return std::string(control.form->name) + "." + control.name;
}

/// Two buttons "Abbrechen" stand above each other then: the window's and the status bar's. What runs besides,
/// from elsewhere, is not the window's to end.
bool Telvox::end_own_job(const Button &button) {
    const Form &form = *button.form;
    if (form.cancel != &button || &form == &desk.frmModem)
        return false;
    const LongWork *work = long_work();
    const bool action = network_.busy() && action_by_->form == &form;
    const bool job = (work ? !work->by_others() : sequencer_.busy()) && job_by_->form == &form;
    if (action)
        network_.cancel();
    else if (job)
        end_running();
    return action || job;
}

void Telvox::click(Button &button) {
    if (!button.usable())
        return;
    if (button.recorded)
        recorder_.input("click", recorded(button), {});
    event([&] {
        if (!end_own_job(button))
            button.clicked();
    });
}

void Telvox::click(MenuEntry &entry) {
    if (!entry.usable())
        return;
    if (entry.recorded)
        recorder_.input("click", recorded(entry), {});
    event([&] { entry.clicked(); });
}

void Telvox::put(Control &control, std::string_view value) {
    if (!control.usable())
        return;
    event([&] {
        if (!control.take(value) || !control.recorded)
            return;
        record(control);
        note_change(false);
    });
}

void Telvox::choose(OptionButton &option) { put(option, "ein"); }

void Telvox::set(CheckBox &box, bool on) { put(box, on ? "ein" : "aus"); }

void Telvox::enter(TextBox &box, std::string_view input) {
    if (!box.usable() || box.read_only)
        return;
    event([&] {
        const std::string before = std::exchange(box.text, box.filtered(input));
        if (!box.recorded)
            return;
        record(box);
        if (box.text != before)
            note_change(box.form == &desk.frmModem);
    });
}

void Telvox::select(ComboBox &list, std::string_view entry) { put(list, entry); }

/// A port is recorded by its number: which ports there are is part of what is played.
void Telvox::record(const Control &control) {
    if (!control.recorded)
        return;
    const bool cable = &control == &desk.frmModem.cobSchnittstelle;
    const auto [verb, value] = control.input();
    if (!cable && &control != &desk.frmModem.cobModem_Port)
        return recorder_.input(verb, recorded(control), value);
    if (const auto number = value.find_first_of("0123456789"); number != std::string::npos)
        recorder_.input(cable ? "cable" : "modem", value.substr(number), {});
}

void Telvox::select(ListBox &list, int position) {
    if (list.usable() && position >= 0 && position < static_cast<int>(list.items.size()))
        event([&] { list.clicked(std::exchange(list.selected, position)); });
}

void Telvox::click(ListBox &list, int position) {
    if (list.usable() && position >= 0 && position < static_cast<int>(list.items.size()))
        event([&] {
            list.selected = position;
            list.clicked(-1);
        });
}

void Telvox::choose(RowTable &table, std::size_t row) {
    if (table.usable() && row < table.rows && row != table.selected)
        event([&] { table.chosen(row); });
}

void Telvox::double_click(ListBox &list) {
    if (list.usable())
        event([&] { list.double_clicked(); });
}

void Telvox::leave(TextBox &box) {
    if (box.usable())
        event([&] { box.lost_focus(); });
}

void Telvox::focus(ComboBox &list) {
    if (list.usable())
        event([&] { list.got_focus(); });
}

void Telvox::close(Form &form) {
    if (form.cancel)
        click(*form.cancel);
    else
        event([&] { form.unload(); });
}

void Telvox::help(const Form &form, const Control *control) {
    event([&] { show_help(control ? std::string(form.name) + "." + control->name : form.name); });
}

void Telvox::show_help(std::string_view topic) {
    const std::string failure = ports_.help ? ports_.help->show(topic) : "";
    if (!failure.empty())
        desk.outbox.show_unrecorded(failure);
}

void Telvox::Timer1_Timer() {
    event([&] { sequencer_.Timer1_Timer(); });
}

void Telvox::comSeriell_OnComm(CommEvent reason) {
    event([&] {
        recorder_.event(reason);
        sequencer_.comSeriell_OnComm(reason);
    });
}

void Telvox::refresh() {
    event([] {});
}

void Telvox::Timer2_Timer() {
    event([&] { network_.Timer2_Timer(); });
}

void Telvox::Winsock_DataArrival(std::string_view bytes) {
    event([&] { network_.Winsock_DataArrival(bytes); });
}

void Telvox::process_ended(const ProcessEnd &end) {
    event([&] { network_.process_ended(end); });
}

void Telvox::cancel() {
    event([&] { end_running(); });
}

void Telvox::end_running() {
    if (LongWork *work = long_work()) {
        work->cancel();
        return sequencer_.abandon(); // the part of it that runs
    }
    sequencer_.busy() ? sequencer_.cancel() : network_.cancel();
}

void Telvox::offer_port(int number) {
    event([&] {
        const std::string entry = port_entry(number);
        for (ComboBox *list : {&desk.frmModem.cobModem_Port, &desk.frmModem.cobSchnittstelle})
            if (std::find(list->items.begin(), list->items.end(), entry) == list->items.end())
                list->items.push_back(entry);
    });
}

void Telvox::Form_Unload() {
    gone_ = true;
    ports_.Timer1.Enabled(false);
    sequencer_.close_port();
    network_.stop();
}

} // namespace telvox
