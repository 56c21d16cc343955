#pragma once

#include "core/serial_format.hpp"

#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace telvox::simulator {

/// Time since the simulation began. It only ever comes in with a call, so a test can turn it.
using Time = std::chrono::milliseconds;

/// How the host's adapter does.
enum class Plug {
    works,
    occupied, ///< another program has it open
    jammed,   ///< lets nothing more out
    pulled,
};

/// The far end of a simulated serial line: a device on its cable, or a local modem. It knows bytes, pins and
/// time.
class Device {
  public:
    virtual ~Device() = default;

    /// The host opened the port (DTR comes on) or closed it (DTR goes off, unread bytes are lost).
    virtual void open(bool on, Time now) = 0;
    /// Format that the host's port runs with; bytes in another one than the device's are noise to both.
    virtual void format(const SerialFormat &format, Time now) = 0;
    virtual void dtr(bool on, Time now) = 0;
    /// Bytes that the host wrote.
    virtual void receive(std::string_view bytes, Time now) = 0;
    /// Takes the bytes that have reached the host by now; they come at the pace of the line.
    virtual std::string transmit(Time now) = 0;
    /// Carrier-detect line at this moment.
    [[nodiscard]] virtual bool carrier(Time now) = 0;
    /// When `transmit` or `carrier` next has something new; nothing while the device is silent.
    [[nodiscard]] virtual std::optional<Time> next() const = 0;
    [[nodiscard]] virtual Plug plug() const { return Plug::works; }
};

/// The earlier of two times, of which each may be missing.
[[nodiscard]] inline std::optional<Time> earlier(std::optional<Time> one, std::optional<Time> other) {
    return one && other ? std::min(*one, *other) : one ? one : other;
}

/// What the simulator puts on a port: COM 1 an Analog device, COM 2 ISDN, COM 3 GSM, COM 4 GPRS, COM 5
/// Ethernet, COM 6 a local modem that dials an Analog, ISDN, GSM or GPRS device by the last digit of the
/// number, 1 to 4. Null for a port without a device. Devices of different calls know nothing of one another;
/// `World` has those that belong together.
[[nodiscard]] std::unique_ptr<Device> device_on_port(int number);

/// What to call the device of a port in the port list; empty for a port without one.
[[nodiscard]] std::string description_of_port(int number);

} // namespace telvox::simulator
