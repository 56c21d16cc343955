#include "dialogues/families.hpp"
#include "dialogues/shared.hpp"

#include <array>

namespace telvox {

namespace dialogues {
namespace {

constexpr const char *error_74 = "Kommunikationsfehler: 74.";

constexpr auto rows = std::to_array<ReportRow>({
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
} // namespace dialogues

constexpr Reports device_reports{
    .rows = dialogues::rows, .read_error = "Lesefehler: 7", .check_line = dialogues::check_line};

} // namespace telvox
