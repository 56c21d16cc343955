#include "dialogues/mobile.hpp"

#include "dialogues/parsers.hpp"

namespace telvox::dialogues {

namespace {

constexpr std::string_view imei_label = "IMEI: "; // "IMEI: 123456789012345"

} // namespace

bool take_pin_lock(const JobContext &c, const Found &found) {
    c.findings.pin_stored = found.all.find("inactive") == std::string_view::npos;
    return true;
}

bool take_sim_state(const JobContext &c, const Found &found) {
    struct State {
        std::string_view reply;
        SimState state;
    };
    constexpr State states[] = {
        {"READY", SimState::ready}, {"SIM PIN", SimState::needs_pin}, {"SIM PUK", SimState::needs_puk}};
    for (const auto &[reply, state] : states) {
        if (found.text.find(reply) != std::string_view::npos) {
            c.findings.sim = state;
            return true;
        }
    }
    return false;
}

bool take_registration(const JobContext &c, const Found &found) {
    constexpr std::size_t status_at = 9; // "+CREG: 0,1"
    if (found.text.size() <= status_at)
        return false;
    c.findings.registration = found.text[status_at];
    return true;
}

bool take_refusal(const JobContext &c, const Found &found) {
    if (found.text.find_first_of("\r\n") == std::string_view::npos)
        return false;
    c.findings.registration = '?';
    return true;
}

bool take_signal(const JobContext &c, const Found &found) {
    c.findings.signal = parse_signal(found.text);
    return c.findings.signal.has_value();
}

bool take_imei(const JobContext &c, const Found &found) {
    if (!whole_imei(c, found))
        return false;
    c.findings.imei = from_line(found.text.substr(imei_label.size(), imei_digits));
    return true;
}

bool whole_imei(const JobContext &, const Found &found) {
    return found.text.size() >= imei_label.size() + imei_digits;
}

std::string imei_in(std::string_view received) {
    const auto at = received.find(imei_label);
    if (at == std::string_view::npos || at + imei_label.size() + imei_digits > received.size())
        return {};
    const std::string_view imei = received.substr(at + imei_label.size(), imei_digits);
    return imei.find_first_not_of("0123456789") == std::string_view::npos ? std::string(imei) : "";
}

} // namespace telvox::dialogues
