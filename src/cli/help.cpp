#include "cli/call.hpp"

namespace telvox::cli {

namespace {

std::string lines(std::span<const Option> options) {
    std::string text;
    for (const Option &option : options)
        text += help_line("--" + std::string(option.name) + (option.bare ? "" : " ") +
                              (option.bare ? "" : option.value),
                          option.help);
    return text;
}

/// What a list is; in the help about everything it follows the options.
constexpr const char *about_lists =
    "Die Tabelle von liste ist eine CSV-Datei, wie sie eine Tabellenkalkulation\n"
    "speichert. Ihre erste Zeile benennt die Spalten: Optionen ohne \"--\", dazu name\n"
    "(frei) und auftrag (leer: parametrieren). Ist eine Zelle leer, gilt, was der\n"
    "Aufruf angibt. Erst wird die ganze Tabelle geprüft, dann laufen ihre Zeilen: die\n"
    "an verschiedenen Schnittstellen gleichzeitig, die an einem Modem nacheinander.\n"
    "Die Ergebnisse stehen sofort in einer Datei daneben, aus pumpen.csv wird\n"
    "pumpen-ergebnis.csv; ein neuer Aufruf lässt aus, was dort erledigt ist.\n";

/// The switches of one job, nullptr: of those that do their work once.
std::string switches_of(const JobCommand *job) {
    std::string text;
    if (job && job->file)
        return help_line("--wiederholen",
                         "führt auch Zeilen aus, die begonnen wurden und deren Ausgang unbekannt ist") +
               help_line("--teil 2/4",
                         "führt von der Tabelle nur den zweiten von vier Teilen aus (jede vierte Zeile); "
                         "seine Ergebnisse stehen in einer Datei für sich") +
               help_line("--json", "gibt je Ereignis eine Zeile JSON aus, für Skripte");
    if (job && job->everywhere)
        text += help_line("--json", "gibt an allen Schnittstellen je Gerät eine Zeile JSON aus");
    if (job && job->repeats)
        text += help_line("--laufend", "fragt alle drei Sekunden wieder, bis Strg-C; gibt je Mal eine Zeile "
                                       "aus, dazu den besten Wert");
    return text + help_line("--speichern", "schreibt --com-direkt und --com-fern nach Com.ini");
}

std::string every_job_takes(const JobCommand *job) {
    return help_line("--aus DATEI|-",
                     "liest Angaben als Zeilen name=wert, wie sie die Leseaufträge ausgeben; "
                     "was daneben angegeben ist, geht vor") +
           help_line("--nachweis DATEI",
                     "schreibt danach einen Nachweis für den Kunden, als .pdf oder .html") +
           help_line("--ausgefuehrt-von TEXT", "steht im Nachweis; sonst, was das Fenster sich gemerkt hat") +
           help_line("--ort TEXT", "ebenso") +
           help_line("--trotzdem", "beantwortet Rückfragen mit Ja; sonst gilt Nein") + switches_of(job) +
           help_line("--mitschnitt", "zeigt den Dialog mit dem Gerät auf dem Standardfehler, mit der Zeit in "
                                     "ms; Passwörter und PIN als ***") +
           common_options_help();
}

std::string variants_of(const JobCommand &job) {
    const std::string names = words_of(job.variants, ", ");
    return names.empty() ? names : " (" + names + ")";
}

std::string help_of(const JobCommand &job) {
    const std::string file = job.file ? " " + std::string(job.file) : "";
    std::string text = "Aufruf: telvox-cli " + std::string(job.name) + file + " [Optionen]\n\n" + job.help +
                       variants_of(job) + "\n\n";
    if (job.file)
        text += about_lists + std::string("\n");
    if (!job.options.empty())
        text += "Optionen des Auftrags:\n" + lines(job.options) + "\n";
    if (!job.around.empty() || job.file)
        text += "Um den Auftrag herum:\n" + lines(job.file ? around_options() : job.around) + "\n";
    if (job.button || job.file)
        text += "Gerät und Weg:\n" + lines(way_options()) + "\n";
    if ((job.button && !job.menu && !job.result) || job.file)
        text += "Alarmmeldung:\n" + lines(alarm_options()) + "\n";
    return text + "Allgemein:\n" + every_job_takes(&job);
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
    text += "\nUm einen Auftrag herum (gsm und gprs):\n" + lines(around_options());
    return text + "\nAllgemein:\n" + every_job_takes(nullptr) + "\n" + about_lists +
           "\nMeldungen und Werte gehen auf die Standardausgabe, Statustexte, Warnungen und\n"
           "Rückfragen auf den Standardfehler. Wo \"-\" als Wert genannt ist, wird eine Zeile\n"
           "der Standardeingabe gelesen. Ein Wert, der mit \"--\" beginnt, wird mit \"=\"\n"
           "angehängt: --alarmtext=--Text\n"
           "\nErgebnis: 0 gelungen; 1 der Auftrag meldet einen Fehler, oder die Ausgabe ließ\n"
           "sich nicht schreiben; 2 Aufruf oder Prüfung abgelehnt; 3 zu Ende geführt, aber\n"
           "das Gerät hat etwas nicht angenommen; 4 das Gerät ist anders eingestellt; 130\n"
           "oder 143 abgebrochen mit Strg-C oder SIGTERM (eine Verbindung wird aufgelegt,\n"
           "die Schnittstelle geschlossen; beim zweiten Mal endet das Programm sofort). Bei\n"
           "liste entscheidet die Zeile, die am schlechtesten ausging.\n";
}

} // namespace telvox::cli
