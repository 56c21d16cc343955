#include "ui/small_dialogs.hpp"

#include <algorithm>

namespace telvox {

namespace {

const char *text_of(SimState state) {
    switch (state) {
    case SimState::ready:
        return "PIN korrekt";
    case SimState::needs_pin:
        return "PIN falsch";
    case SimState::needs_puk:
        return "PUK eingeben";
    case SimState::missing:
        return "keine SIM-Karte";
    }
    return unknown;
}

const char *text_of_registration(char status) {
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
}

} // namespace

void FrmGSM_Status::show(const Findings &found) {
    if (found.pin_stored)
        tboPIN_hinterlegt.text = *found.pin_stored ? "ja" : "nein";
    if (found.sim)
        tboStatus.text = text_of(*found.sim);
    if (found.registration)
        tboReg_zustand.text = text_of_registration(*found.registration);
    if (found.signal)
        show_signal(*found.signal);
    if (found.imei)
        tboIMEI.text = tboIMEI.filtered(*found.imei);
}

void FrmGSM_Status::show_signal(int value) {
    constexpr int not_known = 99;
    signal_known = value != not_known;
    pzbSignalstaerke.value = signal_known ? std::clamp(value, 1, pzbSignalstaerke.maximum) : 0;
    const int told = std::clamp(value, 0, pzbSignalstaerke.maximum);
    lblSignalwert.caption = !signal_known
                                ? "nicht bekannt"
                                : std::to_string(told) + " von " + std::to_string(pzbSignalstaerke.maximum) +
                                      ", −" + std::to_string(113 - 2 * told) + " dBm";
}

} // namespace telvox
