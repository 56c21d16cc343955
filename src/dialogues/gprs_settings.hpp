#pragma once

#include "dialogues/gprs_steps.hpp"
#include "dialogues/parsers.hpp"

#include <limits>
#include <string>

/// The jobs of the GPRS settings dialog: writing the mobile-data settings and reading them.
namespace telvox::dialogues {

/// Callback of the third number, which nobody is let in by.
inline constexpr const char *third_callback = ",3";

template <auto Value> std::string gprs(const JobContext &c) { return c.values.gprs.*Value; }
inline std::string authentication(const JobContext &c) { return c.values.gprs.pap ? "1" : "0"; }
inline std::string selective(const JobContext &c) {
    return c.values.gprs.number1.empty() && c.values.gprs.number2.empty() ? "0" : "1";
}
inline std::string callbacks(const JobContext &c) {
    return std::to_string(c.values.gprs.callback1) + "," + std::to_string(c.values.gprs.callback2) +
           third_callback;
}
inline std::string leased_line(const JobContext &c) { return std::to_string(c.values.gprs.leased_line); }

/// Sends one setting. The device stores them in the order in which they come, at its own pace.
constexpr Step gprs_setting(const char *status, RowText send) { return tell(send, status, 800ms); }

inline constexpr auto gprs_write = script(
    gprs_opening(3s, check(checking, 1200ms, &JobState::boolKommunikations_Fehler72)),
    gprs_setting("Access Point Name wird konfiguriert", {"AT**GPRSAPN=", gprs<&GprsSettings::apn>}),
    gprs_setting("Übertragung des Benutzernamen", {"AT**PPPUSER=", gprs<&GprsSettings::user>}),
    secret(gprs_setting("GPRS-Passwort wird eingestellt", {"AT**PPPPW=", gprs<&GprsSettings::password>})),
    gprs_setting("Authentifizierung wird konfiguriert", {"AT**PPPAUTH=", authentication}),
    gprs_setting("Ziel IP-Adresse wird eingestellt", {"AT**AUTOIP=", gprs<&GprsSettings::ip>}),
    gprs_setting("Ziel IP Port wird eingestellt", {"AT**AUTOPORTIP=", gprs<&GprsSettings::ip_port>}),
    gprs_setting("Ziel Domain wird parametriert", {"AT**AUTOURL=", gprs<&GprsSettings::domain>}),
    gprs_setting("Ziel URL Port wird eingestellt", {"AT**AUTOPORTURL=", gprs<&GprsSettings::domain_port>}),
    gprs_setting("Selektive Rufannahme wird konfiguriert", {"AT**CLIP=", selective}),
    gprs_setting("Selektive Rufnummer1 wird eingestellt", {"AT**CLIP1=", gprs<&GprsSettings::number1>}),
    gprs_setting("Selektive Rufnummer2 wird eingestellt", {"AT**CLIP2=", gprs<&GprsSettings::number2>}),
    gprs_setting("Callback Ziel wird ausgewählt", {"AT**Callback=", callbacks}),
    gprs_setting("Standleitungsbetriebsart wird konfiguriert", {"AT**LL=", leased_line}),
    gprs_setting("Keep Alive Intervall wird eingestellt", {"AT**KEEP=", gprs<&GprsSettings::keep_alive>}),
    gprs_setting("Einstellungen speichern", "AT**SAVE"),
    check_and_restart(3s, &JobState::boolKommunikations_Fehler73),
    gprs_ending(written_and_restarting, OnFall::skipped));

/// Keeps where a value starts in what was received. A device answers each query on a line of its own, so a
/// value that starts behind what the byte can hold is none of its answers: false.
inline bool starts_at(const JobContext &c, std::size_t position) {
    if (position > std::numeric_limits<Counter>::max())
        return false;
    c.session.byteISDN_Anschlussart = static_cast<Counter>(position);
    return true;
}

/// What was read so far; what was not is as the dialog had it.
inline GprsSettings &read_so_far(const JobContext &c) {
    if (!c.findings.gprs)
        c.findings.gprs = c.values.gprs;
    return *c.findings.gprs;
}

/// The line whose label the answer looks for, the colon included.
inline std::optional<Labelled> found_line(const Found &found) {
    return labelled(found.all, found.text.substr(0, found.text.find(':') + 1));
}

template <auto Value> bool take_text(const JobContext &c, const Found &found) {
    const auto line = found_line(found);
    if (!line || !starts_at(c, line->position + line->value_at))
        return false;
    read_so_far(c).*Value = from_line(line->text());
    return true;
}

/// "PPPAUTH: PAP=0"
inline bool take_authentication(const JobContext &c, const Found &found) {
    const auto line = found_line(found);
    if (line)
        read_so_far(c).pap = line->code(13) != '0';
    return line.has_value();
}

/// "CLIP 3: " is the last of the three lines; only the first two numbers have fields.
inline bool take_callers(const JobContext &c, const Found &found) {
    struct Caller {
        const char *label;
        std::string GprsSettings::*number;
    };
    constexpr Caller callers[] = {{"CLIP 1:", &GprsSettings::number1}, {"CLIP 2:", &GprsSettings::number2}};
    if (!found_line(found))
        return false;
    for (const Caller &caller : callers) {
        const auto line = labelled(found.all, caller.label);
        if (line && !starts_at(c, line->position + line->value_at))
            return false;
    }
    for (const Caller &caller : callers)
        if (const auto line = labelled(found.all, caller.label))
            read_so_far(c).*caller.number = from_line(line->text());
    return true;
}

/// "CALLBACK: 2,3,3"
inline bool take_callbacks(const JobContext &c, const Found &found) {
    constexpr std::size_t first = 10, second = 12;
    const auto line = found_line(found);
    if (!line || !starts_at(c, line->position + second))
        return false;
    read_so_far(c).callback1 = code_number(line->code(first));
    read_so_far(c).callback2 = code_number(line->code(second));
    return true;
}

/// "LL1: 2"
inline bool take_leased_line(const JobContext &c, const Found &found) {
    const auto line = found_line(found);
    if (!line || !starts_at(c, line->position + line->value_at))
        return false;
    read_so_far(c).leased_line = code_number(line->code(line->value_at));
    return true;
}

// A job whose dialog was closed meanwhile reads to its end; opening the dialog sets all its fields anew.
inline constexpr auto gprs_read = script(
    gprs_opening(3s, query(1, checking, "AT**IMEI?", {"IMEI: ", whole_imei}, 1500ms)),
    query(2, results_on, "ATQ0", {"OK"}),
    read(3, "Access Point Name wird gelesen", "AT**GPRSAPN?", {"GPRSAPN:", take_text<&GprsSettings::apn>}),
    read(4, "Benutzername lesen", "AT**PPPUSER?", {"PPPUSER:", take_text<&GprsSettings::user>}),
    secret_answer("PPPPW:", read(5, "GPRS-Passwort wird ausgelesen", "AT**PPPPW?",
                                 {"PPPPW:", take_text<&GprsSettings::password>})),
    read(6, "Authentifizierungsart wird gelesen", "AT**PPPAUTH?", {"PPPAUTH:", take_authentication}),
    read(7, "Ziel IP-Adresse auslesen", "AT**AUTOIP?", {"AUTOIP1:", take_text<&GprsSettings::ip>}),
    read(8, "Ziel IP Port wird einlesen", "AT**AUTOPORTIP?",
         {"AUTOPORTIP1:", take_text<&GprsSettings::ip_port>}),
    read(9, "Ziel Domain wird gelesen", "AT**AUTOURL?", {"AUTOURL1:", take_text<&GprsSettings::domain>}),
    read(10, "Ziel URL Port wird gelesen", "AT**AUTOPORTURL?",
         {"AUTOPORTURL1:", take_text<&GprsSettings::domain_port>}),
    read(11, "Rufannahmenkonfiguration wird gelesen", "AT**CLIP?", {"CLIP 3:", take_callers}),
    read(12, "Lesen des Callback Ziel", "AT**Callback?", {"CALLBACK:", take_callbacks}),
    read(13, "Keep Alive Intervall wird gelesen", "AT**KEEP?",
         {"KEEP:", take_text<&GprsSettings::keep_alive>}),
    read(14, "Leased-Line Einstellung lesen", "AT**LL?", {"LL1:", take_leased_line}),
    say("ATQ1", results_off, 2s), gprs_ending(read_out, OnFall::fails));

} // namespace telvox::dialogues
