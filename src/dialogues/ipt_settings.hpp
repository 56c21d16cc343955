#pragma once

#include "dialogues/gprs_steps.hpp"
#include "dialogues/parsers.hpp"

#include <string>

/// The jobs of the IP-telemetry dialog: writing the settings and reading them.
namespace telvox::dialogues {

template <auto Value> std::string ipt(const JobContext &c) { return c.values.ipt.*Value; }

inline constexpr auto ipt_write = script(
    gprs_opening(3s, check(checking, 3s, &JobState::boolKommunikations_Fehler75)),
    tell({"AT**IPTUSER=", ipt<&IptSettings::user>}, "IP-Telemetrie Benutzer wird eingestellt", 3s),
    secret(tell({"AT**IPTPW=", ipt<&IptSettings::password>}, "IP-Telemetrie Passwort wird eingestellt", 3s)),
    tell("AT**IPTCONREQ=1", "Link wird eingestellt", 1800ms),
    tell("AT**IPTWATCHDOG=0", "Watchdog wird eingestellt", 1800ms),
    tell({"AT**IPT=", [](const JobContext &c) { return std::to_string(c.values.ipt.mode); }},
         "IPT-Betriebsart wird eingestellt", 1800ms),
    secret(
        tell({"AT**IPTKEYF=", ipt<&IptSettings::fixed_key>}, "Fixed Scramble Key wird eingestellt", 1800ms)),
    secret(tell({"AT**IPTKEYC=", ipt<&IptSettings::challenge_key>}, "Challenge Scramble Key wird eingestellt",
                1800ms)),
    tell("AT**SAVE", "Einstellungen speichern", 1500ms),
    check_and_restart(3s, &JobState::boolKommunikations_Fehler76),
    gprs_ending(written_and_restarting, OnFall::skipped));

/// One answer holds all settings, the challenge key last.
inline bool take_ipt(const JobContext &c, const Found &found) {
    struct Field {
        const char *label;
        std::string IptSettings::*value;
    };
    constexpr Field fields[] = {{"IPTUSER:", &IptSettings::user},
                                {"IPTPW:", &IptSettings::password},
                                {"IPTKEYF:", &IptSettings::fixed_key},
                                {"IPTKEYC:", &IptSettings::challenge_key}};
    if (!labelled(found.all, "IPTKEYC:"))
        return false;
    IptSettings &read = c.findings.ipt.emplace(c.values.ipt);
    for (const auto &[label, value] : fields)
        if (const auto line = labelled(found.all, label))
            read.*value = from_line(line->text());
    if (const auto mode = labelled(found.all, "IPT:"))
        read.mode = code_number(mode->code(mode->value_at));
    return true;
}

inline constexpr auto ipt_read =
    script(gprs_opening(3s, query(15, checking, "AT**IMEI?", {"IMEI: ", whole_imei}, 3s)),
           query(16, results_on, "ATQ0", {"OK"}),
           secret_answer("IPTPW: IPTKEYF: IPTKEYC:", read(17, "IT-Telemetrie Parameter werden gelesen",
                                                          "AT**IPT?", {"IPTKEYC:", take_ipt})),
           say("ATQ1", results_off, 2s), gprs_ending(read_out, OnFall::fails));

} // namespace telvox::dialogues
