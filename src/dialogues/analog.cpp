#include "dialogues/families.hpp"
#include "dialogues/interface_change.hpp"
#include "dialogues/shared.hpp"

namespace telvox {

namespace dialogues {
namespace {

void start_set_jobs(Desk &desk) {
    for (const Move &move : start_jobs)
        if (desk.jobs.*move.when)
            desk.jobs.*move.counter = move.becomes;
}

bool no_password(const Desk &desk) { return desk.frmModem.tboPasswort.text.empty(); }

constexpr Step dial[] = {
    {.number = 1,
     .status = "Anwahl",
     .send = [](const Desk &d) { return "ATX3D" + number_text(d.frmModem.tboRufnummer_Modem.text); },
     .wait = 60s,
     .awaits = &JobState::boolAnwahl_Fehler},
    // A device without password is spoken to at once, and again on every tick.
    {.number = 2,
     .when = no_password,
     .status = "Einleiten der Fernkonfiguration",
     .act = start_set_jobs,
     .send = "****",
     .as = Write::raw,
     .times = [](const Desk &) { return std::size_t{1}; }, // the start refuses an empty password
     .next = 2},
    {.number = 2,
     .status = "Einleiten der Fernkonfiguration",
     .send = "****",
     .as = Write::raw,
     .wait = 11s,
     .awaits = &JobState::boolAntwort_Fehler},
    type_password(3),
    end_password(3),
};

constexpr Step configure[] = {
    ask_for_text_prompt(11s),
    give_text,
    {.number = 3,
     .status = "Protokoll wird eingestellt",
     .send =
         [](const Desk &d) {
             const std::string &code = d.session.strSMS_Protokoll;
             return "AT*" + std::string(!by_sms(d) ? "M5" : valid_protocol(code) ? code : "M6");
         },
     .next = 4},
    {.number = 4,
     .status = "Service-Nummer wird eingestellt",
     .send =
         [](const Desk &d) {
             return "AT&Z0=" + outside_line(d) + (by_sms(d) ? service_number(d) : receiver(d));
         },
     .next = 5},
    {.number = 5,
     .status = "Rufnummer des Empfängers wird konfiguriert",
     .send = [](const Desk &d) { return "AT&Z2=" + receiver(d); },
     .next = 6},
    save_configuration,
    check_configuration("ATI0"),
    leave_remote(8, "ATZ"),
    {.number = 8, .end = End::drop, .message = configured_try_test},
    {.number = 9, .end = End::hang_up, .message = configured_try_test},
};

/// The test leaves the remote configuration with "AT*E", which lets the device dial its alarm at once.
constexpr Step alarm_test[] = {
    device_check("ATI0", &JobState::boolKommunikations_Fehler34),
    {.number = 2, .status = sending_test, .send = "AT%A", .wait = 1s, .next = 3},
    leave_remote(3, "AT*E"),
    {.number = 3, .end = End::drop, .message = test_sent_sms_or_fax},
    {.number = 4, .end = End::hang_up, .message = test_sent_sms_or_fax},
};

/// An empty service number leaves the device nobody to call; it is not saved with "AT&W".
constexpr Step alarm_off[] = {
    device_check("ATI0", &JobState::boolKommunikations_Fehler33),
    {.number = 2, .status = sending_alarm_off, .send = "AT&Z0=", .wait = 1s, .next = 3},
    {.number = 3, .when = remote, .status = leaving_remote, .send = "ATZ", .next = 4},
    {.number = 3, .end = End::drop, .message = alarm_is_off},
    {.number = 4, .end = End::hang_up, .message = alarm_is_off},
};

/// The device takes the format in which it is addressed, so the own port goes first.
constexpr Step change_interface[] = {
    {.number = 1,
     .status = "Schnittstelleneinstellungen ändern",
     .format = in_new_format,
     .send = "ATI",
     .wait = 1500ms,
     .awaits = &JobState::boolKommunikations_Fehler76},
    save_format(2),
    check_new_format(3, "ATI"),
    format_changed(4, "Das Modem wurde erfolgreich parametriert."),
};

constexpr Job jobs[] = {
    {"Analog Anwahl", &JobState::byteAnwahl_Counter, dial},
    {"Analog konfigurieren", &JobState::byteParametrier_Counter, configure},
    {"Analog Test", &JobState::byteAlarmtest_Counter, alarm_test},
    {"Analog Alarm aus", &JobState::byteAlarm_aus_Counter, alarm_off},
    {"Analog Schnittstelle", &JobState::byteSchnittstellenaenderung_Counter, change_interface},
};

/// The prompt for the alarm text counts once per configuration, also late: an echo of a text that holds it
/// would begin everything again, and it must not start a configuration in the middle of another job.
bool configuring(const Desk &desk) {
    return !desk.jobs.text_asked &&
           (desk.jobs.boolKommunikations_Fehler31 || desk.jobs.byteParametrier_Counter != 0);
}

/// The device acknowledges in words of its own: any data does while its flag is armed.
constexpr Reply any_data(FlagOf awaited, CounterOf counter, Counter becomes) {
    return {.awaited = awaited, .counter = counter, .becomes = becomes, .restart = 100ms};
}

constexpr Reply replies[] = {
    carrier_up,
    carrier_down,
    carrier_back,
    change_reply("33600", &JobState::boolKommunikations_Fehler76, 2),
    change_reply("33600", &JobState::boolKommunikations_Fehler77, 4),
    {.contains = "ONLINE",
     .awaited = &JobState::boolAntwort_Fehler,
     .counter = &JobState::byteAnwahl_Counter,
     .becomes = 3,
     .restart = 1100ms},
    {.contains = ">", .awaited = &JobState::boolPasswort_Fehler, .moves = start_jobs, .restart = 1100ms},
    {.contains = "NEW ALARM TEXT: ",
     .when = configuring,
     .clears = &JobState::boolKommunikations_Fehler31,
     .sets = &JobState::text_asked,
     .counter = &JobState::byteParametrier_Counter,
     .becomes = 2,
     .restart = 1100ms},
    any_data(&JobState::boolKommunikations_Fehler32, &JobState::byteParametrier_Counter, 8),
    any_data(&JobState::boolKommunikations_Fehler33, &JobState::byteAlarm_aus_Counter, 2),
    any_data(&JobState::boolKommunikations_Fehler34, &JobState::byteAlarmtest_Counter, 2),
};

} // namespace
} // namespace dialogues

constexpr Family analog_family{"Analog", dialogues::jobs, dialogues::replies};

} // namespace telvox
