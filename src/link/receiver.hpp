#pragma once

#include "core/timer.hpp"
#include "link/link.hpp"
#include "link/reply.hpp"

#include <cstdint>
#include <span>

namespace telvox {

/// Recognises on every serial event the answers to the last command, and the rows of the selected variant.
class Receiver {
  public:
    Receiver(const JobContext &job, Link &link, Timer &timer) : job_(job), link_(link), timer_(timer) {}

    /// Collects what arrived and applies the awaited answer and every row that holds, in the rows' order.
    /// Replies count only while a job runs, its line stands, and nothing is being hung up. A row for data
    /// acts once per filling of the buffer, one for the carrier each time. Returns whether any did.
    bool handle(CommEvent event, std::span<const Reply> rows);
    /// A job begins: nothing of it was recognised yet.
    void begin();
    /// A command is sent: what was awaited before it counts no more.
    void await(const Awaited &awaited);
    /// The label of an awaited value is there, and bytes still come.
    [[nodiscard]] bool value_under_way();
    /// Whether any reply of the running job was recognised.
    [[nodiscard]] bool recognised() const { return recognised_; }
    /// Empties the receive buffer: what comes from now on answers the next command.
    void clear();

  private:
    /// Longer pauses are none of an answer: an adapter hands on what it has many times in this.
    static constexpr milliseconds gap{200};

    bool answered();
    bool holds(const Reply &row, CommEvent event);
    bool holds(const char *contains, Take take);
    void apply(const Reply &row);

    JobContext job_;
    Link &link_;
    Timer &timer_;
    Awaited awaited_;
    std::uint64_t acted_ = 0; ///< bit per row that has acted since the buffer was emptied
    bool recognised_ = false;
    milliseconds last_arrival_{0};
};

} // namespace telvox
