#include "sequencer/sequencer.hpp"

#include "core/port_choice.hpp"
#include "core/text.hpp"
#include "sequencer/measures.hpp"

#include <algorithm>
#include <utility>

namespace telvox {

namespace {

constexpr const char *no_such_function =
    "Diese Funktion steht für das gewählte Telvox-A nicht zur Verfügung.";

constexpr const char *not_hung_up =
    "Das lokale Modem hat den Befehl zum Auflegen nicht bekommen. Bitte prüfen, ob die Leitung frei ist.";

/// "\r\rAchtung: …" and the names, a line each; nothing without names.
std::string one_below_the_other(const char *heading, const std::vector<std::string> &names) {
    std::string text = names.empty() ? "" : std::string("\r\r") + heading;
    for (const std::string &name : names)
        text += "\r" + name;
    return text;
}

/// Whether the echo of a line would look like a rejection of it; what ends a message is no part of the echo.
bool is_echoed_as_error(std::string text) {
    std::erase_if(text, [](char c) { return static_cast<unsigned char>(c) < 0x20; });
    return text == "ERROR";
}

} // namespace

bool all_hold(std::span<const Check> checks, Desk &desk, Panel &panel, Outbox &outbox) {
    for (const Check &check : checks) {
        if (check.holds(desk))
            continue;
        outbox.show({.text = check.otherwise, .tone = Tone::refusal});
        if (check.field)
            panel.focus(*check.field(desk));
        return false;
    }
    return true;
}

bool Sequencer::ready(const Launch &launch) {
    if (busy() || c_.blocked()) {
        c_.outbox.show({.text = already_running, .tone = Tone::refusal});
        return false;
    }
    return all_hold(launch.checks, c_.desk, c_.panel, c_.outbox);
}

bool Sequencer::start(const Launch &launch, const Button &by) {
    if (!ready(launch))
        return false;
    JobValues values = c_.panel.values();
    values.remote = values.remote && !launch.cable_only;
    if (launch.as_shown)
        values.strCOMparameter_direkt = values.strCOMparameter_momentan;
    if (!open_port(values, by))
        return false;
    c_.values = std::move(values);
    c_.findings = {};
    if (launch.as_shown)
        c_.session.strCOMparameter_direkt = c_.values.strCOMparameter_direkt;
    if (launch.raise_dtr)
        c_.link.comSeriell.DTREnable(true);
    if (launch.prepare)
        launch.prepare(c_.desk);
    if (launch.flag)
        c_.jobs.*launch.flag = true;
    c_.jobs.*launch.counter = 1;
    c_.jobs.running = true;
    advice_ = launch.advice;
    c_.panel.prz_Eingaben_deaktivieren();
    receiver_.begin();
    c_.started(by);
    end_ = {.by = &by, .outcome = Outcome::failed, .said = {}};
    under_.clear();
    rejected_.clear();
    changed_device_ = heard_ = false;
    progress_ = {};
    steps_before_ = 0;
    timed_.clear();
    allowed_ = milliseconds{0};
    started_ = c_.timer.now();
    c_.timer.Enabled(true);
    return true;
}

bool Sequencer::open_port(const JobValues &values, const Button &by) {
    SerialPort &port = c_.link.comSeriell;
    if (!port.PortOpen()) {
        const int number =
            func_Port_Auswahl(values.remote ? values.modem_port : values.cable_port, c_.outbox);
        if (number == 0)
            return false;
        port.CommPort(number);
    }
    const auto format =
        parse_format(values.remote ? values.strCOMparameter_fern : values.strCOMparameter_direkt);
    port.Settings(format.value_or(*parse_format(values.remote ? default_fern : default_direkt)));
    if (port.PortOpen())
        return true;
    const std::string cause = port.PortOpen(true);
    if (cause.empty())
        return true;
    c_.started(by);
    const Message message{.text = port_entry(port.CommPort()) + " konnte nicht geöffnet werden.\r" + cause,
                          .title = port_error_title,
                          .icon = Icon::exclamation,
                          .tone = Tone::failure};
    c_.ended({.by = &by, .outcome = Outcome::failed, .said = {message}});
    c_.outbox.show(message);
    return false;
}

void Sequencer::Timer1_Timer() {
    if (receiver_.value_under_way() && c_.timer.now() - step_began_ < 2 * progress_.wait)
        return c_.timer.restart(idle_period);
    note_rejection();
    receiver_.clear();
    if (const auto report = due_report(c_.reports, job_))
        fail(report->line, {.text = report->text + hint_at_wrong_device()});
    else if (stalled())
        fail(LineEnd::by_mode, {.text = no_such_function});
    run_jobs();
    hang_up_step();
}

std::string Sequencer::hint_at_wrong_device() const {
    if (receiver_.recognised() || !heard_ || c_.values.remote)
        return {};
    return std::string("\r\rEs hat ein Gerät geantwortet, aber nicht wie ein Telvox-A ") +
           c_.families(job_).name + ". 'Erkennen' stellt den Typ fest.";
}

bool Sequencer::stalled() const {
    return c_.jobs.running && c_.jobs.byteAuflege_Counter == 0 &&
           std::none_of(job_counters.begin(), job_counters.end(),
                        [this](CounterOf counter) { return c_.jobs.*counter != 0; });
}

void Sequencer::note_rejection() {
    const std::string under = std::exchange(under_, {});
    if (!under.empty() && has_line(c_.link.strCOM_Eingang.text(), "ERROR") &&
        std::find(rejected_.begin(), rejected_.end(), under) == rejected_.end())
        rejected_.push_back(under);
}

void Sequencer::run_jobs() {
    const Family &family = c_.families(job_);
    for (const CounterOf counter : job_counters) {
        const Counter number = c_.jobs.*counter;
        if (number == 0 || c_.jobs.byteAuflege_Counter != 0)
            continue;
        const auto job = std::find_if(family.jobs.begin(), family.jobs.end(),
                                      [counter](const Job &j) { return j.counter == counter; });
        const auto steps = job != family.jobs.end() ? job->steps : std::span<const Step>{};
        const auto step = std::find_if(steps.begin(), steps.end(), [&](const Step &s) {
            return s.number == number && (!s.when || s.when(job_));
        });
        if (step == steps.end())
            return fail(LineEnd::by_mode, {.text = no_such_function});
        allow_time_for(*job);
        if (c_.timer.now() - started_ > patience * allowed_)
            return fail(LineEnd::by_mode, {.text = "Das Telvox-A antwortet nicht wie erwartet."});
        run(*step, *job);
    }
}

void Sequencer::allow_time_for(const Job &job) {
    if (std::find(timed_.begin(), timed_.end(), job.counter) != timed_.end())
        return;
    timed_.push_back(job.counter);
    allowed_ += prescribed_time(job, job_);
}

void Sequencer::run(const Step &step, const Job &job) {
    if (step.send.given() && c_.jobs.line_dropped && step.on_fall == OnFall::fails)
        return fail(LineEnd::hang_up, {.text = call_has_fallen});
    const bool skipped = step.send.given() && c_.jobs.line_dropped && step.on_fall == OnFall::skipped;
    if (!skipped && !send(step, job))
        return fail(LineEnd::by_mode, {.text = not_all_sent()});
    c_.jobs.*job.counter = skipped ? step.next : step.otherwise;
    if (skipped)
        c_.timer.restart(idle_period);
    else if (step.wait.count() > 0)
        c_.timer.restart(step.wait);
    if (step.end != End::no)
        end(step);
}

bool Sequencer::send(const Step &step, const Job &job) {
    if (step.status.given())
        c_.panel.status(step.status(job_));
    if (step.act) {
        step.act(job_);
        c_.panel.show(c_.findings);
    }
    c_.jobs.byteGPRS_Leseschritt = step.reads;
    if (step.format.given()) {
        if (!c_.link.comSeriell.drain(drain_limit))
            return false;
        if (const auto format = parse_format(step.format(job_)))
            c_.link.comSeriell.Settings(*format);
    }
    note_progress(step, job);
    step_began_ = c_.timer.now();
    if (step.send.given()) {
        const std::string text = step.send(job_);
        step.as == Write::line ? c_.link.prz_Daten_senden(text) : c_.link.send_raw(text);
        changed_device_ |= step.changes_device;
        // The set-up speaks to the local modem, and the echo of an alarm text may be what is looked for.
        if (step.as == Write::line && job.counter != &JobState::byteAnwahl_Counter &&
            !is_echoed_as_error(text) && !c_.families(job_).guesses)
            under_ = step.status.given() ? step.status(job_) : text.substr(0, text.find('='));
    }
    receiver_.await({.answers = step.answers,
                     .flag = step.awaits,
                     .counter = job.counter,
                     .becomes = step.next,
                     .moves = step.starts,
                     .restart = step.after});
    return true;
}

/// A call and what it is for are one count, and so are the rounds of a search.
void Sequencer::note_progress(const Step &step, const Job &job) {
    const bool first = progress_.step == 0, other_table = !first && counted_ != job.counter;
    if (first) {
        progress_.steps = steps_of(job, job_);
        for (const Step &one : job.steps)
            for (const Move &move : one.starts)
                if (c_.jobs.*move.when)
                    for (const Job &next : c_.families(job_).jobs)
                        progress_.steps += next.counter == move.counter ? steps_of(next, job_) : 0;
    }
    if (other_table || (!first && step.number < counted_step_))
        steps_before_ += other_table ? steps_of_counted_ : counted_step_;
    counted_ = job.counter;
    counted_step_ = step.number;
    steps_of_counted_ = steps_of(job, job_);
    progress_.step = std::min(steps_before_ + step.number, progress_.steps);
    progress_.wait = step.wait;
}

void Sequencer::end(const Step &step) {
    if (step.end == End::failed)
        return fail(LineEnd::by_mode, {.text = step.message(job_)});
    if (step.end == End::hang_up && !c_.link.comSeriell.drain(drain_limit))
        return fail(LineEnd::by_mode, {.text = not_all_sent()});
    // A query has no message; what its fields show says it all.
    const bool tells = step.message.given();
    const auto changed = c_.panel.changed(c_.findings);
    const bool objected = tells && (!rejected_.empty() || !changed.empty());
    Message message{.text = tells ? step.message(job_) : "",
                    .tone = objected ? Tone::refusal : Tone::success,
                    .advice = advice_};
    if (objected) {
        message.icon = Icon::exclamation;
        message.text += one_below_the_other("Achtung: Das Telvox-A hat nicht angenommen:", rejected_) +
                        one_below_the_other("Achtung: Nicht unverändert übernommen:", changed);
    }
    end_.outcome = objected ? Outcome::objected : Outcome::succeeded;
    if (tells)
        end_.said.push_back(message);
    // The hang-up of a success leaves the job's state until it is through, and its inputs locked.
    if (step.end != End::drop)
        start_hang_up();
    else if (!finish(LineEnd::drop))
        return;
    if (tells)
        c_.outbox.show(std::move(message));
}

void Sequencer::start_hang_up() {
    c_.jobs.byteAuflege_Counter = 1;
    c_.timer.restart(escape_guard);
}

void Sequencer::hang_up_step() {
    switch (c_.jobs.byteAuflege_Counter) {
    case 1:
        c_.jobs.byteAuflege_Counter = 2;
        break;
    case 2:
        c_.panel.status("Lokales Modem in den Befehlsmodus schalten");
        c_.link.send_raw("+++");
        c_.jobs.byteAuflege_Counter = 3;
        break;
    case 3:
        c_.panel.status("auflegen");
        c_.link.prz_Daten_senden("ATH");
        finish(LineEnd::drop);
        break;
    default:
        break;
    }
}

void Sequencer::fail(LineEnd line, Message message) {
    message.tone = Tone::failure;
    end_.outcome = Outcome::failed;
    end_.said = {message};
    finish(line);
    c_.outbox.show(std::move(message));
}

bool Sequencer::finish(LineEnd line) {
    const bool hang_up = line == LineEnd::hang_up || (line == LineEnd::by_mode && c_.values.remote);
    const bool all_sent = hang_up || close_port() || !went_well(end_.outcome);
    c_.timer.Enabled(false);
    if (hang_up) { // the inputs stay locked until the line is down
        c_.jobs = {};
        c_.panel.status("Verbindung wird getrennt");
        start_hang_up();
        return true;
    }
    // Behind a success in a call the device has everything; only the local modem may hold the line.
    const bool hung_up = c_.jobs.byteAuflege_Counter != 0;
    prz_Initialisieren();
    if (!all_sent) {
        const Message message{.text = hung_up ? not_hung_up : not_all_sent(), .tone = Tone::failure};
        if (!hung_up) {
            end_.outcome = Outcome::failed;
            end_.said.clear();
        }
        end_.said.push_back(message);
        c_.outbox.show(message);
    }
    tell_end();
    return all_sent;
}

std::string Sequencer::not_all_sent() const {
    return std::string("Es konnten nicht alle Befehle gesendet werden.") + c_.reports.check_line;
}

void Sequencer::tell_end() {
    if (end_.by)
        c_.ended(std::exchange(end_, {}));
}

void Sequencer::cancel() {
    if (!busy() || c_.jobs.byteAuflege_Counter != 0)
        return;
    const Message message{.text = cancelled(changed_device_)};
    end_.said = {message};
    abandon();
    c_.outbox.show(message);
}

Progress Sequencer::progress() const {
    if (!busy())
        return {};
    Progress now = progress_;
    now.passed = c_.timer.now() - step_began_;
    now.hangs_up = c_.jobs.byteAuflege_Counter != 0;
    return now;
}

void Sequencer::abandon() {
    if (!busy() || c_.jobs.byteAuflege_Counter != 0)
        return;
    end_.outcome = Outcome::cancelled;
    finish(LineEnd::by_mode);
}

bool Sequencer::close_port() {
    SerialPort &port = c_.link.comSeriell;
    if (!port.PortOpen())
        return true;
    const bool all_sent = port.drain(drain_limit);
    port.DTREnable(false);
    port.PortOpen(false);
    return all_sent;
}

void Sequencer::comSeriell_OnComm(CommEvent event) {
    heard_ |= event == CommEvent::data;
    if (event != CommEvent::lost) {
        if (receiver_.handle(event, c_.families(job_).replies))
            c_.panel.show(c_.findings);
        return;
    }
    // Once a hang-up runs the job's end has been reported, and a line without its port is down anyway.
    if (!busy() || c_.jobs.byteAuflege_Counter != 0) {
        finish(LineEnd::drop);
        return;
    }
    fail(LineEnd::drop, {.text = "Die Verbindung zur Schnittstelle " +
                                 port_entry(c_.link.comSeriell.CommPort()) + " ging verloren.",
                         .title = port_error_title,
                         .icon = Icon::exclamation});
}

void Sequencer::prz_Initialisieren() {
    c_.jobs = {};
    c_.timer.Interval(idle_period);
    c_.panel.prz_Eingaben_aktivieren();
    c_.panel.status("Bereit");
}

} // namespace telvox
