#include "dialogues/mobile.hpp"

#include "dialogues/parsers.hpp"

namespace telvox::dialogues {

namespace {

constexpr std::size_t imei_at = 6, imei_digits = 15; // "IMEI: 123456789012345"

} // namespace

bool show_no_pin(Desk &desk, const Found &) {
    desk.frmGSM_Status.tboPIN_hinterlegt.text = "nein";
    return true;
}

bool show_pin(Desk &desk, const Found &) {
    desk.frmGSM_Status.tboPIN_hinterlegt.text = "ja";
    return true;
}

bool take_sim_state(Desk &desk, const Found &found) {
    struct State {
        std::string_view reply;
        const char *shown;
    };
    constexpr State states[] = {
        {"READY", "PIN korrekt"}, {"SIM PIN", "PIN falsch"}, {"SIM PUK", "PUK eingeben"}};
    for (const State &state : states) {
        if (found.text.find(state.reply) != std::string_view::npos) {
            desk.frmGSM_Status.tboStatus.text = state.shown;
            return true;
        }
    }
    return false;
}

bool take_registration(Desk &desk, const Found &found) {
    constexpr std::size_t status_at = 9; // "+CREG: 0,1"
    if (found.text.size() <= status_at)
        return false;
    const auto shown = [](char status) {
        switch (status) {
        case '0':
            return "nicht eingebucht, keine Suche nach Netz";
        case '1':
            return "eingebucht beim Standard Betreiber";
        case '2':
            return "nicht eingebucht, Suche nach GSM Netz";
        case '3':
            return "abgewiesen";
        case '5':
            return "eingebucht, roaming";
        default:
            return "unbekannt";
        }
    };
    desk.frmGSM_Status.tboReg_zustand.text = shown(found.text[status_at]);
    return true;
}

bool take_refusal(Desk &desk, const Found &found) {
    if (found.text.find_first_of("\r\n") == std::string_view::npos)
        return false;
    desk.frmGSM_Status.tboReg_zustand.text = "unbekannt";
    return true;
}

bool take_signal(Desk &desk, const Found &found) {
    const auto value = parse_signal(found.text);
    if (!value)
        return false;
    desk.frmGSM_Status.show_signal(*value);
    return true;
}

bool take_imei(Desk &desk, const Found &found) {
    if (!whole_imei(desk, found))
        return false;
    desk.frmGSM_Status.tboIMEI.text =
        desk.frmGSM_Status.tboIMEI.filtered(from_line(found.text.substr(imei_at, imei_digits)));
    return true;
}

bool whole_imei(Desk &, const Found &found) { return found.text.size() >= imei_at + imei_digits; }

} // namespace telvox::dialogues
