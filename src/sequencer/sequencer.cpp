#include "sequencer/sequencer.hpp"

#include "core/port_choice.hpp"

#include <algorithm>

namespace telvox {

bool Sequencer::start(const Launch &launch) {
    if (busy()) {
        c_.outbox.show("Es läuft bereits ein Vorgang.");
        return false;
    }
    outcome_ = Outcome::refused;
    for (const Check &check : launch.checks) {
        if (check.input(c_.desk).empty()) {
            c_.outbox.show(check.if_empty);
            return false;
        }
    }
    c_.jobs.cable_only = launch.cable_only;
    SerialPort &port = c_.link.comSeriell;
    if (!port.PortOpen()) {
        const int number = func_Port_Auswahl(c_.panel.selected_port(), c_.outbox);
        if (number == 0) {
            c_.jobs = {};
            return false;
        }
        port.CommPort(number);
    }
    const bool remote = c_.panel.remote();
    const auto format =
        parse_format(remote ? c_.session.strCOMparameter_fern : c_.session.strCOMparameter_direkt);
    port.Settings(format.value_or(*parse_format(remote ? default_fern : default_direkt)));
    if (!port.PortOpen()) {
        if (const std::string cause = port.PortOpen(true); !cause.empty()) {
            c_.jobs = {};
            outcome_ = Outcome::failed;
            c_.outbox.show({.text = port_entry(port.CommPort()) + " konnte nicht geöffnet werden.\r" + cause,
                            .title = port_error_title,
                            .icon = Icon::exclamation});
            return false;
        }
    }
    if (launch.raise_dtr)
        port.DTREnable(true);
    if (launch.prepare)
        launch.prepare(c_.desk);
    if (launch.flag)
        c_.jobs.*launch.flag = true;
    c_.jobs.*launch.counter = 1;
    c_.panel.prz_Eingaben_deaktivieren();
    c_.link.last_command.clear();
    receiver_.clear();
    c_.timer.Enabled(true);
    return true;
}

void Sequencer::Timer1_Timer() {
    receiver_.clear();
    if (const auto report = due_report(c_.jobs, c_.session, c_.panel.modem_type(), c_.panel.remote()))
        fail(report->line, {.text = report->text});
    run_jobs();
    hang_up_step();
}

void Sequencer::run_jobs() {
    const Family &family = c_.families(c_.panel.modem_type());
    for (const CounterOf counter : job_counters) {
        const Counter number = c_.jobs.*counter;
        if (number == 0 || c_.jobs.byteAuflege_Counter != 0)
            continue;
        const auto job = std::find_if(family.jobs.begin(), family.jobs.end(),
                                      [counter](const Job &j) { return j.counter == counter; });
        const auto steps = job != family.jobs.end() ? job->steps : std::span<const Step>{};
        const auto step = std::find_if(steps.begin(), steps.end(), [&](const Step &s) {
            return s.number == number && (!s.when || s.when(c_.desk));
        });
        if (step == steps.end())
            return fail(LineEnd::by_mode,
                        {.text = "Diese Funktion steht für das gewählte Telvox-A nicht zur Verfügung."});
        run(*step, counter);
    }
}

void Sequencer::run(const Step &step, CounterOf counter) {
    // On a line that has dropped the local modem would take a command for its own.
    if (step.send.given() && c_.jobs.line_dropped)
        return fail(LineEnd::hang_up, {.text = "Die Verbindung zum Telvox-A wurde unterbrochen."});
    if (step.status)
        c_.panel.status(step.status);
    if (step.act)
        step.act(c_.desk);
    if (step.send.given()) {
        const std::string text = step.send(c_.desk);
        step.as == Write::line ? c_.link.prz_Daten_senden(text) : c_.link.send_raw(text);
    }
    if (step.awaits)
        c_.jobs.*step.awaits = true;
    c_.jobs.*counter = step.next;
    if (step.wait.count() > 0)
        c_.timer.restart(step.wait);

    if (step.end == End::no)
        return;
    outcome_ = Outcome::succeeded;
    // The hang-up of a success leaves the job's state until it is through, and its inputs locked.
    step.end == End::drop ? finish(LineEnd::drop) : start_hang_up();
    if (step.message)
        c_.outbox.show(step.message);
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
    outcome_ = Outcome::failed;
    finish(line);
    c_.outbox.show(std::move(message));
}

void Sequencer::finish(LineEnd line) {
    const bool hang_up = line == LineEnd::hang_up || (line == LineEnd::by_mode && c_.panel.remote());
    if (!hang_up)
        close_port();
    c_.timer.Enabled(false);
    prz_Initialisieren();
    if (hang_up)
        start_hang_up();
}

void Sequencer::close_port() {
    SerialPort &port = c_.link.comSeriell;
    if (!port.PortOpen())
        return;
    port.drain(drain_limit);
    port.DTREnable(false);
    port.PortOpen(false);
}

void Sequencer::comSeriell_OnComm(CommEvent event) {
    if (event != CommEvent::lost)
        return receiver_.handle(event, c_.families(c_.panel.modem_type()).replies);
    // Once a hang-up runs the job's end has been reported, and a line without its port is down anyway.
    if (!busy() || c_.jobs.byteAuflege_Counter != 0)
        return finish(LineEnd::drop);
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
