#pragma once

#include "core/session.hpp"
#include "core/timer.hpp"
#include "link/link.hpp"
#include "link/reply.hpp"

#include <cstdint>
#include <span>

namespace telvox {

/// Runs the reply rows of the selected variant on every serial event.
class Receiver {
  public:
    Receiver(Desk &desk, JobState &jobs, Link &link, Timer &timer)
        : desk_(desk), jobs_(jobs), link_(link), timer_(timer) {}

    /// Collects what arrived and applies every row that holds, in the rows' order. Replies count only while a
    /// job runs, its line stands, and nothing is being hung up. A row for data acts once per filling of the
    /// buffer, one for the carrier each time.
    void handle(CommEvent event, std::span<const Reply> rows);
    /// A job begins: nothing of it was recognised yet.
    void begin();
    /// Whether any reply of the running job was recognised.
    [[nodiscard]] bool recognised() const { return recognised_; }
    /// Empties the receive buffer: what comes from now on answers the next command.
    void clear();

  private:
    bool holds(const Reply &row, CommEvent event);
    void apply(const Reply &row);

    Desk &desk_;
    JobState &jobs_;
    Link &link_;
    Timer &timer_;
    std::uint64_t acted_ = 0; ///< bit per row that has acted since the buffer was emptied
    bool recognised_ = false;
};

} // namespace telvox
