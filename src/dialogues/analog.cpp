#include "dialogues/families.hpp"
#include "dialogues/interface_change.hpp"
#include "dialogues/shared.hpp"

namespace telvox {

namespace dialogues {
namespace {

constexpr auto dial =
    script(dial_number({"ATX3D", [](const JobContext &c) { return number_text(c.values.number); }}),
           knock("****", "ONLINE"), type_password({">"}, start_jobs, 1100ms));

std::string protocol(const JobContext &c) {
    const std::string &code = c.values.strSMS_Protokoll;
    return !c.values.by_sms ? "M5" : valid_protocol(code) ? code : "M6";
}
std::string called_number(const JobContext &c) {
    return c.values.by_sms ? service_number_outside(c) : receiver_outside(c);
}

/// The device acknowledges in words of its own: any data does.
constexpr const char *any_data = "";

/// The prompt for the text leads on by a row of its own, below.
constexpr Step ask_for_text_prompt = {
    .status = giving_text, .send = "AT*V", .wait = 11s, .awaits = &JobState::boolKommunikations_Fehler31};

constexpr auto configure =
    script(ask_for_text_prompt, give_text, tell({"AT*", protocol}, "Protokoll wird eingestellt"),
           tell({"AT&Z0=", called_number}, "Service-Nummer wird eingestellt"),
           tell({"AT&Z2=", value<&JobValues::receiver>}, "Rufnummer des Empfängers wird konfiguriert"),
           save_configuration, check_configuration("ATI0", any_data),
           leave_and_finish(leave_remote("ATZ"), configured_try_test));

/// The test leaves the remote configuration with "AT*E", which lets the device dial its alarm at once.
constexpr auto alarm_test =
    script(device_check("ATI0", &JobState::boolKommunikations_Fehler34, any_data),
           tell("AT%A", sending_test, 1s), leave_and_finish(leave_remote("AT*E"), test_sent_sms_or_fax));

/// An empty service number leaves the device nobody to call; it is not saved with "AT&W".
constexpr auto alarm_off = script(device_check("ATI0", &JobState::boolKommunikations_Fehler33, any_data),
                                  tell("AT&Z0=", sending_alarm_off, 1s),
                                  leave_and_finish(leave_remote("ATZ", OnFall::fails), alarm_is_off));

/// The device takes the format in which it is addressed, so the own port goes first.
constexpr auto change_interface = script(
    in_format(in_new_format, check_format("ATI", "Schnittstelleneinstellungen ändern", 1500ms, "33600")),
    save_format, check_new_format("ATI", "33600"),
    format_changed("Das Modem wurde erfolgreich parametriert."));

constexpr Job jobs[] = {
    {"Analog Anwahl", &JobState::byteAnwahl_Counter, dial},
    {"Analog konfigurieren", &JobState::byteParametrier_Counter, configure},
    {"Analog Test", &JobState::byteAlarmtest_Counter, alarm_test},
    {"Analog Alarm aus", &JobState::byteAlarm_aus_Counter, alarm_off},
    {"Analog Schnittstelle", &JobState::byteSchnittstellenaenderung_Counter, change_interface},
};

/// The prompt for the alarm text counts once per configuration, also late: an echo of a text that holds it
/// would begin everything again, and it must not start a configuration in the middle of another job.
bool configuring(const JobContext &c) {
    return !c.jobs.text_asked && (c.jobs.boolKommunikations_Fehler31 || c.jobs.byteParametrier_Counter != 0);
}

constexpr Reply replies[] = {
    carrier_up,
    carrier_down,
    carrier_back,
    {.contains = text_prompt,
     .when = configuring,
     .clears = &JobState::boolKommunikations_Fehler31,
     .sets = &JobState::text_asked,
     .counter = &JobState::byteParametrier_Counter,
     .becomes = 2,
     .restart = 1100ms},
};

} // namespace
} // namespace dialogues

constexpr Family analog_family{
    .name = "Analog", .jobs = dialogues::jobs, .replies = dialogues::replies, .presence = "ATI0"};

} // namespace telvox
