#include "operation/plan.hpp"

#include "core/text.hpp"
#include "core/usage_error.hpp"
#include "dialogues/mobile.hpp"
#include "operation/backups.hpp"

#include <algorithm>
#include <utility>

namespace telvox::operation {

namespace {

const JobCommand &imei_query() { return *find_job("imei"); }

/// As long as a device may take to start anew: each try that stays unanswered takes half a minute.
constexpr int most_tries = 6;

/// Whether it fills the dialog that another job writes.
bool is_read(const JobCommand &job) {
    const std::span<const JobCommand> all = job_commands();
    return std::any_of(all.begin(), all.end(), [&](const JobCommand &other) {
        return other.reads && other.reads == std::string_view(job.name);
    });
}

/// Those values that an order names.
Values named_by(const Order &order, Values values) {
    std::erase_if(values, [&](const auto &value) { return !order.find(value.first); });
    return values;
}

Button &button_of(const JobCommand &job, Desk &desk) { return dynamic_cast<Button &>(job.button(desk)); }

Message other_device(const std::string &there, const std::string &expected) {
    return {.text = "Am Kabel hängt ein anderes Gerät: IMEI " + there + " statt " + expected + ".",
            .icon = Icon::exclamation,
            .tone = Tone::failure};
}

} // namespace

Attempt attempt_of(const WorkEnd &work, const JobCommand &job, Desk &desk) {
    Attempt attempt{.outcome = row_outcome(work.outcome), .imei = work.imei};
    const std::string different = differences(work.compared, "; ");
    if (went_well(work.outcome) && job.result)
        attempt.message = found_out(job, desk);
    else if (work.outcome == Outcome::succeeded && !different.empty() && !job.compares)
        attempt.message = different;
    else
        for (const Message &message : work.said)
            attempt.message =
                joined_lines(message.text + (message.advice.empty() ? "" : "\r") + message.advice);
    return attempt;
}

Plan::Plan(Telvox &program, Operator &at_the_form, Now now)
    : program_(program), desk_(program.desk), operator_(at_the_form), now_(std::move(now)) {
    desk_.observers.add(*this);
}

void Plan::start(const Order &order, bool listed) {
    const Course course = course_of(order, desk_, listed);
    if (course.merges)
        check_backups(desk_.folders);
    work_ = {.order = order,
             .course = course,
             .by = &button_of(*order.job, desk_),
             .steps = {Step::work},
             .expected = course.imei};
    if (course.merges)
        work_->steps.push_front(Step::read);
    if (course.identifies)
        work_->steps.push_front(Step::identify);
    try {
        press_step();
    } catch (const UsageError &) {
        work_.reset();
        throw;
    }
}

void Plan::press_step() {
    const Step step = work_->steps.front();
    const JobCommand &own = *work_->order.job;
    const JobCommand &job = step == Step::identify ? imei_query()
                            : step == Step::work   ? own
                                                   : *find_job(own.reads);
    const Button &button = button_of(job, desk_);
    Form &form = *button.form;
    work_->running = false;
    work_->pressed = nullptr;
    if (step == Step::identify) {
        work_->status_was_open = form.open;
        operator_.open_dialog({.job = &job, .values = {}});
    } else if (&form != &desk_.frmModem && !form.open) { // else it holds what the user has put right
        operator_.open_dialog(work_->order);
        opened(form);
    }
    work_->pressed = &button;
    operator_.press({.job = &job, .values = {}});
}

void Plan::press() {
    try {
        press_step();
    } catch (const UsageError &failure) {
        end_with(Outcome::failed, {.text = failure.what(), .tone = Tone::refusal});
    }
}

void Plan::next() {
    work_->steps.pop_front();
    press();
}

void Plan::started(const Button &by) {
    if (!work_)
        adopt(by);
    if (!work_ || &by != work_->pressed)
        return begun(by);
    const JobCommand &job = *work_->order.job;
    const Step step = work_->steps.front();
    work_->running = true;
    if (step == Step::read || job.compares)
        work_->wanted = named_by(work_->order, all_values(job.options, desk_));
    if (step == Step::work && job.reads) {
        work_->wanted = all_values(job.options, desk_);
        const bool ticked = dynamic_cast<CheckBox &>(job.verify(desk_)).value;
        work_->course.verifies |= ticked && !desk_.frmModem.optFernverbindung.value;
    }
    if (!std::exchange(work_->begun, true))
        begun(*work_->by);
}

/// Of what a dialog reads or writes more is told than how it ended.
void Plan::adopt(const Button &by) {
    for (const JobCommand &job : job_commands()) {
        if (!job.button || &job.button(desk_) != &by || (!job.compares && !job.reads && !is_read(job)))
            continue;
        const Section &section = *section_of(job);
        work_ = {.order = {.job = &job, .values = all_values(section.options, desk_)},
                 .course = {},
                 .by = &by,
                 .steps = {Step::work},
                 .pressed = &by,
                 .by_user = true};
        const auto read = read_.find(&section);
        if (!job.reads || read == read_.end())
            return;
        if (const std::string failure = keep_copy(read->second.imei, read->second.values); !failure.empty())
            desk_.outbox.show_unrecorded(failure);
        read_.erase(read);
        return;
    }
}

void Plan::ended(const JobEnd &end) {
    if (!work_ || !work_->running || end.by != work_->pressed)
        return over({end});
    const Step step = work_->steps.front();
    const JobCommand &job = *work_->order.job;
    const bool well = went_well(end.outcome);
    work_->running = false;
    if (step == Step::work && well && work_->course.verifies) {
        work_->steps.push_back(Step::verify);
        work_->written = end;
    }
    if (!well && (step == Step::read || step == Step::verify || job.compares))
        restore(); // it shows what came before the read broke off
    const bool again = step == Step::verify && end.outcome == Outcome::failed && ++work_->tries < most_tries;
    const bool goes_on = (well && work_->steps.size() > 1) || again;
    if (work_->swapped() || goes_on || step == Step::verify || (well && job.compares)) // it is told otherwise
        for (auto &[message, answered] : desk_.outbox.waiting())
            if (std::find(end.said.begin(), end.said.end(), message) != end.said.end())
                message.shown = false;
    if (work_->swapped()) {
        const Message other = other_device(work_->imei, work_->expected);
        desk_.observers.tell(&Observer::came_to,
                             JobEnd{.by = end.by, .outcome = Outcome::failed, .said = {other}});
        return end_with(Outcome::failed, other);
    }
    if (goes_on)
        work_->done = end.outcome;
    else if (step == Step::verify)
        verified(end.outcome);
    else if (well && job.compares)
        compared(end.outcome);
    else {
        if (well && is_read(job))
            read_[section_of(job)] = {work_->imei, all_values(section_of(job)->options, desk_)};
        this->end(end);
    }
}

/// A record tells the boxes of one job before the next one begins.
void Plan::settled() {
    if (!work_ || !work_->done)
        return;
    const Outcome outcome = *std::exchange(work_->done, std::nullopt);
    program_.together([&] {
        switch (work_->steps.front()) {
        case Step::identify:
            return identified();
        case Step::read:
            return was_read(outcome);
        case Step::work:
            return next();
        case Step::verify:
            return press();
        }
    });
}

/// A device tells its IMEI when it is asked for it, and a GPRS device in the first check of each job.
void Plan::look_for_imei() {
    const std::string imei = dialogues::imei_in(program_.received());
    if (imei.empty())
        return;
    work_->imei = imei;
    if (work_->expected.empty())
        work_->expected = imei;
}

void Plan::happened() {
    if (!work_)
        return;
    if (work_->running) {
        look_for_imei();
        if (work_->swapped())
            program_.cancel();
        return;
    }
    if (work_->asks || work_->done || !work_->pressed)
        return;
    if (!desk_.outbox.waiting().empty())
        work_->last_said = {desk_.outbox.waiting().back().message};
    if (!program_.busy() && !desk_.asking) // a check, or the user, said no
        end({.by = work_->by,
             .outcome = work_->begun ? Outcome::failed : Outcome::refused,
             .said = work_->last_said});
}

void Plan::identified() {
    if (!work_->status_was_open)
        program_.dismiss(desk_.frmGSM_Status);
    const std::string before = done_before(work_->imei);
    if (before.empty())
        return next();
    work_->asks = true;
    const std::string same = "Dieses Gerät war schon " + before + ".";
    desk_.outbox.ask_unrecorded(same + " Trotzdem?", [this, same](bool yes) {
        work_->asks = false;
        if (yes)
            return next();
        work_->imei.clear(); // nothing was done at it
        end({.by = work_->by, .outcome = Outcome::failed, .said = {{.text = same, .tone = Tone::refusal}}});
    });
}

/// What the order names goes over what the device has.
void Plan::was_read(Outcome outcome) {
    if (outcome != Outcome::succeeded)
        return end_with(
            Outcome::failed,
            {.text = "Nicht alle Einstellungen ließen sich unverändert lesen; es wurde nichts geschrieben.",
             .tone = Tone::failure});
    const std::span<const Option> options = work_->order.job->options;
    const Values found = all_values(options, desk_);
    try {
        operator_.fill(options, work_->wanted);
    } catch (const UsageError &failure) {
        return end_with(Outcome::failed, {.text = failure.what(), .tone = Tone::refusal});
    }
    work_->compared = compare(options, all_values(options, desk_), found);
    if (differences(work_->compared, "").empty())
        return end_with(Outcome::succeeded,
                        {.text = "Das Telvox-A ist schon so eingestellt.", .tone = Tone::success});
    if (const std::string failure = keep_copy(work_->imei, found); !failure.empty())
        return end_with(Outcome::failed, {.text = failure, .tone = Tone::failure});
    next();
}

std::string Plan::keep_copy(const std::string &imei, const Values &values) {
    return keep_backup(desk_.folders, imei, now_(), *section_of(*work_->order.job), values);
}

/// The dialog holds again what it held before it was read over.
void Plan::restore() {
    try {
        operator_.fill(work_->order.job->options, work_->wanted);
    } catch (const UsageError &) { // it held that before
    }
}

/// Sets what was read beside what the dialog held, which it holds again then. Returns what differs.
std::string Plan::read_back() {
    const std::span<const Option> options = work_->order.job->options;
    Values found = all_values(options, desk_);
    std::vector<Compared> now = compare(options, work_->wanted, found);
    restore();
    if (work_->by_user)
        read_[section_of(*work_->order.job)] = {work_->imei, std::move(found)};
    const std::string different = deviations(now);
    if (work_->order.job->compares || !different.empty())
        work_->compared = std::move(now); // else what was changed is told
    return different;
}

void Plan::show_compared(const std::string &result) {
    std::vector<FrmVergleich::Line> lines;
    for (const Compared &one : work_->compared)
        lines.push_back({one.option->title, shown(*one.option, one.wanted), shown(*one.option, one.found),
                         one.differs()});
    if (work_->by_user)
        desk_.frmVergleich.show(result, std::move(lines));
}

void Plan::compared(Outcome outcome) {
    const std::string different = read_back();
    const auto count = std::count_if(work_->compared.begin(), work_->compared.end(),
                                     [](const Compared &one) { return one.differs(); });
    const std::string all = std::to_string(work_->compared.size());
    const std::string result = count == 0
                                   ? "Alles stimmt überein (verglichen: " + all + ")."
                                   : "Anders eingestellt: " + std::to_string(count) + " von " + all + ".";
    show_compared(result);
    const Message message{.text = result,
                          .tone = count != 0 ? Tone::refusal : Tone::success,
                          .advice = different,
                          .shown = !work_->by_user};
    const JobEnd end{.by = work_->by, .outcome = count != 0 ? Outcome::differs : outcome, .said = {message}};
    desk_.observers.tell(&Observer::came_to, end);
    end_with(end.outcome, message);
}

void Plan::verified(Outcome outcome) {
    const JobEnd written = *work_->written;
    Message message = written.said.empty() ? Message{} : written.said.back();
    if (written.outcome == Outcome::succeeded)
        message.text = message.text.substr(0, message.text.find('\r')); // the restart behind it is over
    if (!went_well(outcome)) {
        message.text += outcome == Outcome::cancelled
                            ? "\rDie Prüfung nach dem Neustart wurde abgebrochen."
                            : "\rEs hat sich nach dem Neustart nicht gemeldet; geprüft ist es nicht.";
        message.tone = Tone::failure;
        return end_with(outcome, message);
    }
    const std::string different = read_back();
    if (different.empty()) {
        message.text += "\rNach dem Neustart geprüft: Alles stimmt überein.";
        return end_with(written.outcome, message);
    }
    constexpr const char *otherwise = "Nach dem Neustart ist nicht alles so, wie es geschrieben wurde.";
    message.text += "\r" + std::string(otherwise);
    message.tone = Tone::refusal;
    message.advice = different;
    show_compared(otherwise);
    end_with(Outcome::objected, message);
}

void Plan::end_with(Outcome outcome, Message message) {
    message.recorded = false;
    desk_.outbox.show(message);
    end({.by = work_->by, .outcome = outcome, .said = {std::move(message)}});
}

void Plan::end(const JobEnd &end) {
    const Work work = *std::exchange(work_, std::nullopt);
    if (!work.status_was_open && !work.steps.empty() && work.steps.front() == Step::identify)
        program_.dismiss(desk_.frmGSM_Status);
    over({{.by = work.by, .outcome = end.outcome, .said = end.said},
          work.swapped() ? "" : work.imei,
          work.compared});
}

} // namespace telvox::operation
