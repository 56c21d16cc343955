#pragma once

#include "core/records/service_record.hpp"

#include <string>
#include <vector>

namespace telvox::operation {

/// What was done since the program's start, and the history that it is added to.
class WorkLog {
  public:
    explicit WorkLog(const std::filesystem::path &data_folder) : history_(data_folder / History::file_name) {}
    /// What could not be written gets its last chance.
    ~WorkLog() { static_cast<void>(history_.append({})); }
    WorkLog(const WorkLog &) = delete;
    WorkLog &operator=(const WorkLog &) = delete;

    /// Takes jobs that have ended; into the history too if it `keeps` one. Returns why that could not be
    /// written (German), told once; empty otherwise.
    [[nodiscard]] std::string add(std::vector<DoneJob> jobs, bool keeps);

    /// The session's jobs, the newest ten thousand, the oldest first.
    [[nodiscard]] const std::vector<DoneJob> &jobs() const { return jobs_; }
    [[nodiscard]] const History &history() const { return history_; }
    /// What is known of a line of the history.
    [[nodiscard]] DoneJob job_of(const HistoryLine &line) const;

  private:
    History history_;
    std::vector<DoneJob> jobs_;
    bool told_ = false;
};

} // namespace telvox::operation
