#include "operation/work_log.hpp"

#include <algorithm>
#include <utility>

namespace telvox::operation {

namespace {

/// Who turns an antenna asks every few seconds; that is one job, with its last value.
bool asked_again(const DoneJob &last, const DoneJob &job) {
    return !last.signal.empty() && !job.signal.empty() && last.line.port == job.line.port &&
           last.line.job == job.line.job && last.device == job.device;
}

} // namespace

std::string WorkLog::add(std::vector<DoneJob> jobs, bool keeps) {
    std::vector<HistoryLine> lines;
    for (DoneJob &job : jobs) {
        if (!jobs_.empty() && asked_again(jobs_.back(), job)) {
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
