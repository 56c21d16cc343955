#include "ui/frm_ip_over_ethernet.hpp"

namespace telvox {

FrmIPoEthernet::FrmIPoEthernet() : Form("frmIPoEthernet", "IP Adresse ändern") {
    tboNeue_IP.accepts = tboAlte_IP.accepts = digits_dot;
    tboMAC_Adresse1.read_only = true;
    tboMAC_Adresse1.max_length = 9;
    tboMAC_Adresse2.accepts = hexadecimal_dash;
    tboShell.read_only = tboShell.multi_line = true;
    prbFortschritt.maximum = network_progress;
    cancel = &cbuEthernet_Abbruch;
    cbuEthernet_Abbruch.clicked = [this] { unload(); };
    optIP_Erstkonfiguration.clicked = optIP_Aenderung.clicked = [this] { show_mode(); };
    reset();
}

void FrmIPoEthernet::show_mode() {
    const bool first = optIP_Erstkonfiguration.value;
    lblMAC_Adresse.visible = tboMAC_Adresse1.visible = tboMAC_Adresse2.visible = first;
    lblAlte_IP.visible = tboAlte_IP.visible = !first;
    cbuVerbindung_pruefen.caption =
        first ? "&Verbindung prüfen (neue IP)" : "&Verbindung prüfen (momentane IP)";
}

void FrmIPoEthernet::compute() {
    for (Button *button : {&cbuVerbindung_pruefen, &cbuEthernet_IP_aendern})
        button->enabled = !running;
}

void FrmIPoEthernet::reset() {
    for (TextBox *box : {&tboNeue_IP, &tboAlte_IP, &tboMAC_Adresse2, &tboShell})
        box->text.clear();
    tboMAC_Adresse1.text = "00-05-B6-";
    prbFortschritt.value = 0;
    optIP_Aenderung.choose();
}

} // namespace telvox
