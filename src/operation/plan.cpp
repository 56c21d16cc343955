#include "operation/plan.hpp"

#include "core/text.hpp"
#include "core/usage_error.hpp"

#include <algorithm>
#include <utility>

namespace telvox::operation {

namespace {

constexpr std::size_t imei_digits = 15;

/// An option that is "ein" or "aus".
bool is_on(const Order &order, const char *name, bool otherwise) {
    const Given *given = order.find(name);
    if (!given)
        return otherwise;
    if (const std::string word = in_small_letters(given->value); word == "ein" || word == "aus")
        return word == "ein";
    throw UsageError(given->from, ": \"" + given->value + "\" gibt es nicht (ein, aus)");
}

std::string expected_imei(const Order &order, bool can_be_asked) {
    const Given *given = order.find("imei");
    if (!given)
        return {};
    std::string imei = given->value;
    std::erase(imei, ' ');
    if (imei.size() != imei_digits || imei.find_first_not_of("0123456789") != std::string::npos)
        throw UsageError(given->from, ": eine IMEI hat 15 Ziffern");
    if (!can_be_asked)
        throw UsageError(given->from, ": die IMEI sagen nur gsm und gprs, und nur am Kabel");
    return imei;
}

/// Whether a job that writes all settings of its dialog is to leave those that the order does not name.
bool keeps_the_rest(const Order &order, bool over_cable, bool listed) {
    if (!order.job->reads)
        return false;
    const std::span<const Option> options = order.job->options;
    const bool is_part = std::any_of(options.begin(), options.end(),
                                     [&](const Option &option) { return !order.find(option.name); });
    const Given *rest = order.find("rest");
    if (rest && in_small_letters(rest->value) != "leeren")
        throw UsageError(rest->from, ": \"" + rest->value + "\" gibt es nicht (leeren)");
    if (!is_on(order, "nur-aenderungen", listed && is_part && !rest))
        return false;
    if (rest)
        throw UsageError(rest->from, ": das schließt nur-aenderungen aus");
    if (!over_cable)
        throw UsageError(
            "was nicht angegeben ist, würde geleert, denn in einem Anruf lässt es sich nicht lesen "
            "(rest auf leeren setzen, oder den Rest angeben)");
    return true;
}

const JobCommand &imei_query() { return *find_job("imei"); }

Button &button_of(const JobCommand &job, Desk &desk) { return dynamic_cast<Button &>(job.button(desk)); }

Message other_device(const std::string &there, const std::string &expected) {
    return {.text = "Am Kabel hängt ein anderes Gerät: IMEI " + there + " statt " + expected + ".",
            .icon = Icon::exclamation,
            .tone = Tone::failure};
}

} // namespace

Course course_of(const Order &order, Desk &desk, bool listed) {
    const ModemType type = desk.frmModem.modem_type();
    const bool over_cable = !desk.frmModem.optFernverbindung.value;
    const bool tells_imei = over_cable && (type == ModemType::GSM || type == ModemType::GPRS);
    Course course{.imei = expected_imei(order, tells_imei)};
    const bool asked = is_on(order, "geraet-pruefen", listed) && !order.job->result;
    course.identifies = tells_imei && order.job != &imei_query() && find_option(*order.job, "imei") &&
                        (asked || !course.imei.empty());
    course.merges = keeps_the_rest(order, over_cable, listed);
    return course;
}

const JobCommand &first_job(const JobCommand &job, const Course &course) {
    return course.merges ? *find_job(job.reads) : job;
}

Attempt attempt_of(const WorkEnd &work, const JobCommand &job, Desk &desk) {
    Attempt attempt{.outcome = row_outcome(work.outcome), .imei = work.imei};
    const std::string different = differences(work.compared, "; ");
    if (went_well(work.outcome) && job.result)
        attempt.message = found_out(job, desk);
    else if (went_well(work.outcome) && !different.empty())
        attempt.message = different;
    else
        for (const Message &message : work.said)
            attempt.message = joined_lines(message.text);
    return attempt;
}

Plan::Plan(Telvox &program, Operator &at_the_form)
    : program_(program), desk_(program.desk), operator_(at_the_form) {
    desk_.observers.add(*this);
}

void Plan::start(const Order &order, bool listed) {
    const Course course = course_of(order, desk_, listed);
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
    const JobCommand &job = step == Step::identify ? imei_query()
                            : step == Step::read   ? first_job(*work_->order.job, work_->course)
                                                   : *work_->order.job;
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
    if (step == Step::read) {
        work_->wanted = all_values(work_->order.job->options, desk_);
        std::erase_if(work_->wanted, [&](const auto &value) { return !work_->order.find(value.first); });
    }
    work_->pressed = &button;
    operator_.press({.job = &job, .values = {}});
}

/// The step before has gone well.
void Plan::press() {
    work_->steps.pop_front();
    try {
        press_step();
    } catch (const UsageError &failure) {
        end_with(Outcome::failed, {.text = failure.what(), .tone = Tone::refusal});
    }
}

void Plan::started(const Button &by) {
    if (!work_ || &by != work_->pressed)
        return begun(by);
    work_->running = true;
    if (!std::exchange(work_->begun, true))
        begun(*work_->by);
}

void Plan::ended(const JobEnd &end) {
    if (!work_ || !work_->running || end.by != work_->pressed)
        return over({end});
    work_->running = false;
    const bool goes_on = work_->steps.size() > 1 && went_well(end.outcome);
    if (work_->swapped() || goes_on) // what it says is not what came of the order
        for (auto &[message, answered] : desk_.outbox.waiting())
            if (std::find(end.said.begin(), end.said.end(), message) != end.said.end())
                message.shown = false;
    if (work_->swapped())
        end_with(Outcome::failed, other_device(work_->imei, work_->expected));
    else if (!goes_on)
        this->end(end);
    else
        work_->done = end.outcome;
}

/// A record tells the boxes of one job before the next one begins.
void Plan::settled() {
    if (!work_ || !work_->done)
        return;
    const Outcome outcome = *std::exchange(work_->done, std::nullopt);
    program_.together([&] { work_->steps.front() == Step::identify ? identified() : was_read(outcome); });
}

/// A device tells its IMEI when it is asked for it, and a GPRS device in the first check of each job.
void Plan::look_for_imei() {
    constexpr std::string_view label = "IMEI: ";
    const std::string_view received = program_.received();
    const auto at = received.find(label);
    if (at == std::string_view::npos || at + label.size() + imei_digits > received.size())
        return;
    const std::string imei(received.substr(at + label.size(), imei_digits));
    if (imei.find_first_not_of("0123456789") != std::string::npos)
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
        return press();
    work_->asks = true;
    const std::string same = "Dieses Gerät war schon " + before + ".";
    desk_.outbox.ask_unrecorded(same + " Trotzdem?", [this, same](bool yes) {
        work_->asks = false;
        if (yes)
            return press();
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
    press();
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
