#pragma once

#include "dialogues/mobile.hpp"

#include <array>
#include <cstddef>

/// What the jobs of a GPRS device share: how they begin, how they read, how they end.
namespace telvox::dialogues {

/// A GPRS device answers queries by value; "OK" behind them tells that an answer is complete.
inline constexpr const char *results_on = "Rückmeldungen aktivieren";
inline constexpr const char *results_off = "Rückmeldungen deaktivieren";
inline constexpr const char *checking = "Verbindungsprüfung";

/// Opening of every job: a device that does not identify itself is taken to be in a data connection, is
/// escaped from it and hung up. There is no answer to wait for between, and the line takes its time to drop.
/// In a call it is the local modem that hears the escape and hangs up, which the check that follows finds.
constexpr auto gprs_opening(milliseconds wait) {
    return std::to_array<Step>({
        {.number = 1,
         .status = checking,
         .sets = &JobState::boolGPRS_Online,
         .send = "AT**IMEI?",
         .wait = wait,
         .next = 2},
        {.number = 2,
         .status = "In den Onlinekommandomodus wechseln",
         .clears = &JobState::boolGPRS_Online,
         .send = "+++",
         .as = Write::raw,
         .wait = 3s,
         .next = 3},
        {.number = 3,
         .status = "Fernverbindung wird getrennt",
         .send = "ATH",
         .wait = 22s,
         .on_fall = OnFall::reported,
         .next = 4},
    });
}

/// The check that follows the opening.
constexpr Step check_after_opening(const char *status, milliseconds wait, FlagOf flag) {
    return {.number = 4,
            .status = status,
            .send = "AT**IMEI?",
            .wait = wait,
            .awaits = flag,
            .on_fall = OnFall::reported};
}

/// Last check of a job that writes, and the restart with which its settings come into force. Behind the check
/// all is saved, and the restart breaks a call.
constexpr std::array<Step, 2> check_and_restart(Counter number, milliseconds wait, FlagOf flag) {
    return {{{.number = number, .status = checking, .send = "AT**IMEI?", .wait = wait, .awaits = flag},
             {.number = static_cast<Counter>(number + 1),
              .status = "Modem wird neu gestartet",
              .send = "AT**RESET",
              .wait = wait,
              .on_fall = OnFall::skipped,
              .next = static_cast<Counter>(number + 2)}}};
}

/// End of a job that runs in both connection ways.
constexpr std::array<Step, 3> gprs_ending(Counter number, const char *message, OnFall on_fall) {
    const auto after = static_cast<Counter>(number + 1);
    return {{{.number = number,
              .when = remote,
              .status = leaving_remote,
              .send = "AT**EXIT",
              .wait = 1100ms,
              .on_fall = on_fall,
              .next = after},
             {.number = number, .end = End::drop, .message = message},
             {.number = after, .end = End::hang_up, .message = message}}};
}

inline constexpr const char *written_and_restarting =
    "Das Telvox-A wurde erfolgreich parametriert.\r"
    "Das Modem führt zur Zeit einen Neustart aus, deshalb ist es für ca. 1 Minute nicht erreichbar.";
inline constexpr const char *read_out = "Das Telvox-A wurde erfolgreich ausgelesen.";

inline void write_value(TextBox &box, std::string_view value) { box.text = box.filtered(from_line(value)); }
inline void write_value(ComboBox &box, std::string_view value) { box.write(from_line(value)); }

/// One query of a job that reads: a step that sends it, and the row of its answer, which leads to the step
/// behind it.
struct Query {
    Counter number = 0; ///< of the step
    Counter read = 0;   ///< of the read command, by which a missing answer is reported
    const char *status = "";
    const char *command = "";
    const char *label = ""; ///< of the answer
    bool (*fill)(Desk &, const Found &) = nullptr;
    milliseconds wait = 2s;
    OnFall on_fall = OnFall::fails;
};

template <std::size_t N> consteval std::array<Step, N> query_steps(const std::array<Query, N> &queries) {
    std::array<Step, N> steps{};
    for (std::size_t i = 0; i < N; ++i) {
        const Query &q = queries[i];
        steps[i] = {.number = q.number,
                    .status = q.status,
                    .reads = q.read,
                    .send = q.command,
                    .wait = q.wait,
                    .on_fall = q.on_fall};
    }
    return steps;
}

inline constexpr Move answered_read[] = {{nullptr, &JobState::byteGPRS_Leseschritt, 0}};

template <std::size_t N>
consteval std::array<Reply, N> query_replies(const std::array<Query, N> &queries, CounterOf counter) {
    std::array<Reply, N> rows{};
    for (std::size_t i = 0; i < N; ++i) {
        const Query &q = queries[i];
        rows[i] = {.contains = q.label,
                   .at = {&JobState::byteGPRS_Leseschritt, q.read},
                   .take = q.fill,
                   .counter = counter,
                   .becomes = static_cast<Counter>(q.number + 1),
                   .moves = answered_read,
                   .restart = 100ms};
    }
    return rows;
}

} // namespace telvox::dialogues
