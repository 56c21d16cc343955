#include "ui/frm_einstellungen.hpp"

#include "core/serial_format.hpp"

#include <algorithm>
#include <array>

namespace telvox {

namespace {

constexpr std::array parities = {"even", "odd", "none"};

/// Puts a rate into a list that has only the usual ones, at its place.
void add_rate(ComboBox &list, int rate) {
    const auto place = std::find_if(list.items.begin(), list.items.end(),
                                    [&](const std::string &item) { return std::stoi(item) >= rate; });
    if (place == list.items.end() || std::stoi(*place) != rate)
        list.items.insert(place, std::to_string(rate));
}

/// Chooses an entry that the list has.
void choose(ComboBox &list, std::string_view entry) {
    if (std::find(list.items.begin(), list.items.end(), entry) != list.items.end())
        list.text = entry;
}

} // namespace

std::string SerialCombos::settings() const {
    return baud.text + "," + parity.text.substr(0, 1) + "," + bits.text.substr(0, 1) + "," + stop.text;
}

void SerialCombos::show(std::string_view settings) {
    if (settings.find(',') == std::string_view::npos)
        return;
    std::array<std::string_view, 4> field;
    for (std::string_view &part : field) {
        const auto comma = settings.find(',');
        part = settings.substr(0, comma);
        settings.remove_prefix(comma == std::string_view::npos ? settings.size() : comma + 1);
    }
    choose(baud, field[0]);
    for (const std::string_view name : parities)
        if (field[1] == name.substr(0, 1))
            choose(parity, name);
    choose(bits, field[2]);
    choose(stop, field[3]);
}

FrmEinstellungen::FrmEinstellungen(Session &session, const ComboBox &cable_port)
    : Form("frmEinstellungen", "Schnittstellen Einstellungen"), session_(session), cable_port_(cable_port) {
    for (const SerialCombos *line : {&direkt, &fern, &soll}) {
        for (const int rate : device_rates)
            line->baud.items.push_back(std::to_string(rate));
        line->bits.items = {"7", "8"};
        line->parity.items = {parities.begin(), parities.end()};
        line->stop.items = {"1", "2"};
    }
    // The slowest rates are the devices' only.
    cobModem_Baudrate.items.erase(cobModem_Baudrate.items.begin(), cobModem_Baudrate.items.begin() + 3);

    cbuDirekt_Standard.clicked = [this] {
        session_.strCOMparameter_direkt = default_direkt;
        prz_Parameter_direkt();
    };
    cbuModem_Standard.clicked = [this] {
        session_.strCOMparameter_fern = default_fern;
        prz_Parameter_Modem();
    };
    cboSchnittstelle_aendern.clicked = [this] { przSchnittstelle_aendern(); };
    chkVerlauf.tool_tip =
        "Schreibt jeden Vorgang, der zu Ende ist, in verlauf.csv; „Datei“, „Verlauf…“ zeigt ihn.";
    chkWie_zuletzt.tool_tip =
        "Ausführung, Schnittstelle, Fenstergröße und Profil sind beim nächsten Start wieder da.";
    cancel = &cmdCancel;
    reset();
}

void FrmEinstellungen::reset() {
    cboSchnittstelle_aendern.set(false);
    soll.show(default_direkt);
    show_session();
    enable_inputs(true);
    unsaved_ = false;
}

void FrmEinstellungen::show_session() {
    direkt.show(default_direkt);
    fern.show(default_fern);
    prz_Parameter_Modem();
    prz_Parameter_direkt();
}

/// Settings that somebody wrote into the file for his modem hold, also where the list lacks their rate.
void FrmEinstellungen::prz_Parameter_Modem() {
    if (const auto format = parse_format(session_.strCOMparameter_fern))
        add_rate(cobModem_Baudrate, format->baud);
    fern.show(session_.strCOMparameter_fern);
}

void FrmEinstellungen::device_changed() {
    prz_Parameter_direkt();
    unsaved_ = true;
}

void FrmEinstellungen::przSchnittstelle_aendern() {
    fraSchnittstellen_Einstellung_soll.visible = cboSchnittstelle_aendern.value;
    cmdUART_Einstellung_aendern.visible = cboSchnittstelle_aendern.value;
}

void FrmEinstellungen::enable_inputs(bool on) {
    tabOptions.enabled = chkVerlauf.enabled = chkWie_zuletzt.enabled = cmdOK.enabled = on;
    cboSchnittstelle_aendern.enabled = on && !cable_port_.text.empty();
}

} // namespace telvox
