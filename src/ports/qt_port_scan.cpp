#include "ports/qt_port_scan.hpp"

#include "core/port_choice.hpp"

namespace telvox {

std::vector<PortInfo> QtPortScan::ports() {
    std::vector<PortInfo> found;
    for (int number = 1; number <= last_port; ++number) {
        if (!map_.find(number))
            continue;
        scanner_.CommPort(number);
        PortInfo info = map_.info(number);
        info.refusal = scanner_.PortOpen(true);
        scanner_.PortOpen(false);
        found.push_back(std::move(info));
    }
    return found;
}

} // namespace telvox
