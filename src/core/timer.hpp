#pragma once

#include <chrono>

namespace telvox {

using std::chrono::milliseconds;

/// The periodic timer `Timer1` (port). Its owner calls the tick handler once per period while it is enabled.
class Timer {
  public:
    virtual ~Timer() = default;
    virtual void Interval(milliseconds period) = 0;
    virtual void Enabled(bool on) = 0;
    /// Time on a clock that never goes back, counted from any moment.
    [[nodiscard]] virtual milliseconds now() const = 0;

    /// Starts a new period of this length at once: off, length, on, always in this order.
    void restart(milliseconds period) {
        Enabled(false);
        Interval(period);
        Enabled(true);
    }
};

} // namespace telvox
