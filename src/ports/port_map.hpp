#pragma once

#include "core/port_scan.hpp"
#include "ports/common_options.hpp"
#include "simulator/world.hpp"

#include <QElapsedTimer>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace telvox {

/// A serial device that the system has at the moment.
struct PresentPort {
    std::string device; ///< path, or the name that the system opens it by
    std::string description;
};

/// The serial devices that the system has at the moment, sorted, "…2" before "…10".
[[nodiscard]] std::vector<PresentPort> present_ports();

/// A simulated device that can be opened like a port: by one at a time.
struct SimulatedPort {
    std::unique_ptr<simulator::Device> device;
    QElapsedTimer clock; ///< runs since the program's start
    bool in_use = false;
};

/// What stands behind one COM number.
struct Port {
    std::string device; ///< empty for a simulated one
    std::string description;
    std::unique_ptr<SimulatedPort> simulated;
};

/// Which device has which COM number. Devices that the user named have theirs; simulated ones have fixed
/// numbers; others get them from the system: on Windows from the device's name, elsewhere the lowest free
/// number in sorted order, kept as long as the program runs.
class PortMap {
  public:
    using Present = std::function<std::vector<PresentPort>()>;

    explicit PortMap(const CommonOptions &options, Present present = present_ports);

    /// What stands behind a number now; nullptr if nothing does. Stays valid as long as the map.
    [[nodiscard]] Port *find(int number);
    /// The number of a device; one without a number gets the lowest free one. 0 if none is free.
    [[nodiscard]] int number_of(const std::string &device);
    /// What is known of a number; `refusal` is left to whoever tries it.
    [[nodiscard]] PortInfo info(int number) const;
    /// An entry of the port lists, or the network, as records name it: what is simulated says so.
    [[nodiscard]] std::string told(const std::string &entry);
    /// What stands behind a number, for comparing: one device has one name, whatever links lead to it.
    [[nodiscard]] std::string identity(int number);
    /// The same of a device that is named by its path.
    [[nodiscard]] static std::string identity(const std::string &device);
    /// Whether the numbers are the user's and not the system's.
    [[nodiscard]] bool named_by_user() const { return !asks_system_; }

    [[nodiscard]] bool simulates() const { return world_ != nullptr; }
    /// What stands behind the simulated ports, with its network; only where something is simulated.
    [[nodiscard]] simulator::World &world() { return *world_; }
    /// The time of that world; all its clocks run alike.
    [[nodiscard]] simulator::Time now() const { return simulator::Time(clock_.elapsed()); }

  private:
    void refresh();
    int lowest_free() const;

    std::unique_ptr<simulator::World> world_;
    QElapsedTimer clock_;
    std::map<int, Port> ports_;
    Present present_;
    bool asks_system_; ///< numbers come from the system; otherwise only descriptions do
    QElapsedTimer last_look_;
};

} // namespace telvox
