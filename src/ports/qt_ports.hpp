#pragma once

#include "ports/common_options.hpp"
#include "ports/network_ports.hpp"
#include "ports/port_map.hpp"
#include "ports/qt_port_scan.hpp"
#include "ports/qt_serial_port.hpp"
#include "ports/qt_timer.hpp"
#include "telvox.hpp"

namespace telvox {

/// All the outside that the program is given, on Qt: made once, the same for window and command line.
struct QtPorts {
    explicit QtPorts(const CommonOptions &options) : QtPorts(std::make_shared<PortMap>(options)) {}
    /// With numbers that other programs have too, and one simulated world for all of them.
    explicit QtPorts(std::shared_ptr<PortMap> shared)
        : map(std::move(shared)),
          Winsock(map->simulates() ? make_simulated_tcp_client(*map) : make_qt_tcp_client()),
          processes(map->simulates() ? make_simulated_processes(*map) : make_qt_processes()) {}

    /// What the program is made with.
    [[nodiscard]] Telvox::Ports for_program(MessageBoxes &boxes) {
        return {.comSeriell = comSeriell,
                .scan = scan,
                .Timer1 = Timer1,
                .boxes = boxes,
                .Timer2 = Timer2,
                .Winsock = *Winsock,
                .processes = *processes};
    }

    /// Events go to the program from now on.
    void connect(Telvox &program) {
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

} // namespace telvox
