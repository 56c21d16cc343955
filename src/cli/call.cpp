#include "cli/call.hpp"

#include <algorithm>
#include <array>

namespace telvox::cli {

namespace {

/// An option with a value that a job may need, in the order of the help text.
struct ValueOption {
    const char *name;
    const char *value;
    const char *help;
};
constexpr auto value_options = std::to_array<ValueOption>({
    {"--typ", "TYP", "analog, isdn, gsm, gprs oder ethernet (sonst analog)"},
    {"--verbindung", "WEG", "direkt (Kabel) oder fern (lokales Modem); sonst direkt"},
    {"--schnittstelle", "3|GERÄT", "Schnittstelle des Telvox-A: COM-Nummer oder Gerätepfad"},
    {"--modemanschluss", "6|GERÄT", "Schnittstelle des lokalen Modems"},
    {"--rufnummer-modem", "NUMMER", "Rufnummer des Telvox-A"},
    {"--empfaenger", "NUMMER", "Nummer des Empfängers"},
    {"--amt", "ZEICHEN", "Zeichen zur Amtsholung"},
    {"--service-center", "NUMMER", "Service-Center Nummer"},
    {"--nachricht", "TYP", "sms oder fax"},
    {"--passwort", "TEXT", "Passwort, wenn nicht das Standard Passwort gilt"},
    {"--alarmtext", "TEXT", "Alarmmeldung"},
    {"--com-direkt", "2400,e,8,1", "Schnittstellenparameter für das Kabel"},
    {"--com-fern", "9600,n,8,1", "Schnittstellenparameter für das lokale Modem"},
    {"--pin", "PIN", "nur für pin"},
    {"--msn", "MSN", "nur für msn"},
    {"--anschlussart", "ART", "nur für anschlussart: punkt-zu-punkt oder mehrgeraete"},
});

bool takes_value(const std::string &name) {
    return std::any_of(value_options.begin(), value_options.end(),
                       [&](const ValueOption &option) { return option.name == name; });
}

/// An option that belongs to one job is needed by it and wrong with every other.
void check_own_option(const Call &call) {
    for (const JobCommand &job : job_commands()) {
        if (!job.own_option)
            continue;
        const bool given = call.find(job.own_option) != nullptr;
        if (&job == call.job && !given)
            throw UsageError(std::string(job.name) + ": " + job.own_option + " fehlt");
        if (&job != call.job && given)
            throw UsageError(std::string(job.own_option) + " gehört nur zu " + job.name);
    }
}

} // namespace

Call parse_call(const std::vector<std::string> &all) {
    Call call;
    Arguments arguments(all);
    while (arguments.next()) {
        const std::string name = arguments.name();
        if (name == "--help" || name == "-h") {
            call.help = true;
        } else if (take_common_option(arguments, call.common)) {
            continue;
        } else if (name == "--mitschnitt") {
            arguments.once();
            arguments.no_value();
            call.trace = true;
        } else if (takes_value(name)) {
            arguments.once();
            call.values[name] = arguments.value();
        } else if (!call.job && !name.starts_with("-")) {
            call.job = find_job(name);
            if (!call.job)
                throw UsageError("Unbekannter Auftrag \"" + name + "\", siehe telvox-cli --help");
        } else {
            arguments.refuse();
        }
    }
    if (call.help)
        return call;
    if (!call.job)
        throw UsageError("Auftrag fehlt, siehe telvox-cli --help");
    check_own_option(call);
    return call;
}

std::string help_text() {
    std::string text = "Aufruf: telvox-cli AUFTRAG [Optionen]\n\n"
                       "Füllt das Formular von telvox aus und drückt dieselbe Taste.\n\nAufträge:\n";
    for (const JobCommand &job : job_commands())
        text += help_line(job.name, job.help);
    text += "\nOptionen:\n";
    for (const ValueOption &option : value_options)
        text += help_line(std::string(option.name) + " " + option.value, option.help);
    text += help_line("--mitschnitt", "zeigt den Dialog mit dem Gerät (Standardfehler)");
    text += common_options_help();
    return text + "\nStatustexte gehen auf den Standardfehler, Meldungen und Werte auf die Standardausgabe.\n"
                  "Ein Wert, der mit \"--\" beginnt, wird mit \"=\" angehängt: --alarmtext=--Text\n"
                  "\nErgebnis: 0 Auftrag gelungen, 1 Auftrag meldet einen Fehler, 2 Aufruf oder Prüfung\n"
                  "abgelehnt; 130 oder 143 abgebrochen mit Strg-C oder SIGTERM (die Schnittstelle wird\n"
                  "dabei geschlossen).\n";
}

} // namespace telvox::cli
