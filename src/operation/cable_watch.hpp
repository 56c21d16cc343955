#pragma once

#include "core/session.hpp"
#include "core/timer.hpp"
#include "link/serial_port.hpp"

#include <functional>

namespace telvox::operation {

/// Asks the device at a cable now and then, to see it leave and another one come. It looks only for a while:
/// a modem that is dialling for an alarm gives up at any character.
class CableWatch {
  public:
    enum class Seen {
        nothing, ///< it does not look, or has not yet
        there,   ///< the device answers
        gone,    ///< it has not answered once
        back,    ///< and then one has; it looks no longer
    };

    /// `port` and `timer` are its own; the timer's tick is to call `tick`.
    CableWatch(SerialPort &port, Timer &timer) : port_(port), timer_(timer) {}

    /// What is seen has changed.
    std::function<void()> noticed = [] {};
    /// Begins to look: at this port and format, with the question that the variant answers at any time. Does
    /// nothing for a variant that has none.
    void begin(ModemType type, int port, const SerialFormat &format);
    /// Ends it; the port is closed at once.
    void end();
    void tick();
    [[nodiscard]] Seen seen() const { return seen_; }

  private:
    bool ask();
    void look();

    SerialPort &port_;
    Timer &timer_;
    const char *question_ = nullptr;
    milliseconds until_{0};
    Seen seen_ = Seen::nothing;
};

} // namespace telvox::operation
