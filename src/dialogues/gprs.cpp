#include "dialogues/families.hpp"
#include "dialogues/gprs_settings.hpp"
#include "dialogues/gprs_steps.hpp"
#include "dialogues/interface_change.hpp"
#include "dialogues/ipt_settings.hpp"

namespace telvox {

namespace dialogues {
namespace {

std::string message_text(const JobContext &c) {
    constexpr char end_of_message = '\x1A'; // Ctrl-Z
    return alarm_text(c) + end_of_message;
}

/// The alarm is a message stored in the first slot of the SIM, which the input then sends.
constexpr auto configure = script(
    gprs_opening(3s, check(checking, 3s, &JobState::boolKommunikations_Fehler31)),
    tell("AT**INPUT=1", "Alarmeingang wird konfiguriert", 1s),
    tell("AT+CMGF=1", "SMS Textmodus wird aktiviert", 1s),
    tell("AT+CMGD=1", "SMS Speicherplatz wird gelöscht", 1s),
    tell({"AT+CSCA=", value<&JobValues::service_number>}, "Service-Nummer wird eingestellt", 1s),
    changing(ask({"AT+CMGW=", value<&JobValues::receiver>}, "Rufnummer des Empfängers wird konfiguriert", 3s,
                 &JobState::boolKommunikations_Fehler74, {">"})),
    tell(message_text, giving_text, 3s), tell("AT**SAVE", "Einstellungen speichern", 3s),
    tell("AT&W", "Einstellungen speichern", 3s),
    check_and_restart(4s, &JobState::boolKommunikations_Fehler32),
    // In a call too the line is only closed; the device leaves its configuration mode by the restart.
    finish(configured_mobile));

/// Nothing follows the command that could show whether it still got through a call that fell.
constexpr auto alarm_off = script(
    gprs_opening(3s, check({}, 4s, &JobState::boolKommunikations_Fehler33)),
    tell("AT**INPUT=0", sending_alarm_off, 4s),
    when([](const JobContext &c) { return c.jobs.line_dropped; }, finish(call_has_fallen, End::failed)),
    finish(alarm_is_off));

constexpr auto set_pin =
    script(ask("AT**IMEI?", connecting, 2s, &JobState::boolKommunikations_Fehler41, {"IMEI:"}), pin_and_end);

constexpr auto pin_status = script(gprs_opening(2s), ask_pin_lock, ask_sim_state, no_sim_card, finish());

constexpr auto registration =
    script(gprs_opening(3s), ask_registration(6s, &JobState::boolKommunikations_Fehler43), finish());
constexpr auto signal = script(gprs_opening(3s), ask_signal, finish());
/// Its answer may come with the opening already.
constexpr auto imei = script(gprs_opening(3s, 1, take_imei), ask_imei, finish());

/// Rate and format come into force one after the other, and the own port follows each.
constexpr auto change_interface = script(
    gprs_opening(2s, check_format("AT**IMEI?", checking, 1200ms, "IMEI:")),
    tell(baud_command, changing_rate, 1200ms), in_format(at_new_rate, tell(format_command, changing_format)),
    in_format(in_new_format, save_format), check_new_format("AT**IMEI?", "IMEI:"),
    format_changed("Das GPRS-Modem wurde erfolgreich parametriert."));

/// What a call starts.
constexpr Move start_gprs_jobs[] = {
    {&JobState::boolGPRS_parametrieren, &JobState::byteGPRS_Counter, 1},
    {&JobState::boolGPRS_lesen, &JobState::byteGPRS_lese_Counter, 1},
    {&JobState::boolIPT_parametrieren, &JobState::byteIPT_Counter, 1},
    {&JobState::boolIPT_lesen, &JobState::byteIPT_lese_Counter, 1},
    {&JobState::boolParametrieren, &JobState::byteParametrier_Counter, 1},
    {&JobState::boolAlarm_deaktivieren, &JobState::byteAlarm_aus_Counter, 1},
};
constexpr auto dial = script(mobile_dial(start_gprs_jobs));

constexpr Job jobs[] = {
    {"GPRS Anwahl", &JobState::byteAnwahl_Counter, dial},
    {"GPRS konfigurieren", &JobState::byteParametrier_Counter, configure},
    {"GPRS Alarm aus", &JobState::byteAlarm_aus_Counter, alarm_off},
    {"GPRS PIN", &JobState::bytePin_Counter, set_pin},
    {"GPRS PIN-Status", &JobState::bytePin_Status_Counter, pin_status},
    {"GPRS Registrierung", &JobState::byteGSM_Reg_Counter, registration},
    {"GPRS Signal", &JobState::byteGSM_Signal_Counter, signal},
    {"GPRS IMEI", &JobState::byteIMEI_Counter, imei},
    {"GPRS schreiben", &JobState::byteGPRS_Counter, gprs_write},
    {"GPRS lesen", &JobState::byteGPRS_lese_Counter, gprs_read},
    {"IPT schreiben", &JobState::byteIPT_Counter, ipt_write},
    {"IPT lesen", &JobState::byteIPT_lese_Counter, ipt_read},
    {"GPRS Schnittstelle", &JobState::byteSchnittstellenaenderung_Counter, change_interface},
};

constexpr Reply replies[] = {carrier_up, carrier_down, carrier_back};

} // namespace
} // namespace dialogues

constexpr Family gprs_family{"GPRS", dialogues::jobs, dialogues::replies};

} // namespace telvox
