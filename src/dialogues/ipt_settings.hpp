#pragma once

#include "dialogues/gprs_steps.hpp"
#include "dialogues/parsers.hpp"

#include <string>

/// The jobs of the IP-telemetry dialog: writing the settings and reading them.
namespace telvox::dialogues {

inline constexpr auto ipt_write =
    table(gprs_opening(3s), check_after_opening(checking, 3s, &JobState::boolKommunikations_Fehler75),
          command(
              5, "IP-Telemetrie Benutzer wird eingestellt",
              [](const Desk &d) { return "AT**IPTUSER=" + d.session.ipt.user; }, 3s),
          command(
              6, "IP-Telemetrie Passwort wird eingestellt",
              [](const Desk &d) { return "AT**IPTPW=" + d.session.ipt.password; }, 3s),
          command(7, "Link wird eingestellt", "AT**IPTCONREQ=1", 1800ms),
          command(8, "Watchdog wird eingestellt", "AT**IPTWATCHDOG=0", 1800ms),
          command(
              9, "IPT-Betriebsart wird eingestellt",
              [](const Desk &d) { return "AT**IPT=" + std::to_string(d.session.ipt.mode); }, 1800ms),
          command(
              10, "Fixed Scramble Key wird eingestellt",
              [](const Desk &d) { return "AT**IPTKEYF=" + d.session.ipt.fixed_key; }, 1800ms),
          command(
              11, "Challenge Scramble Key wird eingestellt",
              [](const Desk &d) { return "AT**IPTKEYC=" + d.session.ipt.challenge_key; }, 1800ms),
          command(12, "Einstellungen speichern", "AT**SAVE", 1500ms),
          check_and_restart(13, 3s, &JobState::boolKommunikations_Fehler76),
          gprs_ending(15, written_and_restarting, OnFall::skipped));

/// One answer holds all settings, the challenge key last.
inline bool fill_ipt(Desk &desk, const Found &found) {
    struct Field {
        const char *label;
        TextBox FrmIPT::*box;
    };
    constexpr Field fields[] = {{"IPTUSER:", &FrmIPT::tboBenutzer},
                                {"IPTPW:", &FrmIPT::tboPasswort},
                                {"IPTKEYF:", &FrmIPT::tboFix_Scrambled_Key},
                                {"IPTKEYC:", &FrmIPT::tboClg_Scrambled_Key}};
    FrmIPT &form = desk.frmIPT;
    if (!labelled(found.all, "IPTKEYC:"))
        return false;
    for (const Field &field : fields)
        if (const auto line = labelled(found.all, field.label))
            write_value(form.*field.box, line->text());
    const auto mode = labelled(found.all, "IPT:");
    const char code = mode ? mode->code(mode->value_at) : '\0';
    if (code == '0' || code == '2' || code == '3')
        form.chkIPT_Betrieb.set(code != '0');
    if (code == '2' || code == '3')
        (code == '2' ? form.optUnscrambled : form.optScrambled).choose();
    return true;
}

inline constexpr auto ipt_queries = std::to_array<Query>({
    {4, 15, checking, "AT**IMEI?", "IMEI: ", whole_imei, 3s, OnFall::reported},
    {5, 16, results_on, "ATQ0", "OK"},
    {6, 17, "IT-Telemetrie Parameter werden gelesen", "AT**IPT?", "IPTKEYC:", fill_ipt},
});

inline constexpr auto ipt_read =
    table(gprs_opening(3s), query_steps(ipt_queries), command(7, results_off, "ATQ1", 2s),
          gprs_ending(8, read_out, OnFall::fails));

} // namespace telvox::dialogues
