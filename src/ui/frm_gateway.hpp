#pragma once

#include "ui/frm_ethernet.hpp"

namespace telvox {

/// Sets the Ethernet module's gateway and netmask, over the network or over the cable.
class FrmGateway : public Form {
  public:
    FrmGateway() : Form("frmGateway", "Gateway und Netzmaske") {
        for (TextBox *box : {&tboIP, &tboGateway, &tboNetzmaske})
            box->accepts = digits_dot;
        tboShell.read_only = tboShell.multi_line = true;
        prbFortschritt.maximum = network_progress;
        cancel = &cbuEthernet_GW_Abbruch;
        cbuEthernet_GW_Abbruch.clicked = [this] { unload(); };
        reset();
    }

    bool running = false; ///< an action of this window; the buttons that start one are off meanwhile
    void compute() override {
        for (Button *button : {&cbuVerbindung_pruefen, &cbuEthernet_GW_Konfigurieren, &cbuEthernet_GW_Kabel})
            button->enabled = !running;
    }

    Label lblIP{*this, "lblIP", "&IP-Adresse:"};
    TextBox tboIP{*this, "tboIP"};
    Label lblIP_Format{*this, "lblIP_Format", ip_example};
    Button cbuVerbindung_pruefen{*this, "cbuVerbindung_pruefen", "Verbindung &prüfen (Ping zur IP)"};
    Label lblGateway{*this, "lblGateway", "&Gateway:"};
    TextBox tboGateway{*this, "tboGateway"};
    Label lblNetzmaske{*this, "lblNetzmaske", "&Netzmaske:"};
    TextBox tboNetzmaske{*this, "tboNetzmaske"};
    Label lblEthernet_Hinweis{
        *this, "lblEthernet_Hinweis",
        "Diese Standard-Einstellungen sollten nur von erfahrenen Benutzern geändert werden."};
    Button cbuEthernet_GW_Konfigurieren{*this, "cbuEthernet_GW_Konfigurieren", "&Konfiguration übertragen"};
    Button cbuEthernet_GW_Kabel{*this, "cbuEthernet_GW_Kabel", "Konfiguration über Ka&bel übertragen"};
    Button cbuEthernet_GW_Abbruch{*this, "cbuEthernet_GW_Abbruch", "&Abbruch"};

    Frame fraStatus{*this, "fraStatus", "Status"};
    TextBox tboShell{*this, "tboShell", {}, &fraStatus}; ///< ping's answers and what the module says
    ProgressBar prbFortschritt{*this, "prbFortschritt", {}, &fraStatus};

    void reset() override {
        tboIP.text.clear();
        tboGateway.text = "0.0.0.0";
        tboNetzmaske.text = "255.255.255.0";
        tboShell.text.clear();
        prbFortschritt.value = 0;
    }
};

} // namespace telvox
