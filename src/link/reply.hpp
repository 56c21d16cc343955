#pragma once

#include "core/session.hpp"
#include "core/timer.hpp"
#include "link/serial_port.hpp"

#include <span>
#include <string_view>

namespace telvox {

struct Desk;

/// A counter that must hold a value.
struct At {
    CounterOf counter = nullptr;
    Counter value = 0;
};

/// A counter that gets a value, if the job flag is set (or always, without one).
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

/// One reply that a device can give: when it counts and what it does. A row holds when all its conditions do;
/// it acts once per filling of the receive buffer, so trailing bytes cannot put the next step off for ever.
struct Reply {
    CommEvent event = CommEvent::data;
    const char *contains = "";            ///< text in the buffer; "" for any data
    const char *also = "";                ///< second text that must be there too
    FlagOf awaited = nullptr;             ///< armed flag that it answers; cleared
    FlagOf during = nullptr;              ///< job flag that must be set
    At at = {};                           ///< counter that must hold a value
    const char *after = "";               ///< text that the last command line contained
    bool (*when)(const Desk &) = nullptr; ///< further condition
    /// Takes a value out of the reply. False while the value is not complete: then the row does not hold yet.
    bool (*take)(Desk &, const Found &) = nullptr;
    FlagOf clears = nullptr;          ///< flag cleared without having been a condition
    FlagOf sets = nullptr;            ///< flag set
    CounterOf counter = nullptr;      ///< counter that moves
    Counter becomes = 0;              ///< to this step
    std::span<const Move> moves = {}; ///< further moves
    milliseconds restart{0};          ///< next tick after this time; 0 leaves the timer as it is
};

} // namespace telvox
