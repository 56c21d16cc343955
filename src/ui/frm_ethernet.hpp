#pragma once

#include "ui/form.hpp"

namespace telvox {

/// An example of an IP address, below the fields that take one.
inline constexpr const char *ip_example = "(Beispiel: 192.168.0.100)";
/// A full bar of the dialogs that work over the network: ten seconds, the longest a ping may take.
inline constexpr int network_progress = 20;

/// Sets the Ethernet module's IP address and TCP port over the cable.
class FrmEthernet : public Form {
  public:
    FrmEthernet() : Form("frmEthernet", "IP und Port") {
        tboIP.accepts = digits_dot;
        tboPort.accepts = digits;
        cancel = &cbuEthernet_Abbruch;
        cbuEthernet_Abbruch.clicked = [this] { unload(); };
        reset();
    }

    Label lblIP{*this, "lblIP", "&IP:"};
    TextBox tboIP{*this, "tboIP"};
    Label lblIP_Format{*this, "lblIP_Format", ip_example};
    Label lblPort{*this, "lblPort", "&Port:"};
    TextBox tboPort{*this, "tboPort"};
    Button cbuEthernet_Konfigurieren{*this, "cbuEthernet_Konfigurieren", "&Konfiguration übertragen"};
    Button cbuEthernet_Abbruch{*this, "cbuEthernet_Abbruch", "&Abbruch"};

    void reset() override {
        tboIP.text.clear();
        tboPort.text = "1234";
    }
};

} // namespace telvox
