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

/// What the answer to the password starts.
constexpr Move start_remote_jobs[] = {
    {&JobState::boolParametrieren, &JobState::byteISDN_Fern_Para_Counter, 1},
    {&JobState::boolAlarmtest, &JobState::byteISDN_Fern_Alarmtest_Counter, 1},
    {&JobState::boolAlarm_deaktivieren, &JobState::byteISDN_Fern_Alarm_aus_Counter, 1},
};

/// The ISDN side gives no carrier: the set-up dials again and again until the device asks for the password.
constexpr std::size_t dial_attempts = 5;
constexpr Step dial_again = {
    .act = [](const JobContext &c) { ++c.jobs.byteISDN_Anwahl_Counter; },
    .send = [](const JobContext &c) { return "ATD" + number_text(c.values.number) + "e"; },
    .answers = {{{"password:"}}},
    .after = 1200ms};
template <std::size_t From, std::size_t Below> constexpr Step dial_while(Step step) {
    step.when = [](const JobContext &c) {
        return c.jobs.byteISDN_Anwahl_Counter >= From && c.jobs.byteISDN_Anwahl_Counter < Below;
    };
    step.again = true;
    step.times = [](const JobContext &) { return Below - From; };
    return step;
}
constexpr Step first_attempt() {
    Step step = dial_while<0, 1>(dial_again);
    step.status = "Anwahl und einleiten der Fernkonfiguration";
    step.wait = 4300ms;
    return step;
}
constexpr Step last_attempt() {
    Step step = dial_again;
    step.awaits = &JobState::boolAnwahl_Fehler;
    return step;
}
bool ready_behind_it(const JobContext &, const Found &found) {
    return found.all.find("OK") != std::string_view::npos;
}
constexpr auto dial = script(first_attempt(), dial_while<1, dial_attempts - 1>(dial_again), last_attempt(),
                             type_password({"#", ready_behind_it}, start_remote_jobs, 1200ms));

/// Part of the answer to "ATI1".
constexpr const char *identified = "64";

constexpr auto configure = script(
    ask("AT*V", giving_text, 15s, &JobState::boolKommunikations_Fehler31, {text_prompt}, 1100ms), give_text,
    tell({"AT*",
          [](const JobContext &c) {
              const std::string &code = c.values.strSMS_Protokoll_ISDN;
              return valid_protocol(code) ? code : std::string("M1");
          }},
         "Protokoll wird eingestellt"),
    tell({"AT&Z1=", service_number_outside}, "Service-Nummer wird eingestellt"),
    tell({"AT&Z3=", value<&JobValues::receiver>}, "Rufnummer des Empfängers wird konfiguriert"),
    save_configuration, check_configuration("ATI1", identified), finish(configured_try_test));

constexpr auto alarm_test = script(device_check("ATI1", &JobState::boolKommunikations_Fehler34, identified),
                                   tell("AT*X", sending_test, 1s), finish(test_sent));

constexpr auto alarm_off = script(device_check("ATI1", &JobState::boolKommunikations_Fehler33, identified),
                                  tell("AT&Z1=", sending_alarm_off, 1s), finish(alarm_is_off));

constexpr Step connect(FlagOf flag) {
    return ask("ATI1", "Verbindung wird hergestellt", 4s, flag, {identified}, 1100ms);
}
/// The command itself is the end of its job.
constexpr Step last_told(RowText send, const char *message) {
    Step step = tell(send);
    step.end = End::drop;
    step.message = message;
    return step;
}

constexpr auto set_line_type =
    script(connect(&JobState::boolKommunikations_Fehler52),
           last_told({"AT**PTP=",
                      [](const JobContext &c) { return std::to_string(c.values.byteISDN_Anschlussart); }},
                     "Die Anschlussart wurde eingestellt."));

constexpr auto set_msn =
    script(connect(&JobState::boolKommunikations_Fehler51),
           tell({"AT#Z=", value<&JobValues::strMSN>}, "MSN wird eingestellt"),
           last_told({"AT**MSN=", value<&JobValues::strMSN>}, "Die MSN wurde eingestellt."));

/// A command of the remote text interface, which answers each with its prompt.
constexpr Step remote_command(RowText send, RowText status, milliseconds wait, const char *prompt = "#") {
    return changing(ask(send, status, wait, &JobState::boolKommunikations_Fehler32, {prompt}, 800ms));
}

constexpr const char *saving = "Konfiguration wird gespeichert";
constexpr Step reset = tell("reset", leaving_remote);

constexpr auto remote_configure =
    script(remote_command({"altxt=", alarm_text}, giving_text, 6s),
           remote_command(
               [](const JobContext &c) {
                   const std::string &line = c.values.strSMS_Protokoll_ISDN_fern;
                   return valid_remote_protocol(line) ? line : std::string("aldest=1");
               },
               "Protokoll wird eingestellt", 4s),
           remote_command({"catab1=", receiver_outside}, "Service-Nummer wird eingestellt", 5s),
           remote_command({"catab3=", value<&JobValues::receiver>},
                          "Rufnummer des Empfängers wird konfiguriert", 5s),
           remote_command("save", saving, 5s), reset, finish_call("Telvox-A erfolgreich konfiguriert."));

/// The device may drop the line before its last prompt is through: anything is one.
constexpr auto remote_alarm_test = script(
    remote_command("Alarm", {}, 4s), remote_command("quit", leaving_remote, 4s, ""), finish_call(test_sent));

constexpr auto remote_alarm_off = script(
    remote_command("catab1=-", {}, 4s), remote_command("save", saving, 5s), reset, finish_call(alarm_is_off));

/// The device's rates begin with 1200.
int rate_code(const JobContext &c) { return place_of_new_rate(c) - 1; }
constexpr Step too_slow = {.when = [](const JobContext &c) { return rate_code(c) < 1; },
                           .end = End::failed,
                           .message = "Das ISDN-Modem unterstützt keine Baudraten < 1200 Baud"};

/// What was told is in force once it is saved.
constexpr auto change_interface =
    script(check_format("ATI1", checking_format, 1500ms, identified), too_slow,
           tell({"AT%B", [](const JobContext &c) { return std::to_string(rate_code(c)); }}, changing_rate),
           tell({"AT**PRTY=",
                 [](const JobContext &c) {
                     return std::to_string(std::string_view("noe").find(new_format(c).parity));
                 }},
                "Datenformat Parity umstellen"),
           tell({"AT**DBITS=", [](const JobContext &c) { return std::to_string(new_format(c).data_bits); }},
                changing_format),
           save_format, in_format(in_new_format, check_new_format("ATI1", identified)),
           format_changed("Das ISDN-Modem wurde erfolgreich parametriert."));

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

} // namespace
} // namespace dialogues

constexpr Family isdn_family{.name = "ISDN", .jobs = dialogues::jobs, .presence = "ATI1"};

} // namespace telvox
