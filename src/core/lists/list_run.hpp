#pragma once

#include "core/lists/result_file.hpp"

#include <deque>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace telvox {

/// Which rows of a list run, and which may: those that share a resource (a port, a modem) one after the other
/// in the list's order, all others at the same time.
class ListRun {
  public:
    enum class State { open, running, done };

    /// A row per resource; equal keys exclude each other.
    explicit ListRun(const std::vector<std::string> &resources);

    /// The row needs no attempt in this run. Only before the first start.
    void leave_out(std::size_t row);
    /// Takes the rows that may start now; from now on they run.
    [[nodiscard]] std::vector<std::size_t> start();
    /// A running row has ended. One that was cancelled is open again, but not started again by this run.
    void end(std::size_t row, RowOutcome outcome);
    /// No further row starts.
    void stop();

    [[nodiscard]] State state(std::size_t row) const { return rows_.at(row).state; }
    /// How the row came out in this run; none if it did not run to an end.
    [[nodiscard]] std::optional<RowOutcome> outcome(std::size_t row) const { return rows_.at(row).outcome; }
    [[nodiscard]] std::size_t running() const { return running_; }

  private:
    struct Row {
        State state = State::open;
        std::optional<RowOutcome> outcome{};
        std::size_t resource = 0;
    };
    using Waiting = std::deque<std::size_t>; ///< rows of one resource, in the list's order

    std::vector<Row> rows_;
    std::vector<Waiting> resources_;
    std::vector<std::size_t> free_; ///< resources that may have a row to start
    std::size_t running_ = 0;
};

} // namespace telvox
