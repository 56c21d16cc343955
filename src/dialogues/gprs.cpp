#include "dialogues/families.hpp"
#include "dialogues/gprs_settings.hpp"
#include "dialogues/gprs_steps.hpp"
#include "dialogues/interface_change.hpp"
#include "dialogues/ipt_settings.hpp"

namespace telvox {

namespace dialogues {
namespace {

constexpr char end_of_message = '\x1A'; ///< Ctrl-Z

/// The alarm is a message stored in the first slot of the SIM, which the input then sends.
constexpr auto configure = table(
    gprs_opening(3s), check_after_opening(checking, 3s, &JobState::boolKommunikations_Fehler31),
    command(5, "Alarmeingang wird konfiguriert", "AT**INPUT=1", 1s),
    command(6, "SMS Textmodus wird aktiviert", "AT+CMGF=1", 1s),
    command(7, "SMS Speicherplatz wird gelöscht", "AT+CMGD=1", 1s),
    command(
        8, "Service-Nummer wird eingestellt", [](const Desk &d) { return "AT+CSCA=" + service_number(d); },
        1s),
    Step{.number = 9,
         .status = "Rufnummer des Empfängers wird konfiguriert",
         .send = [](const Desk &d) { return "AT+CMGW=" + receiver(d); },
         .wait = 3s,
         .awaits = &JobState::boolKommunikations_Fehler74},
    command(
        10, "Übertragung des Alarmtextes", [](const Desk &d) { return alarm_text(d) + end_of_message; }, 3s),
    command(11, "Einstellungen speichern", "AT**SAVE", 3s),
    command(12, "Einstellungen speichern", "AT&W", 3s),
    check_and_restart(13, 4s, &JobState::boolKommunikations_Fehler32),
    // In a call too the line is only closed; the device leaves its configuration mode by the restart.
    Step{.number = 15, .end = End::drop, .message = configured_mobile});

/// Nothing follows the command that could show whether it still got through a call that fell.
constexpr auto alarm_off =
    table(gprs_opening(3s), check_after_opening(nullptr, 4s, &JobState::boolKommunikations_Fehler33),
          command(5, sending_alarm_off, "AT**INPUT=0", 4s),
          Step{.number = 6,
               .when = [](const Desk &d) { return d.jobs.line_dropped; },
               .end = End::failed,
               .message = call_has_fallen},
          Step{.number = 6, .end = End::drop, .message = alarm_is_off});

constexpr auto set_pin = pin_steps("AT**IMEI?", 2s);

constexpr auto pin_status = table(gprs_opening(2s),
                                  Step{.number = 4,
                                       .status = "Prüfe ob PIN hinterlegt",
                                       .send = "AT**PIN?",
                                       .wait = 4s,
                                       .awaits = &JobState::boolKommunikations_Fehler42},
                                  command(5, "Frage Status ab", "AT+CPIN?", 2200ms), no_sim_card(6),
                                  Step{.number = 7, .end = End::drop});

/// A query whose answer ends its job.
consteval auto query(const char *status, const char *command, FlagOf flag) {
    return table(gprs_opening(3s),
                 Step{.number = 4, .status = status, .send = command, .wait = 6s, .awaits = flag},
                 Step{.number = 5, .end = End::drop});
}
constexpr auto registration =
    query("Frage Registrierungszustand ab", "AT+CREG?", &JobState::boolKommunikations_Fehler43);
constexpr auto signal = query("Frage Signalstärke ab", "AT+CSQ", &JobState::boolKommunikations_Fehler44);
constexpr auto imei = query("Frage IMEI ab", "AT**IMEI?", &JobState::boolKommunikations_Fehler71);

/// Rate and format come into force one after the other, and the own port follows each.
constexpr auto change_interface = table(
    gprs_opening(2s), check_after_opening(checking, 1200ms, &JobState::boolKommunikations_Fehler76),
    command(5, changing_rate, baud_command, 1200ms), change(6, changing_format, format_command, at_new_rate),
    save_format(7, in_new_format), check_new_format(8, "AT**IMEI?"),
    format_changed(9, "Das GPRS-Modem wurde erfolgreich parametriert."));

constexpr Job jobs[] = {
    {"GPRS Anwahl", &JobState::byteAnwahl_Counter, mobile_dial},
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

constexpr Move start_gprs_jobs[] = {
    {&JobState::boolGPRS_parametrieren, &JobState::byteGPRS_Counter, 1},
    {&JobState::boolGPRS_lesen, &JobState::byteGPRS_lese_Counter, 1},
    {&JobState::boolIPT_parametrieren, &JobState::byteIPT_Counter, 1},
    {&JobState::boolIPT_lesen, &JobState::byteIPT_lese_Counter, 1},
    {&JobState::boolParametrieren, &JobState::byteParametrier_Counter, 1},
    {&JobState::boolAlarm_deaktivieren, &JobState::byteAlarm_aus_Counter, 1},
};

/// Where a job goes on when its device identified itself: it is in command mode, so the rest of the opening
/// is left out.
constexpr Move past_opening[] = {
    {&JobState::boolUART_umstellen, &JobState::byteSchnittstellenaenderung_Counter, 5},
    {&JobState::boolPIN_Status_lesen, &JobState::bytePin_Status_Counter, 4},
    {&JobState::boolREG_lesen, &JobState::byteGSM_Reg_Counter, 4},
    {&JobState::boolFeld_lesen, &JobState::byteGSM_Signal_Counter, 4},
    {&JobState::boolIMEI_lesen, &JobState::byteIMEI_Counter, 5},
    {&JobState::boolGPRS_parametrieren, &JobState::byteGPRS_Counter, 5},
    {&JobState::boolGPRS_lesen, &JobState::byteGPRS_lese_Counter, 5},
    {&JobState::boolIPT_parametrieren, &JobState::byteIPT_Counter, 5},
    {&JobState::boolParametrieren, &JobState::byteParametrier_Counter, 5},
    {&JobState::boolAlarm_deaktivieren, &JobState::byteAlarm_aus_Counter, 5},
    {&JobState::boolIPT_lesen, &JobState::byteIPT_lese_Counter, 5},
};

/// The IMEI query has its answer with the opening already; the other jobs need no more than its beginning.
bool take_opening(Desk &desk, const Found &found) {
    return !desk.jobs.boolIMEI_lesen || take_imei(desk, found);
}

constexpr Reply registration_reply(const char *text, bool (*take)(Desk &, const Found &)) {
    return {.contains = text,
            .awaited = &JobState::boolKommunikations_Fehler43,
            .take = take,
            .counter = &JobState::byteGSM_Reg_Counter,
            .becomes = 5,
            .restart = 100ms};
}

constexpr auto own_replies = std::to_array<Reply>({
    carrier_up,
    carrier_down,
    carrier_back,
    {.contains = "REMOTE CONFIGURATION MODE",
     .awaited = &JobState::boolAntwort_Fehler,
     .moves = start_gprs_jobs,
     .restart = 1100ms},
    {.contains = "IMEI: ",
     .awaited = &JobState::boolGPRS_Online,
     .take = take_opening,
     .moves = past_opening,
     .restart = 100ms},
    // Before the rows of the jobs that arm the same flag.
    change_reply("IMEI:", &JobState::boolKommunikations_Fehler76, 5),
    change_reply("IMEI:", &JobState::boolKommunikations_Fehler77, 9),
    {.contains = "IMEI:",
     .awaited = &JobState::boolKommunikations_Fehler41,
     .counter = &JobState::bytePin_Counter,
     .becomes = 2,
     .restart = 100ms},
    pin_lock("inactive", show_no_pin, 5),
    pin_lock("active", show_pin, 5),
    sim_state(6),
    registration_reply("+CREG:", take_registration),
    registration_reply("ERROR", take_refusal),
    signal_reply(5),
    imei_reply(&JobState::boolKommunikations_Fehler71, take_imei, &JobState::byteIMEI_Counter, 5),
    imei_reply(&JobState::boolKommunikations_Fehler72, whole_imei, &JobState::byteGPRS_Counter, 5),
    imei_reply(&JobState::boolKommunikations_Fehler73, whole_imei, &JobState::byteGPRS_Counter, 21),
    imei_reply(&JobState::boolKommunikations_Fehler75, whole_imei, &JobState::byteIPT_Counter, 5),
    imei_reply(&JobState::boolKommunikations_Fehler76, whole_imei, &JobState::byteIPT_Counter, 14),
    imei_reply(&JobState::boolKommunikations_Fehler31, whole_imei, &JobState::byteParametrier_Counter, 5),
    imei_reply(&JobState::boolKommunikations_Fehler32, whole_imei, &JobState::byteParametrier_Counter, 14),
    imei_reply(&JobState::boolKommunikations_Fehler33, whole_imei, &JobState::byteAlarm_aus_Counter, 5),
    {.contains = ">",
     .awaited = &JobState::boolKommunikations_Fehler74,
     .counter = &JobState::byteParametrier_Counter,
     .becomes = 10,
     .restart = 100ms},
});

constexpr auto replies = table(own_replies, query_replies(gprs_queries, &JobState::byteGPRS_lese_Counter),
                               query_replies(ipt_queries, &JobState::byteIPT_lese_Counter));

} // namespace
} // namespace dialogues

constexpr Family gprs_family{"GPRS", dialogues::jobs, dialogues::replies};

} // namespace telvox
