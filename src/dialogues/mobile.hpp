#pragma once

#include "dialogues/shared.hpp"

#include <array>

/// What the two mobile variants share: the queries of the status dialog and the SIM's PIN.
namespace telvox::dialogues {

/// The PIN goes to a device that has answered `check`; it keeps it without being told to save.
constexpr auto pin_steps(const char *check, milliseconds wait) {
    return std::to_array<Step>({
        {.number = 1,
         .status = "Verbindung wird hergestellt",
         .send = check,
         .wait = wait,
         .awaits = &JobState::boolKommunikations_Fehler41},
        {.number = 2,
         .send = [](const Desk &d) { return "AT**PIN=" + d.session.strPIN; },
         .end = End::drop,
         .message = "Die PIN wurde eingestellt."},
    });
}

/// The SIM did not answer "AT+CPIN?" in time.
constexpr Step no_sim_card(Counter number) {
    return {.number = number,
            .act = [](Desk &d) { d.frmGSM_Status.tboStatus.text = "keine SIM-Karte"; },
            .wait = 100ms,
            .next = static_cast<Counter>(number + 1)};
}

// What the answers say goes into the fields of the status dialog; false while an answer is not complete.
bool show_no_pin(Desk &desk, const Found &);
bool show_pin(Desk &desk, const Found &);
bool take_sim_state(Desk &desk, const Found &found);
bool take_registration(Desk &desk, const Found &found);
/// A device that refuses the registration query knows nothing of a network.
bool take_refusal(Desk &desk, const Found &found);
bool take_signal(Desk &desk, const Found &found);
bool take_imei(Desk &desk, const Found &found);
/// "IMEI: " and the fifteen digits' places behind it, as a mere sign of life.
bool whole_imei(Desk &, const Found &found);

/// Whether a PIN is stored. "inactive" holds "active" too: its row stands first and clears the flag.
constexpr Reply pin_lock(const char *text, bool (*show)(Desk &, const Found &), Counter becomes) {
    return {.contains = text,
            .awaited = &JobState::boolKommunikations_Fehler42,
            .take = show,
            .counter = &JobState::bytePin_Status_Counter,
            .becomes = becomes,
            .restart = 100ms};
}

/// The SIM's state, while the counter stands at the step that would say that there is no card.
constexpr Reply sim_state(Counter waiting) {
    return {.contains = "+CPIN:",
            .at = {&JobState::bytePin_Status_Counter, waiting},
            .take = take_sim_state,
            .counter = &JobState::bytePin_Status_Counter,
            .becomes = static_cast<Counter>(waiting + 1),
            .restart = 100ms};
}

constexpr Reply signal_reply(Counter becomes) {
    return {.contains = "+CSQ: ",
            .awaited = &JobState::boolKommunikations_Fehler44,
            .take = take_signal,
            .counter = &JobState::byteGSM_Signal_Counter,
            .becomes = becomes,
            .restart = 100ms};
}

/// The IMEI as the answer that this flag awaits: taken for the status dialog, or only as a sign of life.
constexpr Reply imei_reply(FlagOf awaited, bool (*take)(Desk &, const Found &), CounterOf counter,
                           Counter becomes) {
    return {.contains = "IMEI: ",
            .awaited = awaited,
            .take = take,
            .counter = counter,
            .becomes = becomes,
            .restart = 100ms};
}

} // namespace telvox::dialogues
