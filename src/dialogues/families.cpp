#include "dialogues/families.hpp"

#include <algorithm>

namespace telvox {

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

const Family &family_of_job(const JobContext &job) {
    return job.jobs.boolErkennen ? recognition_family : family_of(job.values.type);
}

} // namespace telvox
