#include "sequencer/error_reports.hpp"

namespace telvox {

std::optional<ErrorReport> due_report(const Reports &reports, const JobContext &job) {
    const auto &[jobs, session, values, findings] = job;
    for (const ReportRow &row : reports.rows) {
        if (!(jobs.*row.flag) || (row.only && *row.only != values.type))
            continue;
        const bool check =
            row.check == CheckLine::always || (row.check == CheckLine::direct && !values.remote);
        return ErrorReport{row.line, std::string(row.text) + (check ? reports.check_line : "")};
    }
    if (jobs.byteGPRS_Leseschritt == 0)
        return std::nullopt;
    session.byteISDN_Anschlussart = jobs.byteGPRS_Leseschritt;
    return ErrorReport{LineEnd::by_mode, reports.read_error + std::to_string(session.byteISDN_Anschlussart) +
                                             reports.check_line};
}

} // namespace telvox
