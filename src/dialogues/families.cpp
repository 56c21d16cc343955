#include "dialogues/families.hpp"

#include <sstream>

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

std::vector<std::string> secret_labels() {
    std::vector<std::string> labels;
    for (const Family *family : {&analog_family, &isdn_family, &gsm_family, &gprs_family, &ethernet_family})
        for (const Job &job : family->jobs)
            for (const Step &step : job.steps) {
                std::istringstream words(step.secrets);
                for (std::string label; words >> label;)
                    labels.push_back(label);
            }
    return labels;
}

const Family &family_of_job(const JobContext &job) {
    return job.jobs.boolErkennen ? recognition_family : family_of(job.values.type);
}

} // namespace telvox
