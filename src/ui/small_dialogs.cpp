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

/// "17 von 31, −79 dBm"
std::string in_words(int signal) {
    return std::to_string(signal) + " von 31, −" + std::to_string(113 - 2 * signal) + " dBm";
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
    lblSignalwert.caption =
        signal_known ? in_words(std::clamp(value, 0, pzbSignalstaerke.maximum)) : "nicht bekannt";
}

void FrmGSM_Status::show_antenna() {
    fraAntenne.visible = true;
    lblAntenne.caption = lblSignalwert.caption;
    pzbAntenne.value = pzbSignalstaerke.value;
    if (!signal_known || pzbAntenne.value <= best_)
        return;
    best_ = pzbAntenne.value;
    lblAntenne_Bester.caption = "Bester Wert: " + lblSignalwert.caption;
}

void FrmGSM_Status::forget_antenna() {
    best_ = pzbAntenne.value = 0;
    lblAntenne.caption = unknown;
    lblAntenne_Bester.caption = "Bester Wert: nicht bekannt";
}

} // namespace telvox
