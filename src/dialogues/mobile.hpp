#pragma once

#include "dialogues/shared.hpp"

/// What the two mobile variants share: the queries of the status dialog and the SIM's PIN.
namespace telvox::dialogues {

// What the answers say; false while an answer is not complete.
bool take_pin_lock(const JobContext &c, const Found &found);
bool take_sim_state(const JobContext &c, const Found &found);
bool take_registration(const JobContext &c, const Found &found);
/// A device that refuses the registration query knows nothing of a network.
bool take_refusal(const JobContext &c, const Found &found);
bool take_signal(const JobContext &c, const Found &found);
bool take_imei(const JobContext &c, const Found &found);
/// The IMEI in what has come in, empty if there is none: a GPRS device tells it in the first check of each
/// job.
std::string imei_in(std::string_view received);
inline constexpr std::size_t imei_digits = 15;
/// "IMEI: " and the fifteen digits' places behind it, as a mere sign of life.
bool whole_imei(const JobContext &c, const Found &found);

inline constexpr const char *connecting = "Verbindung wird hergestellt";

/// The device keeps the PIN without being told to save.
inline constexpr Step pin_and_end = {.send = {"AT**PIN=", value<&JobValues::strPIN>},
                                     .changes_device = true,
                                     .secrets = "AT**PIN=",
                                     .end = End::drop,
                                     .message = "Die PIN wurde eingestellt."};

/// An answer is not needed: without it the job goes on with the next step, an answer leaves `skips` out.
constexpr Step going_on(Step step, Counter skips = 0) {
    step.goes_on = true;
    step.skips = skips;
    return step;
}

inline constexpr Step ask_pin_lock = ask("AT**PIN?", "Prüfe ob PIN hinterlegt", 4s,
                                         &JobState::boolKommunikations_Fehler42, {"active", take_pin_lock});
/// The SIM's state, or behind it that there is no card.
inline constexpr Step ask_sim_state =
    going_on(ask("AT+CPIN?", "Frage Status ab", 2200ms, nullptr, {"+CPIN:", take_sim_state}), 1);
inline constexpr Step no_sim_card = {.act = [](const JobContext &c) { c.findings.sim = SimState::missing; },
                                     .wait = 100ms};
constexpr Step ask_registration(milliseconds wait, FlagOf flag) {
    return ask("AT+CREG?", "Frage Registrierungszustand ab", wait, flag, {"+CREG:", take_registration}, 100ms,
               {"ERROR", take_refusal});
}
inline constexpr Step ask_signal = ask("AT+CSQ", "Frage Signalstärke ab", 6s,
                                       &JobState::boolKommunikations_Fehler44, {"+CSQ: ", take_signal});
inline constexpr Step ask_imei =
    ask("AT**IMEI?", "Frage IMEI ab", 6s, &JobState::boolKommunikations_Fehler71, {"IMEI: ", take_imei});

} // namespace telvox::dialogues
