#include "ui/frm_ipt.hpp"

#include "ui/frm_modem.hpp"

namespace telvox {

namespace {

/// What the device has for both keys when it leaves the factory.
constexpr const char *default_key = "7305914862037519846203751984620375198462037519846203751984620399";

} // namespace

FrmIPT::FrmIPT(const FrmModem &main) : Form("frmIPT", "IP-Telemetrie"), main_(main) {
    tboBenutzer.max_length = tboPasswort.max_length = 63;
    for (TextBox *box : {&tboPasswort, &tboFix_Scrambled_Key, &tboClg_Scrambled_Key})
        box->secret = true;
    tboFix_Scrambled_Key.max_length = tboClg_Scrambled_Key.max_length = 128;
    cbuDefault_Fix.clicked = [this] { tboFix_Scrambled_Key.text = default_key; };
    cbuDefault_Clg.clicked = [this] { tboClg_Scrambled_Key.text = default_key; };
    cbuIPT_lesen.tool_tip = "Nur per Direktverbindung möglich";
    cbuIPT_vergleichen.tool_tip =
        "Liest das Gerät und zeigt, was anders ist als hier; die Felder bleiben, wie sie sind.";
    chkIPT_pruefen.tool_tip =
        "Wartet nach dem Schreiben, bis das Gerät wieder da ist, liest es und vergleicht.";
    chkIPT_pruefen.recorded = false; // the job that it leads to is
    cancel = &cbuIPT_Abbrechen;
}

void FrmIPT::reset() {
    chkIPT_Betrieb.value = chkIPT_pruefen.value = false;
    optUnscrambled.choose();
    tboBenutzer.text.clear();
    tboPasswort.text.clear();
    tboFix_Scrambled_Key.text = tboClg_Scrambled_Key.text = default_key;
    unlock();
}

IptSettings FrmIPT::settings() const {
    return {.user = tboBenutzer.text,
            .password = tboPasswort.text,
            .fixed_key = tboFix_Scrambled_Key.text,
            .challenge_key = tboClg_Scrambled_Key.text,
            .mode = !chkIPT_Betrieb.value  ? 0
                    : optUnscrambled.value ? 2
                                           : 3};
}

void FrmIPT::show(const IptSettings &read) {
    tboBenutzer.text = tboBenutzer.filtered(read.user);
    tboPasswort.text = tboPasswort.filtered(read.password);
    tboFix_Scrambled_Key.text = tboFix_Scrambled_Key.filtered(read.fixed_key);
    tboClg_Scrambled_Key.text = tboClg_Scrambled_Key.filtered(read.challenge_key);
    if (read.mode == 0 || read.mode == 2 || read.mode == 3)
        chkIPT_Betrieb.set(read.mode != 0);
    if (read.mode == 2 || read.mode == 3)
        (read.mode == 2 ? optUnscrambled : optScrambled).choose();
}

std::vector<std::string> FrmIPT::differences(const IptSettings &read) const {
    const IptSettings shown = settings();
    struct Text {
        const char *name;
        std::string IptSettings::*value;
    };
    constexpr Text texts[] = {{"Benutzer", &IptSettings::user},
                              {"Passwort", &IptSettings::password},
                              {"Fixed Scramble Key", &IptSettings::fixed_key},
                              {"Challenge Scramble Key", &IptSettings::challenge_key}};
    std::vector<std::string> names;
    for (const auto &[field, value] : texts)
        if (shown.*value != read.*value)
            names.emplace_back(field);
    if (shown.mode != read.mode)
        names.emplace_back("IP-Telemetrie Betrieb");
    return names;
}

void FrmIPT::lock(Lock what) {
    locked_ = what;
    compute();
}

void FrmIPT::compute() {
    const bool unlocked = locked_ == Lock::none;
    chkIPT_Betrieb.enabled = unlocked;
    const bool login = unlocked && chkIPT_Betrieb.value;
    for (Control *control :
         std::initializer_list<Control *>{&fraIPT_Login, &lblBenutzer, &tboBenutzer, &lblPasswort,
                                          &tboPasswort, &fraScramble, &optUnscrambled, &optScrambled})
        control->enabled = login;
    const bool keys = login && optScrambled.value;
    for (Control *control :
         std::initializer_list<Control *>{&lblFix_Scrambled_Key, &tboFix_Scrambled_Key, &cbuDefault_Fix,
                                          &lblClg_Scrambled_Key, &tboClg_Scrambled_Key, &cbuDefault_Clg})
        control->enabled = keys;
    cbuIPT_schreiben.enabled = locked_ != Lock::buttons;
    cbuIPT_lesen.enabled = cbuIPT_vergleichen.enabled = chkIPT_pruefen.enabled =
        locked_ != Lock::buttons && !main_.optFernverbindung.value;
}

} // namespace telvox
