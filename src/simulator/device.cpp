#include "simulator/device.hpp"

#include "simulator/cable.hpp"
#include "simulator/world.hpp"

namespace telvox::simulator {

namespace {

template <auto Member> std::unique_ptr<Device> cable(const World &world) {
    return std::make_unique<Cable>(world.*Member);
}

struct Socket {
    int number;
    const char *description;
    std::unique_ptr<Device> (*plug)(const World &world);
};

constexpr Socket sockets[] = {
    {1, "Simuliertes Telvox-A Analog", cable<&World::analog>},
    {2, "Simuliertes Telvox-A ISDN", cable<&World::isdn>},
    {3, "Simuliertes Telvox-A GSM", cable<&World::gsm>},
    {4, "Simuliertes Telvox-A GPRS", cable<&World::gprs>},
    {5, "Simuliertes Telvox-A Ethernet", cable<&World::ethernet>},
    {6, "Simuliertes lokales Modem",
     [](const World &world) -> std::unique_ptr<Device> {
         return std::make_unique<LocalModem>(world.called);
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

std::unique_ptr<Device> World::device_on_port(int number) const {
    const auto *found = socket(number);
    return found ? found->plug(*this) : nullptr;
}

std::unique_ptr<Device> device_on_port(int number) { return World{}.device_on_port(number); }

std::string description_of_port(int number) {
    const auto *found = socket(number);
    return found ? found->description : "";
}

} // namespace telvox::simulator
