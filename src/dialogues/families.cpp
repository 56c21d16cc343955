#include "dialogues/families.hpp"

namespace telvox {

const Family &family_of(ModemType type) {
    static constexpr Family none{};
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
        break;
    }
    return none;
}

} // namespace telvox
