#pragma once

#include "core/port_scan.hpp"
#include "ports/qt_serial_port.hpp"

namespace telvox {

/// Tries the ports of the map one after the other.
class QtPortScan final : public PortScan {
  public:
    explicit QtPortScan(PortMap &ports) : map_(ports), scanner_(ports) {}
    [[nodiscard]] std::vector<PortInfo> ports() override;
    [[nodiscard]] int number_of(const std::string &device) override;

  private:
    PortMap &map_;
    QtSerialPort scanner_; ///< of its own, so the session's port is never touched
};

} // namespace telvox
