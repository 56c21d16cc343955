#pragma once

#include "ui/frm_ethernet.hpp"

namespace telvox {

/// Gives an Ethernet module its address over the network: its first one by its MAC address, or a new one by
/// Telnet at the address that it has.
class FrmIPoEthernet : public Form {
  public:
    FrmIPoEthernet();

    /// The maker's part of all MAC addresses stands before what the user enters.
    [[nodiscard]] std::string mac() const { return tboMAC_Adresse1.text + tboMAC_Adresse2.text; }

    bool running = false; ///< an action of this window; the buttons that start one are off meanwhile
    void compute() override;

    Frame frmIP_aendern{*this, "frmIP_aendern", "IP Adresse ändern"};
    OptionButton optIP_Aenderung{*this, "optIP_Aenderung", "IP Ä&nderung", &frmIP_aendern};
    OptionButton optIP_Erstkonfiguration{*this, "optIP_Erstkonfiguration",
                                         "IP &Erstkonfiguration (momentane IP: 0.0.0.0)", &frmIP_aendern};
    Label lblNeue_IP{*this, "lblNeue_IP", "Neue I&P:", &frmIP_aendern};
    TextBox tboNeue_IP{*this, "tboNeue_IP", {}, &frmIP_aendern};
    Label lblIP_Format{*this, "lblIP_Format", ip_example, &frmIP_aendern};
    Label lblAlte_IP{*this, "lblAlte_IP", "&Momentane IP:", &frmIP_aendern};
    TextBox tboAlte_IP{*this, "tboAlte_IP", {}, &frmIP_aendern};
    Label lblMAC_Adresse{*this, "lblMAC_Adresse", "MAC-A&dresse:", &frmIP_aendern};
    TextBox tboMAC_Adresse1{*this, "tboMAC_Adresse1", {}, &frmIP_aendern};
    TextBox tboMAC_Adresse2{*this, "tboMAC_Adresse2", {}, &frmIP_aendern};
    Button cbuVerbindung_pruefen{*this, "cbuVerbindung_pruefen", {}, &frmIP_aendern};
    Button cbuEthernet_IP_aendern{*this, "cbuEthernet_IP_aendern", "&IP ändern"};
    Button cbuEthernet_Abbruch{*this, "cbuEthernet_Abbruch", "&Abbruch"};

    Frame frmStatus{*this, "frmStatus", "Status"};
    TextBox tboShell{*this, "tboShell", {}, &frmStatus}; ///< ping's answers and what the module says
    ProgressBar prbFortschritt{*this, "prbFortschritt", {}, &frmStatus};

    void reset() override;

  private:
    void show_mode();
};

} // namespace telvox
