#include "dialogues/families.hpp"
#include "dialogues/interface_change.hpp"
#include "dialogues/mobile.hpp"

#include <algorithm>

namespace telvox {

namespace dialogues {
namespace {

/// Commands exist in two generations: "AT**MSG1=" on devices that identify as "KWT Telvox-A", "AT**MSG2=" on
/// older ones.
std::string by_generation(const JobContext &c, const std::string &rest) {
    return (c.jobs.newer_generation ? "1=" : "2=") + rest;
}
std::string receiver_by_generation(const JobContext &c) { return by_generation(c, c.values.receiver); }
/// The alarm text stands in double quotes on the line, so it cannot hold one.
std::string text_by_generation(const JobContext &c) {
    std::string text = alarm_text(c);
    std::replace(text.begin(), text.end(), '"', '\'');
    return by_generation(c, '"' + text + '"');
}
std::string input_by_generation(const JobContext &c) { return by_generation(c, "1"); }

/// Any answer shows that the device is there: it tells its time.
constexpr Step check(RowText status, milliseconds wait, FlagOf flag, milliseconds after = 100ms) {
    return ask("AT**TIME?", status, wait, flag, {"TIME:"}, after);
}
constexpr const char *checking = "Verbindungsprüfung";

constexpr Step ask_generation = {.act = [](const JobContext &c) { c.session.boolWavecom_Modem = false; },
                                 .send = "ATI"};
constexpr Counter commands_begin = 3; ///< and the generation is taken over
constexpr Step set_receiver = {
    .status = "Rufnummer des Empfängers wird konfiguriert",
    .act = [](const JobContext &c) { c.jobs.newer_generation = c.session.boolWavecom_Modem; },
    .send = {"AT**DST", receiver_by_generation},
    .changes_device = true};

constexpr auto configure =
    script(check(checking, 4s, &JobState::boolKommunikations_Fehler31, 1100ms), ask_generation, set_receiver,
           tell({"AT**MSG", text_by_generation}, giving_text),
           tell({"AT**SCN=", value<&JobValues::service_number>}, "Service-Nummer wird eingestellt"),
           tell({"AT**INPUT", input_by_generation}, "Alarmeingang wird konfiguriert"),
           check(checking, 4s, &JobState::boolKommunikations_Fehler32, 1100ms),
           leave_and_finish(leave_remote("AT**EXIT"), configured_mobile));

constexpr Step send_second() {
    Step step = tell("AT**SMS=2");
    step.on_fall = OnFall::skipped;
    return step;
}
constexpr auto alarm_test =
    script(check({}, 4s, &JobState::boolKommunikations_Fehler34), tell("AT**SMS=1", sending_test),
           send_second(), leave_and_finish(leave_remote("AT**EXIT"), test_sent));

/// An empty service centre leaves the device nobody to send its alarm through.
constexpr auto alarm_off =
    script(check({}, 4s, &JobState::boolKommunikations_Fehler33), tell("AT**SCN=", sending_alarm_off),
           leave_and_finish(leave_remote("AT**EXIT", OnFall::fails), alarm_is_off));

constexpr auto set_pin = script(check(connecting, 6s, &JobState::boolKommunikations_Fehler41), pin_and_end);

/// The device normally runs with result codes off; the standard queries need them on for their answers.
constexpr Step results_on = say("ATQ0", "Rückmeldung einschalten", 1500ms);
constexpr Step results_off = say("ATQ1", "Rückmeldung ausschalten", 800ms);

constexpr auto pin_status =
    script(ask_pin_lock, results_on, ask_sim_state, no_sim_card, results_off, finish());

/// The device is put in order first, and then a missing answer is told.
constexpr Step told_registration =
    when([](const JobContext &c) { return c.findings.registration.has_value(); }, finish());
constexpr auto registration = script(check(checking, 4s, &JobState::boolKommunikations_Fehler43), results_on,
                                     going_on(ask_registration({}, nullptr)), results_off, told_registration,
                                     finish(no_connection_check, End::failed));

constexpr auto signal = script(ask_signal, finish());
constexpr auto imei = script(ask_imei, finish());

constexpr auto change_interface =
    script(check_format("AT**TIME?", checking, 2s, "TIME:"), tell(baud_command, changing_rate),
           tell(format_command, changing_format), save_format,
           in_format(in_new_format, check_new_format("AT**TIME?", "TIME:")),
           format_changed("Das GSM-Modem wurde erfolgreich parametriert."));

constexpr auto dial = script(mobile_dial(start_jobs));

constexpr Job jobs[] = {
    {"GSM Anwahl", &JobState::byteAnwahl_Counter, dial},
    {"GSM konfigurieren", &JobState::byteParametrier_Counter, configure},
    {"GSM Test", &JobState::byteAlarmtest_Counter, alarm_test},
    {"GSM Alarm aus", &JobState::byteAlarm_aus_Counter, alarm_off},
    {"GSM PIN", &JobState::bytePin_Counter, set_pin},
    {"GSM PIN-Status", &JobState::bytePin_Status_Counter, pin_status},
    {"GSM Registrierung", &JobState::byteGSM_Reg_Counter, registration},
    {"GSM Signal", &JobState::byteGSM_Signal_Counter, signal},
    {"GSM IMEI", &JobState::byteIMEI_Counter, imei},
    {"GSM Schnittstelle", &JobState::byteSchnittstellenaenderung_Counter, change_interface},
};

bool note_newer_device(const JobContext &c, const Found &) {
    c.session.boolWavecom_Modem = true;
    return true;
}

constexpr Reply replies[] = {
    carrier_up,
    carrier_down,
    carrier_back,
    {.contains = "KWT Telvox-A", .take = note_newer_device},
    // A slow device identifies only after the first command of the wrong generation: the commands begin
    // again. Later the text may be the echo of an alarm text that names the device.
    {.contains = "KWT Telvox-A",
     .at = {&JobState::byteParametrier_Counter, commands_begin + 1},
     .when = [](const JobContext &c) { return !c.jobs.newer_generation; },
     .counter = &JobState::byteParametrier_Counter,
     .becomes = commands_begin,
     .restart = 1100ms},
};

} // namespace
} // namespace dialogues

constexpr Family gsm_family{"GSM", dialogues::jobs, dialogues::replies};

} // namespace telvox
