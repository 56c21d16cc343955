#pragma once

#include "dialogues/mobile.hpp"

#include <array>
#include <cstddef>

/// What the jobs of a GPRS device share: how they begin, how they read, how they end.
namespace telvox::dialogues {

/// A GPRS device answers queries by value; "OK" behind them tells that an answer is complete.
inline constexpr const char *results_on = "Rückmeldungen aktivieren";
inline constexpr const char *results_off = "Rückmeldungen deaktivieren";
inline constexpr const char *checking = "Verbindungsprüfung";

/// How a GPRS device shows that it is there: it tells its IMEI.
constexpr Step check(RowText status, milliseconds wait, FlagOf flag) {
    return ask("AT**IMEI?", status, wait, flag, {"IMEI: ", whole_imei});
}
/// It is sent also on a line that has fallen, and the missing answer says so.
constexpr Step although_fallen(Step step) {
    step.on_fall = OnFall::reported;
    return step;
}

/// Opening of every job: a device that does not identify itself is taken to be in a data connection, is
/// escaped from it and hung up. There is no answer to wait for between, and the line takes its time to drop.
/// In a call it is the local modem that hears the escape and hangs up, which the check that follows finds.
/// One that identifies itself is in command mode: the rest is left out, and `skips` steps behind it.
constexpr std::array<Step, 3> gprs_opening(milliseconds wait, Counter skips = 0, Take take = nullptr) {
    constexpr Counter rest = 2;
    return {{going_on(ask("AT**IMEI?", checking, wait, &JobState::boolGPRS_Online, {"IMEI: ", take}),
                      static_cast<Counter>(rest + skips)),
             {.status = "In den Onlinekommandomodus wechseln", .send = "+++", .as = Write::raw, .wait = 3s},
             although_fallen(say("ATH", "Fernverbindung wird getrennt", 22s))}};
}
/// The same with the check that follows it.
constexpr auto gprs_opening(milliseconds wait, const Step &check_after) {
    return table(gprs_opening(wait, 1), although_fallen(check_after));
}

/// Last check of a job that writes, and the restart with which its settings come into force. Behind the check
/// all is saved, and the restart breaks a call.
constexpr std::array<Step, 2> check_and_restart(milliseconds wait, FlagOf flag) {
    Step restart = tell("AT**RESET", "Modem wird neu gestartet", wait);
    restart.on_fall = OnFall::skipped;
    return {check(checking, wait, flag), restart};
}

/// End of a job that runs in both connection ways.
constexpr std::array<Step, 3> gprs_ending(const char *message, OnFall on_fall) {
    Step leave = leave_remote("AT**EXIT", on_fall);
    leave.wait = 1100ms;
    return leave_and_finish(leave, message);
}

inline constexpr const char *written_and_restarting =
    "Das Telvox-A wurde erfolgreich parametriert.\r"
    "Das Modem führt zur Zeit einen Neustart aus, deshalb ist es für ca. 1 Minute nicht erreichbar.";
inline constexpr const char *read_out = "Das Telvox-A wurde erfolgreich ausgelesen.";

/// A query of a job that reads, by whose number a missing answer is reported.
constexpr Step query(Counter read, const char *status, const char *command, Answer answer,
                     milliseconds wait = 2s) {
    Step step = ask(command, status, wait, nullptr, answer);
    step.reads = read;
    return step;
}
/// One that reads a value, or several, the last of which has this label.
constexpr Step read(Counter number, const char *status, const char *command, Answer answer) {
    answer.labelled = true;
    return query(number, status, command, answer);
}
constexpr Step secret_answer(const char *labels, Step step) {
    step.secrets = labels;
    return step;
}

} // namespace telvox::dialogues
