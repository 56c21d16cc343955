#pragma once

#include "telvox.hpp"

#include <vector>

namespace telvox::operation {

/// The GSM status window's queries as more than one job: all four in a row, or the signal's again and again
/// while somebody turns the antenna. Each is the job that its button starts; the port is closed after each.
class StatusQueries : private LongWork, private Observer {
  public:
    /// From one measurement's beginning to the next one's, unless it takes longer.
    static constexpr milliseconds period{3000};

    /// The timer is its own; `tick` is to be called by it.
    StatusQueries(Telvox &program, Timer &pause);
    void tick();

  private:
    void begin(std::vector<Button *> queries);
    void press();
    void stop();
    void ended(const JobEnd &end) override;
    void happened() override;
    void settled() override;
    [[nodiscard]] bool running() const override { return next_ < queries_.size(); }
    [[nodiscard]] bool by_others() const override { return false; }
    [[nodiscard]] Progress progress() const override;
    void cancel() override { stop(); }

    Telvox &program_;
    Desk &desk_;
    FrmGSM_Status &form_;
    Timer &pause_;
    std::vector<Button *> queries_;
    std::size_t next_ = 0; ///< the query that runs, or is waited for
    bool goes_on_ = false; ///< with the next, when the last one has been told
    milliseconds began_{0};
};

} // namespace telvox::operation
