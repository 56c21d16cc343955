#pragma once

#include "core/network.hpp"
#include "ports/port_map.hpp"

#include <functional>
#include <memory>

namespace telvox {

/// The network ports with the event that each reports.
class ReportingTcpClient : public TcpClient {
  public:
    std::function<void(std::string_view)> arrived = [](std::string_view) {};
};
class ReportingProcesses : public Processes {
  public:
    std::function<void(const ProcessEnd &)> ended = [](const ProcessEnd &) {};
};

/// A socket of the system, and its programs.
[[nodiscard]] std::unique_ptr<ReportingTcpClient> make_qt_tcp_client();
[[nodiscard]] std::unique_ptr<ReportingProcesses> make_qt_processes();

/// The network of the simulated modules: nothing of it leaves this program. `ports` outlives both.
[[nodiscard]] std::unique_ptr<ReportingTcpClient> make_simulated_tcp_client(PortMap &ports);
[[nodiscard]] std::unique_ptr<ReportingProcesses> make_simulated_processes(PortMap &ports);

} // namespace telvox
