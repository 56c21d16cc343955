#include "cli/call.hpp"

namespace telvox::cli {

namespace {

std::string lines(std::span<const Option> options) {
    std::string text;
    for (const Option &option : options)
        text += help_line(std::string(option.name) + " " + option.value, option.help);
    return text;
}

std::string every_job_takes() {
    return help_line("--aus DATEI|-",
                     "liest Angaben als Zeilen name=wert, wie sie die Leseaufträge ausgeben; "
                     "was daneben angegeben ist, geht vor") +
           help_line("--trotzdem", "beantwortet Rückfragen mit Ja; sonst gilt Nein") +
           help_line("--speichern", "schreibt --com-direkt und --com-fern nach Com.ini") +
           help_line("--mitschnitt", "zeigt den Dialog mit dem Gerät auf dem Standardfehler, mit der Zeit in "
                                     "ms; Passwörter und PIN als ***") +
           common_options_help();
}

std::string variants_of(const JobCommand &job) {
    std::string names(job.variants);
    for (auto blank = names.find(' '); blank != std::string::npos; blank = names.find(' ', blank + 2))
        names.replace(blank, 1, ", ");
    return names.empty() ? names : " (" + names + ")";
}

std::string help_of(const JobCommand &job) {
    std::string text = "Aufruf: telvox-cli " + std::string(job.name) + " [Optionen]\n\n" + job.help +
                       variants_of(job) + "\n\n";
    if (!job.options.empty())
        text += "Optionen des Auftrags:\n" + lines(job.options) + "\n";
    if (job.button)
        text += "Gerät und Weg:\n" + lines(way_options()) + "\n";
    if (job.button && !job.menu && !job.result)
        text += "Alarmmeldung:\n" + lines(alarm_options()) + "\n";
    return text + "Allgemein:\n" + every_job_takes();
}

} // namespace

std::string help_text(const JobCommand *job) {
    if (job)
        return help_of(*job);
    std::string text = "Aufruf: telvox-cli AUFTRAG [Optionen]\n"
                       "        telvox-cli AUFTRAG --help\n\n"
                       "Füllt das Formular von telvox aus und drückt dieselbe Taste.\n\nAufträge:\n";
    for (const JobCommand &of : job_commands())
        text += help_line(of.name, of.help + variants_of(of));
    text += "\nGerät und Weg:\n" + lines(way_options()) + "\nAlarmmeldung:\n" + lines(alarm_options());
    for (const JobCommand &of : job_commands())
        if (!of.options.empty())
            text += "\nNur " + std::string(of.name) + ":\n" + lines(of.options);
    return text + "\nAllgemein:\n" + every_job_takes() +
           "\nMeldungen und Werte gehen auf die Standardausgabe, Statustexte, Warnungen und\n"
           "Rückfragen auf den Standardfehler. Wo \"-\" als Wert genannt ist, wird eine Zeile\n"
           "der Standardeingabe gelesen. Ein Wert, der mit \"--\" beginnt, wird mit \"=\"\n"
           "angehängt: --alarmtext=--Text\n"
           "\nErgebnis: 0 gelungen; 1 der Auftrag meldet einen Fehler, oder die Ausgabe ließ\n"
           "sich nicht schreiben; 2 Aufruf oder Prüfung abgelehnt; 3 zu Ende geführt, aber\n"
           "das Gerät hat etwas nicht angenommen; 130 oder 143 abgebrochen mit Strg-C oder\n"
           "SIGTERM (eine Verbindung wird aufgelegt, die Schnittstelle geschlossen; beim\n"
           "zweiten Mal endet das Programm sofort).\n";
}

} // namespace telvox::cli
