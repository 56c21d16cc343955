#pragma once

#include "core/text.hpp"
#include "sequencer/step.hpp"

#include <chrono>
#include <string>

/// What several device families' tables share.
namespace telvox::dialogues {

using namespace std::chrono_literals;

inline bool remote(const JobContext &c) { return c.values.remote; }

/// The alarm text as the device gets it.
inline std::string alarm_text(const JobContext &c) { return func_Text_prüfen(c.values.alarm_text); }
/// A value as it was entered.
template <auto Value> std::string value(const JobContext &c) { return c.values.*Value; }
inline std::string service_number_outside(const JobContext &c) {
    return c.values.outside_line + c.values.service_number;
}
inline std::string receiver_outside(const JobContext &c) { return c.values.outside_line + c.values.receiver; }
/// Whether a protocol code of the service-number list is one that the devices know: "M0" to "M6".
inline bool valid_protocol(const std::string &code) {
    return code.size() == 2 && code[0] == 'M' && code[1] >= '0' && code[1] < '7';
}

inline constexpr const char *leaving_remote = "Beenden der Fernkonfiguration";
inline constexpr const char *sending_test = "Befehl zum Versand einer Alarmmeldung wird übertragen";
inline constexpr const char *sending_alarm_off = "Befehl zur deaktivierung der Alarmfunktion wird übertragen";

inline constexpr const char *configured_try_test =
    "Telvox-A erfolgreich konfiguriert. Zur Überprüfung auf 'Alarmmeldung senden (Test)' klicken.";
inline constexpr const char *configured_mobile = "Das Telvox-A wurde erfolgreich parametriert.";
inline constexpr const char *alarm_is_off = "Die Alarmfunktion wurde deaktiviert.";
inline constexpr const char *test_sent =
    "Befehl zum absetzen der Alarmmeldung wurde gesendet.\r"
    "Damit die Alarmmeldung übertragen werden kann, wird die Verbindung jetzt getrennt.\r"
    "Sie müssten in Kürze eine Alarmmeldung auf Ihrem Handy emfangen.";
/// As above for the variant that can also alarm a fax.
inline constexpr const char *test_sent_sms_or_fax =
    "Befehl zum absetzen der Alarmmeldung wurde gesendet.\r"
    "Damit die Alarmmeldung übertragen werden kann, wird die Verbindung jetzt getrennt.\r"
    "Sie müssten in Kürze eine Alarmmeldung auf Ihrem Handy oder Fax emfangen.";

inline constexpr const char *no_connection = "Es konnte keine Verbindung zum Telvox-A hergestellt werden.";
/// Second line of a report.
inline constexpr const char *check_line =
    "\rBitte Prüfen Sie die Leitungsverbindung und stellen Sie sicher, dass das "
    "Gerät mit Spannung versorgt wird.";

/// The report that has both lines, for a step that ends its job with it.
inline std::string no_connection_check(const JobContext &) {
    return std::string(no_connection).append(check_line);
}

/// A command that changes the device, and that it does not answer.
constexpr Step tell(RowText send, RowText status = {}, milliseconds wait = {}) {
    return {.status = status, .send = send, .wait = wait, .changes_device = true};
}
/// The same without a change.
constexpr Step say(RowText send, RowText status = {}, milliseconds wait = {}) {
    return {.status = status, .send = send, .wait = wait};
}
/// A command, the time for its answer, how a missing one is reported, the answer, and the time from it to the
/// next step.
constexpr Step ask(RowText send, RowText status, milliseconds wait, FlagOf awaits, Answer answer,
                   milliseconds after = 100ms, Answer or_that = {}) {
    return {.status = status,
            .send = send,
            .wait = wait,
            .awaits = awaits,
            .answers = {answer, or_that},
            .after = after};
}
/// The answer to it tells of a change.
constexpr Step changing(Step step) {
    step.changes_device = true;
    return step;
}
/// The value that the command sends is a secret.
constexpr Step secret(Step step) {
    step.secrets = step.send.fixed();
    return step;
}
constexpr Step when(bool (*condition)(const JobContext &), Step step) {
    step.when = condition;
    return step;
}
/// The last step of a job that went well.
constexpr Step finish(RowText message = {}, End end = End::drop) { return {.end = end, .message = message}; }
/// Likewise of one that ran in a call.
constexpr Step finish_call(RowText message) { return finish(message, End::hang_up); }

/// Leaves the device's remote configuration mode. By then the work is done, and the device itself may have
/// hung up.
constexpr Step leave_remote(const char *command, OnFall on_fall = OnFall::skipped) {
    Step step = when(remote, say(command, leaving_remote));
    step.on_fall = on_fall;
    return step;
}
/// The end of a job that runs in both connection ways.
constexpr std::array<Step, 3> leave_and_finish(const Step &leave, const char *message) {
    return {leave, finish(message), finish_call(message)};
}

/// First step of a job that only needs the device to be there.
constexpr Step device_check(const char *command, FlagOf flag, const char *answer) {
    return ask(command, {}, 4s, flag, {answer});
}

/// Steps that the fixed-line variants' configuration over "AT" commands has in common: the text goes to the
/// device's prompt, and everything is saved and checked at the end.
inline constexpr const char *giving_text = "Übertragung des Alarmtextes";
inline constexpr const char *text_prompt = "NEW ALARM TEXT: ";
inline constexpr Step give_text = tell(alarm_text, giving_text);
inline constexpr Step save_configuration = tell("AT&W", "Konfiguration wird gespeichert");
constexpr Step check_configuration(const char *command, const char *answer) {
    return ask(command, "Verbindungsüberprüfung läuft...", 4s, &JobState::boolKommunikations_Fehler32,
               {answer});
}

/// The carrier of the dialled call came up.
inline constexpr Reply carrier_up = {.event = CommEvent::carrier_rise,
                                     .awaited = &JobState::boolAnwahl_Fehler,
                                     .sets = &JobState::carrier_up,
                                     .counter = &JobState::byteAnwahl_Counter,
                                     .becomes = 2,
                                     .restart = 1000ms};

/// It fell in mid-job. From then on the local modem would take the device's commands for its own and answer
/// them, so nothing more is believed, and the next step that sends says what becomes of the job.
inline constexpr Reply carrier_down = {
    .event = CommEvent::carrier_fall, .during = &JobState::carrier_up, .sets = &JobState::line_dropped};
/// It is back before anything was sent: a dip that the modems bridged.
inline constexpr Reply carrier_back = {.event = CommEvent::carrier_rise, .awaited = &JobState::line_dropped};

/// Once the device is in its configuration mode: the counter of each set job flag.
inline constexpr Move start_jobs[] = {
    {&JobState::boolParametrieren, &JobState::byteParametrier_Counter, 1},
    {&JobState::boolAlarmtest, &JobState::byteAlarmtest_Counter, 1},
    {&JobState::boolAlarm_deaktivieren, &JobState::byteAlarm_aus_Counter, 1},
};

/// The password is typed, one character per tick, and ended by a carriage return: the device drops characters
/// that come faster. What it then says starts the job.
constexpr std::array<Step, 2> type_password(Answer answer, std::span<const Move> jobs, milliseconds after) {
    constexpr const char *checking_password = "Passwort Überprüfung...";
    constexpr auto count = [](const JobContext &c) { ++c.jobs.bytePasswort_Counter; };
    return {
        {{.when = [](const JobContext &c) { return c.jobs.bytePasswort_Counter < length(c.values.password); },
          .status = checking_password,
          .act = count,
          .send =
              [](const JobContext &c) {
                  return character_at(c.values.password, c.jobs.bytePasswort_Counter - 1u);
              },
          .as = Write::raw,
          .again = true,
          .times = [](const JobContext &c) { return length(c.values.password); }},
         {.status = checking_password,
          .act = count,
          .send = "\r",
          .as = Write::raw,
          .wait = 8s,
          .awaits = &JobState::boolPasswort_Fehler,
          .answers = {answer},
          .after = after,
          .starts = jobs}}};
}

/// What begins the remote configuration, and the answer to it.
constexpr Step knock(const char *characters, const char *answer, std::span<const Move> jobs = {}) {
    return {.status = "Einleiten der Fernkonfiguration",
            .send = characters,
            .as = Write::raw,
            .wait = 11s,
            .awaits = &JobState::boolAntwort_Fehler,
            .answers = {{{answer}}},
            .after = 1100ms,
            .starts = jobs};
}
/// Dials; the carrier leads on.
constexpr Step dial_number(RowText number) {
    return {.status = "Anwahl", .send = number, .wait = 60s, .awaits = &JobState::boolAnwahl_Fehler};
}

/// The mobile variants' remote set-up: the number is dialled as it stands, and there is no password.
constexpr auto mobile_dial(std::span<const Move> jobs) {
    return table(dial_number({"ATX3D", value<&JobValues::number>}),
                 knock("***", "REMOTE CONFIGURATION MODE", jobs));
}

} // namespace telvox::dialogues
