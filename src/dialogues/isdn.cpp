#include "dialogues/families.hpp"
#include "dialogues/interface_change.hpp"
#include "dialogues/shared.hpp"

namespace telvox {

namespace dialogues {
namespace {

/// The remote interface's protocol line of the service-number list: "aldest=0" to "aldest=3".
bool valid_remote_protocol(const std::string &text) {
    return text.size() == 8 && text.starts_with("aldest=") && text[7] >= '0' && text[7] < '4';
}

/// The ISDN side gives no carrier: the set-up dials again and again until the device asks for the password.
constexpr Counter dial_attempts = 5;
std::string dial_command(const Desk &desk) {
    return "ATD" + number_text(desk.frmModem.tboRufnummer_Modem.text) + "e";
}
void count_attempt(Desk &desk) { ++desk.jobs.byteISDN_Anwahl_Counter; }

constexpr Step dial[] = {
    {.number = 1,
     .when = [](const Desk &d) { return d.jobs.byteISDN_Anwahl_Counter == 0; },
     .status = "Anwahl und einleiten der Fernkonfiguration",
     .act = count_attempt,
     .send = dial_command,
     .wait = 4300ms,
     .times = [](const Desk &) { return std::size_t{1}; },
     .next = 1},
    {.number = 1,
     .when = [](const Desk &d) { return d.jobs.byteISDN_Anwahl_Counter < dial_attempts - 1; },
     .act = count_attempt,
     .send = dial_command,
     .times = [](const Desk &) { return std::size_t{dial_attempts} - 2; },
     .next = 1},
    {.number = 1,
     .act = count_attempt,
     .send = dial_command,
     .awaits = &JobState::boolAnwahl_Fehler}, // the last attempt
    type_password(2),
    end_password(2),
};

constexpr Step configure[] = {
    ask_for_text_prompt(15s),
    give_text,
    {.number = 3,
     .status = "Protokoll wird eingestellt",
     .send =
         [](const Desk &d) {
             const std::string &code = d.session.strSMS_Protokoll_ISDN;
             return "AT*" + (valid_protocol(code) ? code : std::string("M1"));
         },
     .next = 4},
    {.number = 4,
     .status = "Service-Nummer wird eingestellt",
     .send = [](const Desk &d) { return "AT&Z1=" + outside_line(d) + service_number(d); },
     .next = 5},
    {.number = 5,
     .status = "Rufnummer des Empfängers wird konfiguriert",
     .send = [](const Desk &d) { return "AT&Z3=" + receiver(d); },
     .next = 6},
    save_configuration,
    check_configuration("ATI1"),
    {.number = 8, .end = End::drop, .message = configured_try_test},
};

constexpr Step alarm_test[] = {
    device_check("ATI1", &JobState::boolKommunikations_Fehler34),
    {.number = 2, .status = sending_test, .send = "AT*X", .wait = 1s, .next = 3},
    {.number = 3, .end = End::drop, .message = test_sent},
};

constexpr Step alarm_off[] = {
    device_check("ATI1", &JobState::boolKommunikations_Fehler33),
    {.number = 2, .status = sending_alarm_off, .send = "AT&Z1=", .wait = 1s, .next = 3},
    {.number = 3, .end = End::drop, .message = alarm_is_off},
};

constexpr Step connect(FlagOf flag) {
    return {.number = 1, .status = "Verbindung wird hergestellt", .send = "ATI1", .wait = 4s, .awaits = flag};
}

constexpr Step set_line_type[] = {
    connect(&JobState::boolKommunikations_Fehler52),
    {.number = 2,
     .send = [](const Desk &d) { return "AT**PTP=" + std::to_string(d.session.byteISDN_Anschlussart); },
     .end = End::drop,
     .message = "Die Anschlussart wurde eingestellt."},
};

constexpr Step set_msn[] = {
    connect(&JobState::boolKommunikations_Fehler51),
    {.number = 2,
     .status = "MSN wird eingestellt",
     .send = [](const Desk &d) { return "AT#Z=" + d.session.strMSN; },
     .next = 3},
    {.number = 3,
     .send = [](const Desk &d) { return "AT**MSN=" + d.session.strMSN; },
     .end = End::drop,
     .message = "Die MSN wurde eingestellt."},
};

/// A command of the remote text interface; the device answers each with its prompt "#".
constexpr Step remote_command(Counter number, const char *status, RowText send, milliseconds wait) {
    return {.number = number,
            .status = status,
            .send = send,
            .wait = wait,
            .awaits = &JobState::boolKommunikations_Fehler32};
}

constexpr const char *saving = "Konfiguration wird gespeichert";

constexpr Step remote_configure[] = {
    remote_command(
        1, "Übertragung des Alarmtextes", [](const Desk &d) { return "altxt=" + alarm_text(d); }, 6s),
    remote_command(
        2, "Protokoll wird eingestellt",
        [](const Desk &d) {
            const std::string &line = d.session.strSMS_Protokoll_ISDN_fern;
            return valid_remote_protocol(line) ? line : std::string("aldest=1");
        },
        4s),
    remote_command(
        3, "Service-Nummer wird eingestellt",
        [](const Desk &d) { return "catab1=" + outside_line(d) + receiver(d); }, 5s),
    remote_command(
        4, "Rufnummer des Empfängers wird konfiguriert",
        [](const Desk &d) { return "catab3=" + receiver(d); }, 5s),
    remote_command(5, saving, "save", 5s),
    {.number = 6, .status = leaving_remote, .send = "reset", .next = 7},
    {.number = 7, .end = End::hang_up, .message = "Telvox-A erfolgreich konfiguriert."},
};

constexpr Step remote_alarm_test[] = {
    remote_command(1, nullptr, "Alarm", 4s),
    remote_command(2, leaving_remote, "quit", 4s),
    {.number = 3,
     .act = [](Desk &d) { d.jobs.byteAlarmtest_Counter = 0; },
     .times = [](const Desk &) { return std::size_t{1}; },
     .next = 3,
     .end = End::hang_up,
     .message = test_sent},
};

constexpr Step remote_alarm_off[] = {
    remote_command(1, nullptr, "catab1=-", 4s),
    remote_command(2, saving, "save", 5s),
    {.number = 3, .status = leaving_remote, .send = "reset", .next = 4},
    {.number = 4, .end = End::hang_up, .message = alarm_is_off},
};

/// The device's rates begin with 1200.
int rate_code(const Desk &desk) { return place_of_new_rate(desk) - 1; }
std::string parity_command(const Desk &desk) {
    return "AT**PRTY=" + std::to_string(std::string_view("noe").find(new_format(desk).parity));
}

/// What was told is in force once it is saved.
constexpr Step change_interface[] = {
    {.number = 1,
     .status = checking_format,
     .send = "ATI1",
     .wait = 1500ms,
     .awaits = &JobState::boolKommunikations_Fehler76},
    {.number = 2,
     .when = [](const Desk &d) { return rate_code(d) < 1; },
     .end = End::failed,
     .message = "Das ISDN-Modem unterstützt keine Baudraten < 1200 Baud"},
    change(2, changing_rate, [](const Desk &d) { return "AT%B" + std::to_string(rate_code(d)); }),
    change(3, "Datenformat Parity umstellen", parity_command),
    change(4, changing_format,
           [](const Desk &d) { return "AT**DBITS=" + std::to_string(new_format(d).data_bits); }),
    save_format(5),
    check_new_format(6, "ATI1", in_new_format),
    format_changed(7, "Das ISDN-Modem wurde erfolgreich parametriert."),
};

constexpr Job jobs[] = {
    {"ISDN Anwahl", &JobState::byteAnwahl_Counter, dial},
    {"ISDN konfigurieren", &JobState::byteParametrier_Counter, configure},
    {"ISDN fern konfigurieren", &JobState::byteISDN_Fern_Para_Counter, remote_configure},
    {"ISDN Test", &JobState::byteAlarmtest_Counter, alarm_test},
    {"ISDN fern Test", &JobState::byteISDN_Fern_Alarmtest_Counter, remote_alarm_test},
    {"ISDN Alarm aus", &JobState::byteAlarm_aus_Counter, alarm_off},
    {"ISDN fern Alarm aus", &JobState::byteISDN_Fern_Alarm_aus_Counter, remote_alarm_off},
    {"ISDN MSN", &JobState::byteMSN_Counter, set_msn},
    {"ISDN Anschlussart", &JobState::byteISDN_Anschluss_Counter, set_line_type},
    {"ISDN Schnittstelle", &JobState::byteSchnittstellenaenderung_Counter, change_interface},
};

constexpr Move start_remote_jobs[] = {
    {&JobState::boolParametrieren, &JobState::byteISDN_Fern_Para_Counter, 1},
    {&JobState::boolAlarmtest, &JobState::byteISDN_Fern_Alarmtest_Counter, 1},
    {&JobState::boolAlarm_deaktivieren, &JobState::byteISDN_Fern_Alarm_aus_Counter, 1},
};

constexpr Move password_asked[] = {{nullptr, &JobState::byteISDN_Anwahl_Counter, 0}};

/// Whether this job waits for the prompt at the moment.
constexpr Reply prompt(FlagOf job, CounterOf counter, const char *command, Counter becomes,
                       const char *text = "#") {
    return {.contains = text,
            .awaited = &JobState::boolKommunikations_Fehler32,
            .during = job,
            .at = {counter, 0},
            .after = command,
            .counter = counter,
            .becomes = becomes,
            .restart = 800ms};
}
constexpr Reply prompt_configure(const char *command, Counter becomes) {
    return prompt(&JobState::boolParametrieren, &JobState::byteISDN_Fern_Para_Counter, command, becomes);
}

/// "64" is part of the answer to "ATI1", which is asked over the cable only; in a call it may be part of
/// anything.
constexpr Reply identified(FlagOf awaited, CounterOf counter, Counter becomes, milliseconds restart) {
    return {.contains = "64",
            .awaited = awaited,
            .when = direct,
            .counter = counter,
            .becomes = becomes,
            .restart = restart};
}

constexpr Reply replies[] = {
    change_reply("64", &JobState::boolKommunikations_Fehler76, 2),
    change_reply("64", &JobState::boolKommunikations_Fehler77, 7),
    {.contains = "NEW ALARM TEXT: ",
     .awaited = &JobState::boolKommunikations_Fehler31,
     .counter = &JobState::byteParametrier_Counter,
     .becomes = 2,
     .restart = 1100ms},
    identified(&JobState::boolKommunikations_Fehler32, &JobState::byteParametrier_Counter, 8, 100ms),
    identified(&JobState::boolKommunikations_Fehler33, &JobState::byteAlarm_aus_Counter, 2, 100ms),
    identified(&JobState::boolKommunikations_Fehler34, &JobState::byteAlarmtest_Counter, 2, 100ms),
    identified(&JobState::boolKommunikations_Fehler51, &JobState::byteMSN_Counter, 2, 1100ms),
    identified(&JobState::boolKommunikations_Fehler52, &JobState::byteISDN_Anschluss_Counter, 2, 1100ms),

    {.contains = "password:",
     .when = [](const Desk &d) { return d.jobs.byteISDN_Anwahl_Counter > 0; },
     .clears = &JobState::boolAnwahl_Fehler,
     .counter = &JobState::byteAnwahl_Counter,
     .becomes = 2,
     .moves = password_asked,
     .restart = 1200ms},
    {.contains = "#",
     .also = "OK",
     .awaited = &JobState::boolPasswort_Fehler,
     .moves = start_remote_jobs,
     .restart = 1200ms},
    prompt_configure("altxt=", 2),
    prompt_configure("aldest=", 3),
    prompt_configure("catab1=", 4),
    prompt_configure("catab3=", 5),
    prompt_configure("save", 6),
    prompt(&JobState::boolAlarmtest, &JobState::byteISDN_Fern_Alarmtest_Counter, "Alarm", 2),
    // The device may drop the line before its prompt is through.
    prompt(&JobState::boolAlarmtest, &JobState::byteISDN_Fern_Alarmtest_Counter, "quit", 3, ""),
    prompt(&JobState::boolAlarm_deaktivieren, &JobState::byteISDN_Fern_Alarm_aus_Counter, "catab1=-", 2),
    prompt(&JobState::boolAlarm_deaktivieren, &JobState::byteISDN_Fern_Alarm_aus_Counter, "save", 3),
};

} // namespace
} // namespace dialogues

constexpr Family isdn_family{"ISDN", dialogues::jobs, dialogues::replies};

} // namespace telvox
