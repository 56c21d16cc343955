#pragma once

#include "core/serial_format.hpp"
#include "core/timer.hpp"

#include <string>
#include <string_view>

namespace telvox {

/// Reason of a serial event.
enum class CommEvent {
    data = 2,         ///< at least one byte has arrived
    carrier_rise = 5, ///< the carrier-detect line has come on
    carrier_fall = 6, ///< it has gone off
    lost =
        1000, ///< the port is gone (adapter unplugged, peer closed); reported once, the port is then closed
};

/// One serial port (port). Its owner reports events to the program's `comSeriell_OnComm`. Nothing blocks but
/// `drain`, which is bounded, and no event is reported from inside a call.
class SerialPort {
  public:
    virtual ~SerialPort() = default;

    /// Number of the port, 1 to 15; takes effect at the next opening.
    virtual void CommPort(int number) = 0;
    [[nodiscard]] virtual int CommPort() const = 0;
    /// Format of the line; applied at once when the port is open, otherwise at the opening.
    virtual void Settings(const SerialFormat &format) = 0;
    /// Opens (with DTR on) or closes the port. Returns why it could not be opened, in words that a technician
    /// can act on (German, UTF-8); empty when it was. Closing discards what was not drained.
    virtual std::string PortOpen(bool open) = 0;
    [[nodiscard]] virtual bool PortOpen() const = 0;
    virtual void DTREnable(bool on) = 0;
    /// Hands bytes to the line and returns at once.
    virtual void Output(std::string_view bytes) = 0;
    /// All bytes that arrived since the last call.
    virtual std::string Input() = 0;
    /// Waits until all output has left, at most this long. Returns whether it has.
    virtual bool drain(milliseconds limit) = 0;
    /// Reports changes of the carrier-detect line from now on, or no longer; on while it is on
    /// changes nothing. The line has no event of its own, so it is polled only while a call is awaited or
    /// stands.
    virtual void watch_carrier(bool on) = 0;
};

} // namespace telvox
