#pragma once

#include "core/job_values.hpp"
#include "core/timer.hpp"
#include "link/serial_port.hpp"

#include <span>
#include <string_view>

namespace telvox {

/// A counter that must hold a value.
struct At {
    CounterOf counter = nullptr;
    Counter value = 0;
};

/// A counter that gets a value, if the job flag is set.
struct Move {
    FlagOf when = nullptr;
    CounterOf counter = nullptr;
    Counter becomes = 0;
};

/// Where a reply stands in what was received since the last command.
struct Found {
    std::string_view text; ///< from its `contains` on (bytes of the line)
    std::size_t position;  ///< of that in the whole, from 0
    std::string_view all;  ///< the whole
};

/// Takes a value out of a reply. False while the value is not complete: then the reply does not count yet.
using Take = bool (*)(const JobContext &, const Found &);

/// A text that answers a command.
struct Answer {
    const char *contains = nullptr; ///< "" for any data; none: there is no such answer
    Take take = nullptr;
    bool labelled = false; ///< `contains` is the label of a value, which may take longer than the wait
};

/// What the command that was sent last waits for, and what the first answer does; then it waits no longer.
struct Awaited {
    std::span<const Answer> answers = {};
    FlagOf flag = nullptr;         ///< cleared
    CounterOf counter = nullptr;   ///< moves
    Counter becomes = 0;           ///< to this step
    std::span<const Move> moves{}; ///< further moves
    milliseconds restart{0};       ///< next tick after this time; 0 leaves the timer as it is
};

/// A reply that counts whatever was asked last: when, and what it does. A row holds when all its conditions
/// do; it acts once per filling of the receive buffer, so trailing bytes cannot put the next step off for
/// ever.
struct Reply {
    CommEvent event = CommEvent::data;
    const char *contains = "";                  ///< text in the buffer; "" for any data
    FlagOf awaited = nullptr;                   ///< flag that must be set; cleared
    FlagOf during = nullptr;                    ///< flag that must be set
    At at = {};                                 ///< counter that must hold a value
    bool (*when)(const JobContext &) = nullptr; ///< further condition
    Take take = nullptr;
    FlagOf clears = nullptr;     ///< flag cleared without having been a condition
    FlagOf sets = nullptr;       ///< flag set
    CounterOf counter = nullptr; ///< counter that moves
    Counter becomes = 0;         ///< to this step
    milliseconds restart{0};     ///< next tick after this time; 0 leaves the timer as it is
};

} // namespace telvox
