#pragma once

#include "dialogues/gprs_steps.hpp"
#include "dialogues/parsers.hpp"

#include <limits>
#include <string>

/// The jobs of the GPRS settings dialog: writing the mobile-data settings and reading them.
namespace telvox::dialogues {

/// Callback of the third number, which nobody is let in by.
inline constexpr const char *third_callback = ",3";

/// Sends one mobile-data setting. The device stores them in the order in which they come, at its own pace.
constexpr Step gprs_setting(Counter number, const char *status, RowText send) {
    return command(number, status, send, 800ms);
}

inline constexpr auto gprs_write =
    table(gprs_opening(3s), check_after_opening(checking, 1200ms, &JobState::boolKommunikations_Fehler72),
          gprs_setting(5, "Access Point Name wird konfiguriert",
                       [](const Desk &d) { return "AT**GPRSAPN=" + d.session.gprs.apn; }),
          gprs_setting(6, "Übertragung des Benutzernamen",
                       [](const Desk &d) { return "AT**PPPUSER=" + d.session.gprs.user; }),
          gprs_setting(7, "GPRS-Passwort wird eingestellt",
                       [](const Desk &d) { return "AT**PPPPW=" + d.session.gprs.password; }),
          gprs_setting(
              8, "Authentifizierung wird konfiguriert",
              [](const Desk &d) { return std::string("AT**PPPAUTH=") + (d.session.gprs.pap ? "1" : "0"); }),
          gprs_setting(9, "Ziel IP-Adresse wird eingestellt",
                       [](const Desk &d) { return "AT**AUTOIP=" + d.session.gprs.ip; }),
          gprs_setting(10, "Ziel IP Port wird eingestellt",
                       [](const Desk &d) { return "AT**AUTOPORTIP=" + d.session.gprs.ip_port; }),
          gprs_setting(11, "Ziel Domain wird parametriert",
                       [](const Desk &d) { return "AT**AUTOURL=" + d.session.gprs.domain; }),
          gprs_setting(12, "Ziel URL Port wird eingestellt",
                       [](const Desk &d) { return "AT**AUTOPORTURL=" + d.session.gprs.domain_port; }),
          gprs_setting(13, "Selektive Rufannahme wird konfiguriert",
                       [](const Desk &d) {
                           const GprsSettings &values = d.session.gprs;
                           const bool selective = !values.number1.empty() || !values.number2.empty();
                           return std::string("AT**CLIP=") + (selective ? "1" : "0");
                       }),
          gprs_setting(14, "Selektive Rufnummer1 wird eingestellt",
                       [](const Desk &d) { return "AT**CLIP1=" + d.session.gprs.number1; }),
          gprs_setting(15, "Selektive Rufnummer2 wird eingestellt",
                       [](const Desk &d) { return "AT**CLIP2=" + d.session.gprs.number2; }),
          gprs_setting(16, "Callback Ziel wird ausgewählt",
                       [](const Desk &d) {
                           return "AT**Callback=" + std::to_string(d.session.gprs.callback1) + "," +
                                  std::to_string(d.session.gprs.callback2) + third_callback;
                       }),
          gprs_setting(17, "Standleitungsbetriebsart wird konfiguriert",
                       [](const Desk &d) { return "AT**LL=" + std::to_string(d.session.gprs.leased_line); }),
          gprs_setting(18, "Keep Alive Intervall wird eingestellt",
                       [](const Desk &d) { return "AT**KEEP=" + d.session.gprs.keep_alive; }),
          gprs_setting(19, "Einstellungen speichern", "AT**SAVE"),
          check_and_restart(20, 3s, &JobState::boolKommunikations_Fehler73),
          gprs_ending(22, written_and_restarting, OnFall::skipped));

/// Keeps where a value starts in what was received. A device answers each query on a line of its own, so a
/// value that starts behind what the byte can hold is none of its answers: false.
inline bool starts_at(Desk &desk, std::size_t position) {
    if (position > std::numeric_limits<Counter>::max())
        return false;
    desk.session.byteISDN_Anschlussart = static_cast<Counter>(position);
    return true;
}

/// The line whose label the answer's row looks for, the colon included.
inline std::optional<Labelled> found_line(const Found &found) {
    return labelled(found.all, found.text.substr(0, found.text.find(':') + 1));
}

// A job whose dialog was closed meanwhile reads to its end; opening the dialog sets all its fields anew.

template <auto Box> bool fill_text(Desk &desk, const Found &found) {
    const auto line = found_line(found);
    if (!line || !starts_at(desk, line->position + line->value_at))
        return false;
    write_value(desk.frmGPRS.*Box, line->text());
    return true;
}

/// "PPPAUTH: PAP=0"
inline bool fill_authentication(Desk &desk, const Found &found) {
    const auto line = found_line(found);
    if (line)
        (line->code(13) == '0' ? desk.frmGPRS.optPPP_kein : desk.frmGPRS.optPPP_PAP).choose();
    return line.has_value();
}

/// "CLIP 3: " is the last of the three lines; only the first two numbers have fields.
inline bool fill_callers(Desk &desk, const Found &found) {
    struct Caller {
        const char *label;
        TextBox FrmGPRS::*box;
    };
    constexpr Caller callers[] = {{"CLIP 1:", &FrmGPRS::tboNummer1}, {"CLIP 2:", &FrmGPRS::tboNummer2}};
    if (!found_line(found))
        return false;
    for (const Caller &caller : callers) {
        const auto line = labelled(found.all, caller.label);
        if (line && !starts_at(desk, line->position + line->value_at))
            return false;
    }
    for (const Caller &caller : callers)
        if (const auto line = labelled(found.all, caller.label))
            write_value(desk.frmGPRS.*caller.box, line->text());
    return true;
}

/// A target's code as the option that shows it; any other code leaves the options as they are.
inline void choose_target(char code, OptionButton &off, OptionButton &by_address, OptionButton &by_domain) {
    if (code == '0' || code == '2' || code == '3')
        (code == '0' ? off : code == '2' ? by_address : by_domain).choose();
}

/// "CALLBACK: 2,3,3"
inline bool fill_callback(Desk &desk, const Found &found) {
    constexpr std::size_t first = 10, second = 12;
    const auto line = found_line(found);
    if (!line || !starts_at(desk, line->position + second))
        return false;
    FrmGPRS &form = desk.frmGPRS;
    choose_target(line->code(first), form.optCallback1_kein, form.optCallback1_IP, form.optCallback1_Domain);
    choose_target(line->code(second), form.optCallback2_kein, form.optCallback2_IP, form.optCallback2_Domain);
    return true;
}

/// "LL1: 2"
inline bool fill_leased_line(Desk &desk, const Found &found) {
    const auto line = found_line(found);
    if (!line || !starts_at(desk, line->position + line->value_at))
        return false;
    FrmGPRS &form = desk.frmGPRS;
    choose_target(line->code(line->value_at), form.optStandleitung_aus, form.optStandleitung_IP,
                  form.optStandleitung_Domain);
    return true;
}

inline constexpr auto gprs_queries = std::to_array<Query>({
    {4, 1, checking, "AT**IMEI?", "IMEI: ", whole_imei, 1500ms, OnFall::reported},
    {5, 2, results_on, "ATQ0", "OK"},
    {6, 3, "Access Point Name wird gelesen", "AT**GPRSAPN?", "GPRSAPN:", fill_text<&FrmGPRS::cobAPN>},
    {7, 4, "Benutzername lesen", "AT**PPPUSER?", "PPPUSER:", fill_text<&FrmGPRS::tboBenutzername>},
    {8, 5, "GPRS-Passwort wird ausgelesen", "AT**PPPPW?", "PPPPW:", fill_text<&FrmGPRS::tboPasswort>},
    {9, 6, "Authentifizierungsart wird gelesen", "AT**PPPAUTH?", "PPPAUTH:", fill_authentication},
    {10, 7, "Ziel IP-Adresse auslesen", "AT**AUTOIP?", "AUTOIP1:", fill_text<&FrmGPRS::tboIP>},
    {11, 8, "Ziel IP Port wird einlesen", "AT**AUTOPORTIP?", "AUTOPORTIP1:", fill_text<&FrmGPRS::tboIP_Port>},
    {12, 9, "Ziel Domain wird gelesen", "AT**AUTOURL?", "AUTOURL1:", fill_text<&FrmGPRS::tboDomain>},
    {13, 10, "Ziel URL Port wird gelesen", "AT**AUTOPORTURL?",
     "AUTOPORTURL1:", fill_text<&FrmGPRS::tboDomain_Port>},
    {14, 11, "Rufannahmenkonfiguration wird gelesen", "AT**CLIP?", "CLIP 3:", fill_callers},
    {15, 12, "Lesen des Callback Ziel", "AT**Callback?", "CALLBACK:", fill_callback},
    {16, 13, "Keep Alive Intervall wird gelesen", "AT**KEEP?", "KEEP:", fill_text<&FrmGPRS::tboKeepAlive>},
    {17, 14, "Leased-Line Einstellung lesen", "AT**LL?", "LL1:", fill_leased_line},
});

inline constexpr auto gprs_read =
    table(gprs_opening(3s), query_steps(gprs_queries), command(18, results_off, "ATQ1", 2s),
          gprs_ending(19, read_out, OnFall::fails));

} // namespace telvox::dialogues
