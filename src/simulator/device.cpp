#include "simulator/device.hpp"

#include "simulator/analog.hpp"
#include "simulator/cable.hpp"
#include "simulator/gprs.hpp"
#include "simulator/gsm.hpp"
#include "simulator/isdn.hpp"
#include "simulator/local_modem.hpp"

namespace telvox::simulator {

namespace {

struct Socket {
    int number;
    const char *description;
    std::unique_ptr<Device> (*plug)();
};

constexpr Socket sockets[] = {
    {1, "Simuliertes Telvox-A Analog",
     []() -> std::unique_ptr<Device> { return std::make_unique<Cable>(std::make_shared<Analog>()); }},
    {2, "Simuliertes Telvox-A ISDN",
     []() -> std::unique_ptr<Device> { return std::make_unique<Cable>(std::make_shared<Isdn>()); }},
    {3, "Simuliertes Telvox-A GSM",
     []() -> std::unique_ptr<Device> {
         return std::make_unique<Cable>(std::make_shared<Gsm>(Generation::newer));
     }},
    {4, "Simuliertes Telvox-A GPRS",
     []() -> std::unique_ptr<Device> { return std::make_unique<Cable>(std::make_shared<Gprs>()); }},
    {6, "Simuliertes lokales Modem",
     []() -> std::unique_ptr<Device> {
         return std::make_unique<LocalModem>(Subscribers{
             {'1', std::make_shared<Analog>()},
             {'2', std::make_shared<Isdn>()},
             {'3', std::make_shared<Gsm>(Generation::older)},
             {'4', std::make_shared<Gprs>()},
         });
     }},
};

const Socket *socket(int number) {
    for (const auto &candidate : sockets) {
        if (candidate.number == number)
            return &candidate;
    }
    return nullptr;
}

} // namespace

std::unique_ptr<Device> device_on_port(int number) {
    const auto *found = socket(number);
    return found ? found->plug() : nullptr;
}

std::string description_of_port(int number) {
    const auto *found = socket(number);
    return found ? found->description : "";
}

} // namespace telvox::simulator
