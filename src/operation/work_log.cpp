#include "operation/work_log.hpp"

#include <algorithm>
#include <utility>

namespace telvox::operation {

std::string WorkLog::add(std::vector<DoneJob> jobs, bool keeps) {
    std::vector<HistoryLine> lines;
    for (DoneJob &job : jobs) {
        // Who turns an antenna asks every few seconds until he ends it: that is one job, with its last value.
        if (job.again && job.line.outcome == RowOutcome::cancelled)
            continue;
        if (job.again && !job.signal.empty() && !jobs_.empty()) {
            jobs_.back() = std::move(job);
            continue;
        }
        lines.push_back(job.line);
        jobs_.push_back(std::move(job));
    }
    if (jobs_.size() > 2 * History::most_lines)
        jobs_.erase(jobs_.begin(), jobs_.end() - static_cast<std::ptrdiff_t>(History::most_lines));
    if (!keeps || lines.empty())
        return "";
    std::string failure = history_.append(lines);
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
