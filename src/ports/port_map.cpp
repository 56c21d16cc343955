#include "ports/port_map.hpp"

#include "core/port_choice.hpp"

#include "core/port_choice.hpp"
#include "ports/os.hpp"

#include <QSerialPortInfo>
#include <algorithm>
#include <tuple>

namespace telvox {

namespace {

/// A scan asks for fifteen numbers in a row; one look at the system serves them all.
constexpr qint64 look_lasts_ms = 200;

/// Orders "ttyUSB2" before "ttyUSB10".
auto natural_key(const PresentPort &port) {
    const auto digits_from = port.device.find_last_not_of("0123456789") + 1;
    return std::tuple(port.device.substr(0, digits_from), port.device.size(), port.device);
}

} // namespace

std::vector<PresentPort> present_ports() {
    std::vector<PresentPort> present;
    for (const QSerialPortInfo &info : QSerialPortInfo::availablePorts())
        if (const std::string device =
                (os::ports_have_numbers ? info.portName() : info.systemLocation()).toStdString();
            os::exists(device))
            present.push_back({device, info.description().toStdString()});
    std::sort(present.begin(), present.end(),
              [](const PresentPort &a, const PresentPort &b) { return natural_key(a) < natural_key(b); });
    return present;
}

PortMap::PortMap(const CommonOptions &options, Present present)
    : world_(options.simulator ? std::make_unique<simulator::World>() : nullptr),
      present_(std::move(present)),
      asks_system_(options.ports.empty()) {
    clock_.start();
    for (const auto *situation : options.situations)
        simulator::begin(*situation, *world_);
    for (const auto &[number, device] : options.ports)
        ports_[number].device = device;
    for (int number = 1; options.simulator && number <= last_port; ++number) {
        auto device = ports_.contains(number) ? nullptr : world_->device_on_port(number);
        if (!device)
            continue;
        Port &port = ports_[number];
        port.description = simulator::description_of_port(number);
        port.simulated = std::make_unique<SimulatedPort>();
        port.simulated->device = std::move(device);
        port.simulated->clock = clock_;
    }
}

Port *PortMap::find(int number) {
    refresh();
    const auto found = ports_.find(number);
    return found == ports_.end() ? nullptr : &found->second;
}

int PortMap::number_of(const std::string &device) {
    refresh();
    const std::string real = identity(device);
    for (const auto &[number, port] : ports_)
        if (!port.simulated && identity(port.device) == real)
            return number;
    const int number = lowest_free();
    if (number != 0)
        ports_[number].device = device;
    return number;
}

std::string PortMap::identity(int number) {
    const Port *port = find(number);
    return port && !port->simulated ? identity(port->device) : port_entry(number);
}

// Paths of one device differ: links by name and by connector.
std::string PortMap::identity(const std::string &device) { return os::real_name(device); }

PortInfo PortMap::info(int number) const {
    const auto found = ports_.find(number);
    if (found == ports_.end())
        return {.number = number};
    return {.number = number, .device = found->second.device, .description = found->second.description};
}

void PortMap::refresh() {
    if (last_look_.isValid() && last_look_.elapsed() < look_lasts_ms)
        return;
    for (const PresentPort &present : present_()) {
        const auto known = std::find_if(ports_.begin(), ports_.end(), [&](const auto &entry) {
            return identity(entry.second.device) == identity(present.device);
        });
        if (known == ports_.end() && !asks_system_)
            continue;
        const int number = known != ports_.end()    ? known->first
                           : os::ports_have_numbers ? os::port_number(present.device)
                                                    : lowest_free();
        if (number < 1 || number > last_port || (ports_.contains(number) && ports_[number].simulated))
            continue;
        ports_[number].device = known != ports_.end() ? known->second.device : present.device;
        ports_[number].description = present.description;
    }
    last_look_.start();
}

int PortMap::lowest_free() const {
    for (int number = 1; number <= last_port; ++number)
        if (!ports_.contains(number))
            return number;
    return 0;
}

std::string PortMap::told(const std::string &entry) {
    const auto number = parse_port_number(entry);
    const Port *port = number ? find(*number) : nullptr;
    return entry + ((number ? port && port->simulated : simulates()) ? " (simuliert)" : "");
}

} // namespace telvox
