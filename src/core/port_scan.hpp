#pragma once

#include <string>
#include <vector>

namespace telvox {

/// A serial port that the system has at the moment.
struct PortInfo {
    int number = 0;          ///< "COM" number, 1 to 15
    std::string device;      ///< path or system name; empty for a simulated one
    std::string description; ///< name of the adapter
    std::string refusal;     ///< why it cannot be opened (German, one sentence); empty: it can
    std::string in_short;    ///< the same in a few words

    bool operator==(const PortInfo &) const = default;
};

/// Tries the serial ports (port). Each is opened and closed again, on a port object of its own, so that one
/// in use is never touched.
class PortScan {
  public:
    virtual ~PortScan() = default;
    /// The ports that are there now, in the order of their numbers.
    [[nodiscard]] virtual std::vector<PortInfo> ports() = 0;
    /// The number of a device that is named by its path; one without a number gets the lowest free one. 0 for
    /// a device that is not there, or if none is free.
    [[nodiscard]] virtual int number_of(const std::string &device) = 0;
};

} // namespace telvox
