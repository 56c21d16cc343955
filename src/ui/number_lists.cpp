#include "ui/number_lists.hpp"

#include "core/files/list_files.hpp"

namespace telvox {

namespace {

/// Fills a list with its entries; without any it says so instead of what the list is for.
void fill(ListBox &list, Label &explanation, const std::vector<ServiceNumber> &entries, const char *what_for,
          const char *nothing) {
    list.items.clear();
    for (const ServiceNumber &entry : entries)
        list.items.push_back(entry.label);
    list.selected = -1;
    explanation.caption = entries.empty() ? nothing : what_for;
}

/// The nearest entry from a position on in the direction of a step; behind the end of the list that the
/// other way.
int nearest_entry(const std::vector<ServiceNumber> &entries, int from, int step) {
    const int count = static_cast<int>(entries.size());
    for (const int direction : {step, -step})
        for (int at = from; at >= 0 && at < count; at += direction)
            if (!entries[static_cast<std::size_t>(at)].heading)
                return at;
    return -1;
}

/// The box takes of the number what it would take if it were typed.
void take_number(TextBox &box, const ServiceNumber &entry) {
    if (!entry.number.empty())
        box.text = box.filtered(entry.number);
}

} // namespace

FrmService_Center::FrmService_Center(TextBox &number, const DataFolders &folders)
    : Form("frmService_Center", "Service-Center Nr."), number_(number), folders_(folders) {
    lstSCNummer.clicked = [this](int before) { lstSCNummer_Click(before); };
    lstSCNummer.double_clicked = [this] { cbuOK_Click(); };
    cbuOK.clicked = [this] { cbuOK_Click(); };
}

void FrmService_Center::prz_ServiceCenterNummern_laden() {
    entries_ = parse_service_centers(read_lines(find_list_file(folders_.lists, "SCN.dat")));
    fill(lstSCNummer, lblErklaerung, entries_,
         "Über das Service-Center seines Mobilfunknetzes verschickt das Telvox-A seine SMS.\n"
         "Standardanbieter ist das Netz, aus dem die SIM-Karte stammt.",
         "Die Liste der Service-Center (SCN.dat) fehlt oder ist leer.\n"
         "Die Nummer kann im Hauptfenster eingetippt werden.");
}

void FrmService_Center::lstSCNummer_Click(int before) {
    lstSCNummer.selected =
        nearest_entry(entries_, lstSCNummer.selected, lstSCNummer.selected > before ? 1 : -1);
}

void FrmService_Center::cbuOK_Click() {
    if (lstSCNummer.selected >= 0)
        take_number(number_, entries_[static_cast<std::size_t>(lstSCNummer.selected)]);
    unload();
}

FrmServicenummer::FrmServicenummer(Session &session, TextBox &number, const DataFolders &folders)
    : Form("frmServicenummer", "SMS Servicepovider"), session_(session), number_(number), folders_(folders) {
    lstServicenummer.double_clicked = [this] { cbuOK_Click(); };
    cbuOK.clicked = [this] { cbuOK_Click(); };
}

void FrmServicenummer::prz_Servicenummern_laden() {
    entries_ = parse_service_numbers(read_lines(find_list_file(folders_.lists, "FSN.dat")));
    fill(lstServicenummer, lblErklaerung, entries_,
         "Über die Servicenummer nimmt das Festnetz die SMS des Telvox-A an.\n"
         "Standardanbieter ist Anny Way, der erste Eintrag. Er stellt nur das Protokoll ein; die Nummer "
         "bleibt, wie sie ist.",
         "Die Liste der Servicenummern (FSN.dat) fehlt oder ist leer.\n"
         "Die Nummer kann im Hauptfenster eingetippt werden.");
}

void FrmServicenummer::cbuOK_Click() {
    // The first entry is the standard provider, whose number the main window has by itself.
    if (lstServicenummer.selected >= 1) {
        const ServiceNumber &entry = entries_[static_cast<std::size_t>(lstServicenummer.selected)];
        take_number(number_, entry);
        session_.strSMS_Protokoll = entry.protocol;
        session_.strSMS_Protokoll_ISDN = entry.protocol_ISDN;
        session_.strSMS_Protokoll_ISDN_fern = entry.protocol_remote;
    } else {
        session_.strSMS_Protokoll = "M6";
    }
    unload();
}

} // namespace telvox
