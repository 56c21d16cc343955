#pragma once

#include "operation/own_ports.hpp"
#include "ports/common_options.hpp"
#include "ports/network_ports.hpp"
#include "ports/port_map.hpp"
#include "ports/qt_port_scan.hpp"
#include "ports/qt_serial_port.hpp"
#include "ports/qt_timer.hpp"

namespace telvox {

/// All the outside that the program is given, on Qt: made once, the same for window and command line.
struct QtPorts final : operation::OwnPorts {
    explicit QtPorts(const CommonOptions &options) : QtPorts(std::make_shared<PortMap>(options)) {}
    /// With numbers that other programs have too, and one simulated world for all of them.
    explicit QtPorts(std::shared_ptr<PortMap> shared)
        : map(std::move(shared)),
          Winsock(map->simulates() ? make_simulated_tcp_client(*map) : make_qt_tcp_client()),
          processes(map->simulates() ? make_simulated_processes(*map) : make_qt_processes()) {}

    [[nodiscard]] Telvox::Ports for_program(MessageBoxes &boxes) override {
        return {.comSeriell = comSeriell,
                .scan = scan,
                .Timer1 = Timer1,
                .boxes = boxes,
                .Timer2 = Timer2,
                .Winsock = *Winsock,
                .processes = *processes};
    }

    void connect(Telvox &program) override {
        comSeriell.comm_event = [&program](CommEvent event) { program.comSeriell_OnComm(event); };
        Timer1.tick = [&program] { program.Timer1_Timer(); };
        Timer2.tick = [&program] { program.Timer2_Timer(); };
        Winsock->arrived = [&program](std::string_view bytes) { program.Winsock_DataArrival(bytes); };
        processes->ended = [&program](const ProcessEnd &end) { program.process_ended(end); };
    }

    std::shared_ptr<PortMap> map;
    QtSerialPort comSeriell{*map};
    QtPortScan scan{*map};
    QtTimer Timer1;
    QtTimer Timer2;
    std::unique_ptr<ReportingTcpClient> Winsock;
    std::unique_ptr<ReportingProcesses> processes;
};

/// Makes the outside of programs beside the one that has these numbers of ports.
[[nodiscard]] inline operation::MakePorts ports_beside(std::shared_ptr<PortMap> numbers) {
    return [numbers = std::move(numbers)](const std::string &device) -> std::unique_ptr<operation::OwnPorts> {
        if (device.empty())
            return std::make_unique<QtPorts>(numbers);
        return std::make_unique<QtPorts>(std::make_shared<PortMap>(
            CommonOptions{.ports = {{1, device}}}, [] { return std::vector<PresentPort>(); }));
    };
}

} // namespace telvox
