#pragma once

#include "core/session.hpp"

#include <span>
#include <string>

namespace telvox {

struct Desk;

/// An input without which a job does not start, and what the user then reads.
struct Check {
    std::string (*input)(const Desk &) = nullptr;
    const char *if_empty = "";
};

/// How a job starts.
struct Launch {
    std::span<const Check> checks = {}; ///< in this order; the first that fails is shown
    FlagOf flag = nullptr;              ///< job flag set, if the job has one
    CounterOf counter = nullptr;        ///< counter set to 1
    bool raise_dtr = true;              ///< false leaves DTR as the line has it
    bool cable_only = false;            ///< goes over the device's cable whatever the connection way
    void (*prepare)(Desk &) = nullptr;  ///< takes the job's values over, once the port is open
};

} // namespace telvox
