#include "ports/qt_port_scan.hpp"

#include "core/port_choice.hpp"
#include "ports/os.hpp"

namespace telvox {

std::vector<PortInfo> QtPortScan::ports() {
    std::vector<PortInfo> found;
    for (int number = 1; number <= last_port; ++number) {
        if (!map_.find(number))
            continue;
        scanner_.CommPort(number);
        PortInfo info = map_.info(number);
        info.refusal = scanner_.PortOpen(true);
        info.in_short = scanner_.refusal().in_short;
        scanner_.PortOpen(false);
        // One that was unplugged is not there; one that the user named is missed.
        if (info.refusal == port_absent.sentence && !map_.named_by_user())
            continue;
        found.push_back(std::move(info));
    }
    return found;
}

int QtPortScan::number_of(const std::string &device) {
    return os::exists(device) ? map_.number_of(device) : 0;
}

} // namespace telvox
