#pragma once

#include "core/job_values.hpp"

#include <span>
#include <string>

namespace telvox {

struct Control;
struct Desk;
class Outbox;
class Panel;

/// A condition without which a job does not start, what the user then reads, and the field that gets the
/// focus.
struct Check {
    bool (*holds)(const Desk &) = nullptr;
    const char *otherwise = "";
    Control *(*field)(Desk &) = nullptr;
};

/// Whether all checks hold; of those that do not the first is told in a box, and its field gets the focus.
[[nodiscard]] bool all_hold(std::span<const Check> checks, Desk &desk, Panel &panel, Outbox &outbox);

/// How a job starts.
struct Launch {
    std::span<const Check> checks = {}; ///< in this order; the first that fails is shown
    FlagOf flag = nullptr;              ///< job flag set, if the job has one
    CounterOf counter = nullptr;        ///< counter set to 1
    bool raise_dtr = true;              ///< false leaves DTR as the line has it
    bool cable_only = false;            ///< goes over the device's cable whatever the connection way
    /// The device is spoken to in the format that the serial settings dialog shows for it, which is the
    /// session's from then on.
    bool as_shown = false;
    /// Locks windows, and empties the fields that the job fills. Runs when the start is certain.
    void (*prepare)(Desk &) = nullptr;
    const char *advice = ""; ///< what is left to do after a success, behind its text
};

} // namespace telvox
