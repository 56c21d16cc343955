#pragma once

#include "core/port_scan.hpp"
#include "ports/os.hpp"
#include "ports/qt_serial_port.hpp"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace telvox {

/// Why a port of the system cannot be opened; empty if it can. It is closed again.
[[nodiscard]] os::Refusal try_port(const std::string &device);

/// Tries the ports of the map, all at once. One that has not answered in time is told as such, and goes on
/// being waited for without holding anybody up.
class QtPortScan final : public PortScan {
  public:
    using Try = std::function<os::Refusal(const std::string &device)>;
    static constexpr milliseconds longest{1800};

    explicit QtPortScan(PortMap &ports, Try try_it = try_port, milliseconds limit = longest);
    [[nodiscard]] std::vector<PortInfo> ports() override;
    [[nodiscard]] int number_of(const std::string &device) override;

  private:
    struct Answers;

    void ask(const std::string &device) const;
    [[nodiscard]] os::Refusal simulated(int number);

    PortMap &map_;
    QtSerialPort scanner_; ///< of its own, so the session's port is never touched
    Try try_;
    milliseconds limit_;
    std::shared_ptr<Answers> answers_; ///< outlives the scan while a port is silent
};

} // namespace telvox
