#include "dialogues/families.hpp"

#include "ui/desk.hpp"

#include <algorithm>
#include <iterator>

namespace telvox {

bool changes_device(std::string_view command) {
    constexpr std::string_view harmless[] = {"ATI",  "ATO",  "ATQ",    "ATH",      "ATZ",
                                             "AT*E", "AT*V", "AT+CSQ", "AT**EXIT", "quit"};
    return !command.ends_with('?') && std::none_of(std::begin(harmless), std::end(harmless),
                                                   [&](auto start) { return command.starts_with(start); });
}

const Family &family_of(ModemType type) {
    static constexpr Family none{.name = "Ethernet"};
    switch (type) {
    case ModemType::Analog:
        return analog_family;
    case ModemType::ISDN:
        return isdn_family;
    case ModemType::GSM:
        return gsm_family;
    case ModemType::GPRS:
        return gprs_family;
    case ModemType::Ethernet:
        return ethernet_family;
    }
    return none;
}

const Family &family_of_job(const Desk &desk) {
    return desk.jobs.boolErkennen ? recognition_family : family_of(desk.modem_type());
}

} // namespace telvox
