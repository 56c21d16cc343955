#include "dialogues/families.hpp"
#include "dialogues/shared.hpp"

namespace telvox {

namespace dialogues {
namespace {

constexpr Move start_gprs_jobs[] = {
    {&JobState::boolGPRS_parametrieren, &JobState::byteGPRS_Counter, 1},
    {&JobState::boolGPRS_lesen, &JobState::byteGPRS_lese_Counter, 1},
    {&JobState::boolIPT_parametrieren, &JobState::byteIPT_Counter, 1},
    {&JobState::boolIPT_lesen, &JobState::byteIPT_lese_Counter, 1},
    {&JobState::boolParametrieren, &JobState::byteParametrier_Counter, 1},
    {&JobState::boolAlarm_deaktivieren, &JobState::byteAlarm_aus_Counter, 1},
};

constexpr Job jobs[] = {{"GPRS Anwahl", &JobState::byteAnwahl_Counter, mobile_dial}};

constexpr Reply replies[] = {
    carrier_up,
    carrier_down,
    carrier_back,
    {.contains = "REMOTE CONFIGURATION MODE",
     .awaited = &JobState::boolAntwort_Fehler,
     .moves = start_gprs_jobs,
     .restart = 1100ms},
};

} // namespace
} // namespace dialogues

constexpr Family gprs_family{"GPRS", dialogues::jobs, dialogues::replies};

} // namespace telvox
