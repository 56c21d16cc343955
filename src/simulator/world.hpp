#pragma once

#include "simulator/analog.hpp"
#include "simulator/gprs.hpp"
#include "simulator/gsm.hpp"
#include "simulator/isdn.hpp"
#include "simulator/local_modem.hpp"
#include "simulator/network.hpp"

namespace telvox::simulator {

/// Everything that is simulated together: the devices on their cables, those that are called, and the
/// network. The module of COM 5 is the one that answers in the network, so all clocks have to run alike.
struct World {
    std::shared_ptr<Analog> analog = std::make_shared<Analog>();
    std::shared_ptr<Isdn> isdn = std::make_shared<Isdn>();
    std::shared_ptr<Gsm> gsm = std::make_shared<Gsm>(Generation::newer);
    std::shared_ptr<Gprs> gprs = std::make_shared<Gprs>("001010000000025");
    std::shared_ptr<Ethernet> ethernet = std::make_shared<Ethernet>("00-05-B6-00-1C-03", "192.168.0.100");
    /// Without an address.
    std::shared_ptr<Ethernet> factory_new = std::make_shared<Ethernet>("00-05-B6-00-1C-04");
    std::shared_ptr<Gprs> called_gprs = std::make_shared<Gprs>("001010000000033");
    Subscribers called{{'1', std::make_shared<Analog>()},
                       {'2', std::make_shared<Isdn>()},
                       {'3', std::make_shared<Gsm>(Generation::older)},
                       {'4', called_gprs}};
    Network network{{ethernet, factory_new}};

    /// What stands on a port, null for a port without a device. A device hangs on one cable at a time; it
    /// stays what it is when the port device goes.
    [[nodiscard]] std::unique_ptr<Device> device_on_port(int number) const;
};

} // namespace telvox::simulator
