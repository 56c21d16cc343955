#include "dialogues/families.hpp"
#include "dialogues/interface_change.hpp"
#include "dialogues/mobile.hpp"

#include <algorithm>

namespace telvox {

namespace dialogues {
namespace {

/// Commands exist in two generations: "AT**MSG1=" on devices that identify as "KWT Telvox-A", "AT**MSG2=" on
/// older ones.
std::string by_generation(const Desk &desk, const char *command, const std::string &rest) {
    return command + std::string(desk.jobs.newer_generation ? "1=" : "2=") + rest;
}

/// The alarm text stands in double quotes on the line, so it cannot hold one.
std::string quoted(std::string text) {
    std::replace(text.begin(), text.end(), '"', '\'');
    return '"' + text + '"';
}

constexpr Step configure[] = {
    {.number = 1,
     .status = "Verbindungsprüfung",
     .send = "AT**TIME?",
     .wait = 4s,
     .awaits = &JobState::boolKommunikations_Fehler31},
    {.number = 2, .act = [](Desk &d) { d.session.boolWavecom_Modem = false; }, .send = "ATI", .next = 3},
    {.number = 3,
     .status = "Rufnummer des Empfängers wird konfiguriert",
     .act = [](Desk &d) { d.jobs.newer_generation = d.session.boolWavecom_Modem; },
     .send = [](const Desk &d) { return by_generation(d, "AT**DST", receiver(d)); },
     .next = 4},
    {.number = 4,
     .status = "Übertragung des Alarmtextes",
     .send = [](const Desk &d) { return by_generation(d, "AT**MSG", quoted(alarm_text(d))); },
     .next = 5},
    {.number = 5,
     .status = "Service-Nummer wird eingestellt",
     .send = [](const Desk &d) { return "AT**SCN=" + service_number(d); },
     .next = 6},
    {.number = 6,
     .status = "Alarmeingang wird konfiguriert",
     .send = [](const Desk &d) { return by_generation(d, "AT**INPUT", "1"); },
     .next = 7},
    {.number = 7,
     .status = "Verbindungsprüfung",
     .send = "AT**TIME?",
     .wait = 4s,
     .awaits = &JobState::boolKommunikations_Fehler32},
    leave_remote(8, "AT**EXIT"),
    {.number = 8, .end = End::drop, .message = configured_mobile},
    {.number = 9, .end = End::hang_up, .message = configured_mobile},
};

constexpr Step alarm_test[] = {
    device_check("AT**TIME?", &JobState::boolKommunikations_Fehler34),
    {.number = 2, .status = sending_test, .send = "AT**SMS=1", .next = 3},
    {.number = 3, .send = "AT**SMS=2", .on_fall = OnFall::skipped, .next = 4},
    leave_remote(4, "AT**EXIT"),
    {.number = 4, .end = End::drop, .message = test_sent},
    {.number = 5, .end = End::hang_up, .message = test_sent},
};

/// An empty service centre leaves the device nobody to send its alarm through.
constexpr Step alarm_off[] = {
    device_check("AT**TIME?", &JobState::boolKommunikations_Fehler33),
    {.number = 2, .status = sending_alarm_off, .send = "AT**SCN=", .next = 3},
    {.number = 3, .when = remote, .status = leaving_remote, .send = "AT**EXIT", .next = 4},
    {.number = 3, .end = End::drop, .message = alarm_is_off},
    {.number = 4, .end = End::hang_up, .message = alarm_is_off},
};

constexpr auto set_pin = pin_steps("AT**TIME?", 6s);

/// The device normally runs with result codes off; the standard queries need them on for their answers.
constexpr const char *results_on = "Rückmeldung einschalten";
constexpr const char *results_off = "Rückmeldung ausschalten";

constexpr Step pin_status[] = {
    {.number = 1,
     .status = "Prüfe ob PIN hinterlegt",
     .send = "AT**PIN?",
     .wait = 4s,
     .awaits = &JobState::boolKommunikations_Fehler42},
    {.number = 2, .status = results_on, .send = "ATQ0", .wait = 1500ms, .next = 3},
    {.number = 3, .status = "Frage Status ab", .send = "AT+CPIN?", .wait = 2200ms, .next = 4},
    // Reached only without a "+CPIN:" answer.
    no_sim_card(4),
    {.number = 5, .status = results_off, .send = "ATQ1", .wait = 800ms, .next = 6},
    {.number = 6, .end = End::drop},
};

constexpr Step registration[] = {
    {.number = 1,
     .status = "Verbindungsprüfung",
     .send = "AT**TIME?",
     .wait = 4s,
     .awaits = &JobState::boolKommunikations_Fehler43},
    {.number = 2, .status = results_on, .send = "ATQ0", .wait = 1500ms, .next = 3},
    {.number = 3, .status = "Frage Registrierungszustand ab", .send = "AT+CREG?", .next = 4},
    {.number = 4, .status = results_off, .send = "ATQ1", .wait = 800ms, .next = 5},
    // The device is put in order first, and then a missing answer is told.
    {.number = 5, .when = [](const Desk &d) { return d.jobs.answered; }, .end = End::drop},
    {.number = 5, .end = End::failed, .message = no_connection_check},
};

constexpr Step signal[] = {
    {.number = 1,
     .status = "Frage Signalstärke ab",
     .send = "AT+CSQ",
     .wait = 6s,
     .awaits = &JobState::boolKommunikations_Fehler44},
    {.number = 2, .end = End::drop},
};

constexpr Step imei[] = {
    {.number = 1,
     .status = "Frage IMEI ab",
     .send = "AT**IMEI?",
     .wait = 6s,
     .awaits = &JobState::boolKommunikations_Fehler71},
    {.number = 2, .end = End::drop},
};

constexpr Step change_interface[] = {
    {.number = 1,
     .status = "Verbindungsprüfung",
     .send = "AT**TIME?",
     .wait = 2s,
     .awaits = &JobState::boolKommunikations_Fehler76},
    change(2, changing_rate, baud_command),
    change(3, changing_format, format_command),
    save_format(4),
    check_new_format(5, "AT**TIME?", in_new_format),
    format_changed(6, "Das GSM-Modem wurde erfolgreich parametriert."),
};

constexpr Job jobs[] = {
    {"GSM Anwahl", &JobState::byteAnwahl_Counter, mobile_dial},
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

bool note_newer_device(Desk &desk, const Found &) {
    desk.session.boolWavecom_Modem = true;
    return true;
}

constexpr Reply time_reply(FlagOf awaited, CounterOf counter, Counter becomes, milliseconds restart) {
    return {
        .contains = "TIME:", .awaited = awaited, .counter = counter, .becomes = becomes, .restart = restart};
}

constexpr Reply replies[] = {
    carrier_up,
    carrier_down,
    carrier_back,
    change_reply("TIME:", &JobState::boolKommunikations_Fehler76, 2),
    change_reply("TIME:", &JobState::boolKommunikations_Fehler77, 6),
    time_reply(&JobState::boolKommunikations_Fehler41, &JobState::bytePin_Counter, 2, 100ms),
    time_reply(&JobState::boolKommunikations_Fehler43, &JobState::byteGSM_Reg_Counter, 2, 100ms),
    pin_lock("inactive", show_no_pin, 2),
    pin_lock("active", show_pin, 2),
    sim_state(4),
    {.contains = "+CREG:",
     .at = {&JobState::byteGSM_Reg_Counter, 4},
     .take = take_registration,
     .sets = &JobState::answered,
     .restart = 100ms},
    {.contains = "ERROR",
     .at = {&JobState::byteGSM_Reg_Counter, 4},
     .when = [](const Desk &d) { return !d.jobs.answered; },
     .take = take_refusal,
     .sets = &JobState::answered,
     .restart = 100ms},
    signal_reply(2),
    imei_reply(&JobState::boolKommunikations_Fehler71, take_imei, &JobState::byteIMEI_Counter, 2),
    time_reply(&JobState::boolKommunikations_Fehler31, &JobState::byteParametrier_Counter, 2, 1100ms),
    time_reply(&JobState::boolKommunikations_Fehler32, &JobState::byteParametrier_Counter, 8, 1100ms),
    {.contains = "REMOTE CONFIGURATION MODE",
     .awaited = &JobState::boolAntwort_Fehler,
     .moves = start_jobs,
     .restart = 1100ms},
    time_reply(&JobState::boolKommunikations_Fehler33, &JobState::byteAlarm_aus_Counter, 2, 100ms),
    time_reply(&JobState::boolKommunikations_Fehler34, &JobState::byteAlarmtest_Counter, 2, 100ms),
    {.contains = "KWT Telvox-A", .take = note_newer_device},
    // A slow device identifies only after the first command of the wrong generation: the commands begin
    // again. Later the text may be the echo of an alarm text that names the device.
    {.contains = "KWT Telvox-A",
     .at = {&JobState::byteParametrier_Counter, 4},
     .when = [](const Desk &d) { return !d.jobs.newer_generation; },
     .counter = &JobState::byteParametrier_Counter,
     .becomes = 3,
     .restart = 1100ms},
};

} // namespace
} // namespace dialogues

constexpr Family gsm_family{"GSM", dialogues::jobs, dialogues::replies};

} // namespace telvox
