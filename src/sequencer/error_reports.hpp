#pragma once

#include "core/job_values.hpp"

#include <optional>
#include <span>
#include <string>

namespace telvox {

/// What becomes of the line when an error is reported.
enum class LineEnd { hang_up, drop, by_mode };

struct ErrorReport {
    LineEnd line = LineEnd::by_mode;
    std::string text;
};

/// In which sessions the line follows that asks to check the cabling.
enum class CheckLine { no, direct, always };

/// What an armed flag that nobody answered leads to.
struct ReportRow {
    FlagOf flag = nullptr;
    LineEnd line = LineEnd::by_mode;
    const char *text = "";
    CheckLine check = CheckLine::no;
    std::optional<ModemType> only = {};
};

/// The reports of the devices, in the order in which a tick looks at them.
struct Reports {
    std::span<const ReportRow> rows = {};
    const char *read_error = ""; ///< of an outstanding read command; its number follows
    const char *check_line = ""; ///< begins with a carriage return
};

/// The report that is due: of the armed flags that a tick still finds set, the first in the rows' order. A
/// read command whose reply is outstanding is reported by its number, which is left in
/// `byteISDN_Anschlussart`.
[[nodiscard]] std::optional<ErrorReport> due_report(const Reports &reports, const JobContext &job);

} // namespace telvox
