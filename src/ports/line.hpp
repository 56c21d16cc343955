#pragma once

#include "core/serial_format.hpp"
#include "core/timer.hpp"
#include "link/serial_port.hpp"
#include "ports/os.hpp"
#include "ports/port_map.hpp"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace telvox {

/// An open serial line, DTR on. Destroying it closes it, without waiting and without what was not drained.
class Line {
  public:
    virtual ~Line() = default;
    virtual void format(const SerialFormat &format) = 0;
    virtual void dtr(bool on) = 0;
    virtual void write(std::string_view bytes) = 0;
    virtual std::string read() = 0;
    /// Returns whether all output has left.
    virtual bool drain(milliseconds limit) = 0;
    virtual void watch_carrier(bool on) = 0;
};

/// How a line tells what happened on it, at any time, also from inside a call, and more than once.
using Report = std::function<void(CommEvent)>;

/// The open line, or why it could not be opened.
struct Opened {
    std::unique_ptr<Line> line;
    os::Refusal cause;
};

/// Opens a port of the system, in a thread that has an event loop.
[[nodiscard]] Opened open_system_line(const std::string &device, const SerialFormat &format, Report report);
[[nodiscard]] Opened open_simulated_line(SimulatedPort &port, const SerialFormat &format, Report report);

} // namespace telvox
