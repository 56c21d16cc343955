#include "sequencer/error_reports.hpp"

#include <algorithm>
#include <array>

namespace telvox {

namespace {

constexpr const char *check_line =
    "\rBitte Prüfen Sie die Leitungsverbindung und stellen Sie sicher, dass das "
    "Gerät mit Spannung versorgt wird.";

/// In which sessions the check line follows.
enum class CheckLine { no, direct, always };

struct Row {
    FlagOf flag;
    LineEnd line;
    const char *text;
    CheckLine check = CheckLine::no;
    std::optional<ModemType> only = {};
};

constexpr const char *no_connection = "Es konnte keine Verbindung zum Telvox-A hergestellt werden.";
constexpr const char *error_74 = "Kommunikationsfehler: 74.";

constexpr auto rows = std::to_array<Row>({
    {&JobState::boolAnwahl_Fehler, LineEnd::hang_up, "Es konnte keine Verbindung hergestellt werden."},
    {&JobState::boolAntwort_Fehler, LineEnd::hang_up,
     "Das Telvox-A antwortet nicht.\r"
     "Evtl. unterstützt dieses Telvox-A GSM die Fernparametrierung nicht.\r"
     "Die Fernparametrierung kann nur bei älteren (<2009) Telvox-A GSM vorgenommen werden.",
     CheckLine::no, ModemType::GSM},
    {&JobState::boolAntwort_Fehler, LineEnd::hang_up, "Das Telvox-A antwortet nicht."},
    {&JobState::boolPasswort_Fehler, LineEnd::hang_up, "Konfigurations Passwort nicht korrekt."},
    {&JobState::boolKommunikations_Fehler31, LineEnd::by_mode,
     "Fehler bei der Parametrierung. Kommunikationsfehler: 31.", CheckLine::direct},
    {&JobState::boolKommunikations_Fehler32, LineEnd::by_mode,
     "Fehler bei der Parametrierung. Kommunikationsfehler: 32."},
    {&JobState::boolKommunikations_Fehler33, LineEnd::by_mode,
     "Fehler bei der Parametrierung. Kommunikationsfehler: 33.", CheckLine::always},
    {&JobState::boolKommunikations_Fehler34, LineEnd::by_mode, "Kommunikationsfehler: 34.",
     CheckLine::always},
    {&JobState::boolKommunikations_Fehler41, LineEnd::by_mode, no_connection, CheckLine::always},
    {&JobState::boolKommunikations_Fehler42, LineEnd::by_mode, no_connection, CheckLine::always},
    {&JobState::boolKommunikations_Fehler43, LineEnd::by_mode, no_connection, CheckLine::always},
    {&JobState::boolKommunikations_Fehler44, LineEnd::by_mode, no_connection, CheckLine::always},
    {&JobState::boolKommunikations_Fehler51, LineEnd::by_mode, no_connection, CheckLine::always},
    {&JobState::boolKommunikations_Fehler52, LineEnd::by_mode, no_connection, CheckLine::always},
    {&JobState::boolKommunikations_Fehler61, LineEnd::by_mode, no_connection, CheckLine::always},
    {&JobState::boolKommunikations_Fehler62, LineEnd::by_mode, no_connection, CheckLine::always},
    {&JobState::boolKommunikations_Fehler71, LineEnd::by_mode, no_connection, CheckLine::always},
    {&JobState::boolKommunikations_Fehler72, LineEnd::by_mode, no_connection, CheckLine::always},
    {&JobState::boolKommunikations_Fehler73, LineEnd::by_mode, "Kommunikationsfehler: 73.",
     CheckLine::always},
    {&JobState::boolKommunikations_Fehler74, LineEnd::by_mode, error_74, CheckLine::always},
    {&JobState::boolKommunikations_Fehler75, LineEnd::by_mode, error_74, CheckLine::always},
    {&JobState::boolKommunikations_Fehler76, LineEnd::by_mode, error_74, CheckLine::always},
    {&JobState::boolKommunikations_Fehler77, LineEnd::drop,
     "Kommunikationsfehler: 77.\rUmstellung fehlgeschlagen"},
});

} // namespace

std::optional<ErrorReport> due_report(const JobState &jobs, Session &session, ModemType type, bool remote) {
    for (const Row &row : rows) {
        if (!(jobs.*row.flag) || (row.only && *row.only != type))
            continue;
        const bool check = row.check == CheckLine::always || (row.check == CheckLine::direct && !remote);
        return ErrorReport{row.line, std::string(row.text) + (check ? check_line : "")};
    }
    if (jobs.byteGPRS_Leseschritt == 0)
        return std::nullopt;
    session.byteISDN_Anschlussart = jobs.byteGPRS_Leseschritt;
    return ErrorReport{LineEnd::by_mode,
                       "Lesefehler: 7" + std::to_string(session.byteISDN_Anschlussart) + check_line};
}

bool has_report(FlagOf flag) {
    return std::any_of(rows.begin(), rows.end(), [flag](const Row &row) { return row.flag == flag; });
}

} // namespace telvox
