#pragma once

#include "core/timer.hpp"

#include <QElapsedTimer>
#include <QTimer>
#include <functional>

namespace telvox {

/// The program's timer on Qt. A new interval begins a new period at once.
class QtTimer final : public Timer {
  public:
    QtTimer() {
        timer_.setTimerType(Qt::PreciseTimer);
        clock_.start();
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { tick(); });
    }

    std::function<void()> tick = [] {};

    [[nodiscard]] milliseconds now() const override { return milliseconds(clock_.elapsed()); }
    void Interval(milliseconds period) override { timer_.setInterval(period); }
    void Enabled(bool on) override {
        if (on != timer_.isActive())
            on ? timer_.start() : timer_.stop();
    }

  private:
    QTimer timer_;
    QElapsedTimer clock_;
};

} // namespace telvox
