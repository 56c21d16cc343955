#pragma once

#include "core/timer.hpp"

#include <QTimer>
#include <functional>

namespace telvox {

/// The program's timer on Qt. A new interval begins a new period at once.
class QtTimer final : public Timer {
  public:
    QtTimer() {
        timer_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { tick(); });
    }

    std::function<void()> tick = [] {};

    void Interval(milliseconds period) override { timer_.setInterval(period); }
    void Enabled(bool on) override {
        if (on != timer_.isActive())
            on ? timer_.start() : timer_.stop();
    }

  private:
    QTimer timer_;
};

} // namespace telvox
