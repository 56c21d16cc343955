#include "ui/frm_ipt.hpp"

namespace telvox {

namespace {
/// What the device has for both keys when it leaves the factory.
constexpr const char *default_key = "7305914862037519846203751984620375198462037519846203751984620399";
} // namespace

FrmIPT::FrmIPT() : Form("frmIPT", "IP-Telemetrie") {
    cbuDefault_Fix.clicked = [this] { tboFix_Scrambled_Key.text = default_key; };
    cbuDefault_Clg.clicked = [this] { tboClg_Scrambled_Key.text = default_key; };
    cancel = &cbuIPT_Abbrechen;
    cbuIPT_Abbrechen.clicked = [this] { unload(); };
    reset();
}

void FrmIPT::reset() {
    chkIPT_Betrieb.value = false;
    optUnscrambled.choose();
    tboBenutzer.text.clear();
    tboPasswort.text.clear();
    tboFix_Scrambled_Key.text = tboClg_Scrambled_Key.text = default_key;
}

} // namespace telvox
