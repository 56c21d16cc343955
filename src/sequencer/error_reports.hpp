#pragma once

#include "core/session.hpp"

#include <optional>
#include <string>

namespace telvox {

/// What becomes of the line when an error is reported.
enum class LineEnd { hang_up, drop, by_mode };

struct ErrorReport {
    LineEnd line = LineEnd::by_mode;
    std::string text;
};

/// The report that is due: of the armed flags that a tick still finds set, the first in the order of the
/// reports. A read step whose reply is outstanding is reported by its number, which is left in
/// `byteISDN_Anschlussart`.
[[nodiscard]] std::optional<ErrorReport> due_report(const JobState &jobs, Session &session, ModemType type,
                                                    bool remote);

/// Whether a flag has a report.
[[nodiscard]] bool has_report(FlagOf flag);

} // namespace telvox
