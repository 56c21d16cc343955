#pragma once

#include "core/text.hpp"
#include "sequencer/step.hpp"
#include "ui/desk.hpp"

#include <chrono>
#include <string>

/// What several device families' tables share.
namespace telvox::dialogues {

using namespace std::chrono_literals;

inline bool remote(const Desk &desk) { return desk.remote(); }
inline bool direct(const Desk &desk) { return !desk.remote(); }
inline bool by_sms(const Desk &desk) { return desk.frmModem.optSMS.value; }

/// The alarm text as the device gets it.
inline std::string alarm_text(const Desk &desk) {
    return func_Text_prüfen(desk.frmModem.tboAlarmmeldung.text);
}
inline std::string receiver(const Desk &desk) { return desk.frmModem.tboRufnummer_Empfaenger.text; }
inline std::string service_number(const Desk &desk) { return desk.frmModem.tboService_Center.text; }
/// The prefix that gets an outside line, where the installation needs one.
inline std::string outside_line(const Desk &desk) {
    return desk.frmModem.chkAmt.value ? desk.frmModem.tboAmt.text : std::string();
}
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
inline std::string no_connection_check(const Desk &) { return std::string(no_connection).append(check_line); }

/// Sends one command that the device does not answer, and goes on with the next step.
constexpr Step command(Counter number, const char *status, RowText send, milliseconds wait = {}) {
    return {.number = number,
            .status = status,
            .send = send,
            .wait = wait,
            .next = static_cast<Counter>(number + 1)};
}

/// Leaves the device's remote configuration mode. By then the work is done, and the device itself may have
/// hung up.
constexpr Step leave_remote(Counter number, const char *command) {
    return {.number = number,
            .when = remote,
            .status = leaving_remote,
            .send = command,
            .on_fall = OnFall::skipped,
            .next = static_cast<Counter>(number + 1)};
}

/// First step of a job that only needs the device to be there.
constexpr Step device_check(const char *command, FlagOf flag) {
    return {.number = 1, .send = command, .wait = 4s, .awaits = flag};
}

/// Steps that the fixed-line variants' configuration over "AT" commands has in common: the text goes to the
/// device's prompt, and everything is saved and checked at the end.
constexpr Step ask_for_text_prompt(milliseconds wait) {
    return {.number = 1,
            .status = "Übertragung des Alarmtextes",
            .send = "AT*V",
            .wait = wait,
            .awaits = &JobState::boolKommunikations_Fehler31};
}
inline constexpr Step give_text = {
    .number = 2, .status = "Übertragung des Alarmtextes", .send = alarm_text, .next = 3};
inline constexpr Step save_configuration = {
    .number = 6, .status = "Konfiguration wird gespeichert", .send = "AT&W", .next = 7};
constexpr Step check_configuration(const char *command) {
    return {.number = 7,
            .status = "Verbindungsüberprüfung läuft...",
            .send = command,
            .wait = 4s,
            .awaits = &JobState::boolKommunikations_Fehler32};
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

/// Steps in which the password is typed, one character per tick, and ended by a carriage return. The device
/// drops characters that come faster.
inline bool password_left(const Desk &desk) {
    return desk.jobs.bytePasswort_Counter < length(desk.frmModem.tboPasswort.text);
}
constexpr Step type_password(Counter number) {
    return {.number = number,
            .when = password_left,
            .status = "Passwort Überprüfung...",
            .act = [](Desk &d) { ++d.jobs.bytePasswort_Counter; },
            .send =
                [](const Desk &d) {
                    return character_at(d.frmModem.tboPasswort.text, d.jobs.bytePasswort_Counter - 1u);
                },
            .as = Write::raw,
            .times = [](const Desk &d) { return length(d.frmModem.tboPasswort.text); },
            .next = number};
}
constexpr Step end_password(Counter number) {
    return {.number = number,
            .status = "Passwort Überprüfung...",
            .act = [](Desk &d) { ++d.jobs.bytePasswort_Counter; },
            .send = "\r",
            .as = Write::raw,
            .wait = 8s,
            .awaits = &JobState::boolPasswort_Fehler};
}

/// The mobile variants' remote set-up: the number is dialled as it stands, and there is no password.
inline constexpr Step mobile_dial[] = {
    {.number = 1,
     .status = "Anwahl",
     .send = [](const Desk &d) { return "ATX3D" + d.frmModem.tboRufnummer_Modem.text; },
     .wait = 60s,
     .awaits = &JobState::boolAnwahl_Fehler},
    {.number = 2,
     .status = "Einleiten der Fernkonfiguration",
     .send = "***",
     .as = Write::raw,
     .wait = 11s,
     .awaits = &JobState::boolAntwort_Fehler},
};

} // namespace telvox::dialogues
