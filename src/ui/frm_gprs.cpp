#include "ui/frm_gprs.hpp"

namespace telvox {

FrmGPRS::FrmGPRS() : Form("frmGPRS", "GPRS") {
    cobAPN.editable = true;
    cancel = &cbuGPRS_Abbrechen;
    cbuGPRS_Abbrechen.clicked = [this] { unload(); };
    reset();
}

void FrmGPRS::reset() {
    cobAPN.text.clear();
    for (TextBox *box : {&tboBenutzername, &tboPasswort, &tboIP, &tboDomain, &tboNummer1, &tboNummer2})
        box->text.clear();
    tboIP_Port.text = tboDomain_Port.text = "1234";
    tboKeepAlive.text = "0"; // as the device leaves the factory
    for (OptionButton *option : {&optPPP_kein, &optStandleitung_aus, &optCallback1_kein, &optCallback2_kein})
        option->choose();
}

} // namespace telvox
