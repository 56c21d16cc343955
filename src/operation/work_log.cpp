#include "operation/work_log.hpp"

#include <algorithm>
#include <iterator>

namespace telvox::operation {

std::string WorkLog::add(std::vector<DoneJob> jobs, bool keeps) {
    std::vector<HistoryLine> lines;
    for (const DoneJob &job : jobs)
        lines.push_back(job.line);
    std::move(jobs.begin(), jobs.end(), std::back_inserter(jobs_));
    if (jobs_.size() > 2 * History::most_lines)
        jobs_.erase(jobs_.begin(), jobs_.end() - static_cast<std::ptrdiff_t>(History::most_lines));
    std::string failure = keeps && !lines.empty() ? history_.append(lines) : "";
    return std::exchange(told_, !failure.empty()) ? "" : failure;
}

DoneJob WorkLog::job_of(const HistoryLine &line) const {
    const auto same = [&](const DoneJob &job) {
        return job.line.time == line.time && job.line.port == line.port && job.line.job == line.job &&
               job.line.outcome == line.outcome;
    };
    const auto found = std::find_if(jobs_.rbegin(), jobs_.rend(), same);
    return found == jobs_.rend() ? DoneJob{.line = line} : *found;
}

} // namespace telvox::operation
