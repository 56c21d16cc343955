#include "ui/frm_gprs.hpp"

#include "core/files/list_files.hpp"
#include "core/text.hpp"
#include "link/mask.hpp"
#include "ui/frm_modem.hpp"

namespace telvox {

namespace {

constexpr std::size_t longest_name = 63;   ///< access point, user, password
constexpr std::size_t longest_entry = 255; ///< of the provider list
constexpr std::size_t shortest_label = 4;  ///< of a provider
constexpr unsigned longest_keep_alive = 255;

/// What stands behind a label up to an end character, or to the end of the text.
std::optional<std::string> part(std::string_view text, std::string_view label, char end) {
    const auto at = text.find(label);
    if (at == std::string_view::npos)
        return std::nullopt;
    const std::string_view rest = text.substr(at + label.size());
    return std::string(rest.substr(0, rest.find(end)));
}

/// An entry of the provider list without its password.
std::string without_password(const std::string &text) {
    const std::string password = parse_access_point(text).password.value_or("");
    std::string shown = text;
    return password.empty() ? shown : shown.replace(shown.find("pw:") + 3, password.size(), Mask::hidden);
}

/// A target as the device's code.
int target(const OptionButton &by_address, const OptionButton &by_domain) {
    return by_address.value ? 2 : by_domain.value ? 3 : 0;
}

void choose_target(int code, OptionButton &off, OptionButton &by_address, OptionButton &by_domain) {
    if (code == 0 || code == 2 || code == 3)
        (code == 0 ? off : code == 2 ? by_address : by_domain).choose();
}

} // namespace

AccessPoint parse_access_point(std::string_view text) {
    const std::string_view behind_label = text.substr(first_characters(text, shortest_label).size());
    const auto apn = part(behind_label, ": ", ' ');
    if (!apn)
        return {.apn = std::string(text)};
    AccessPoint entry{.apn = *apn, .from_list = true, .user = part(text, "user:", ' ')};
    if (entry.user)
        entry.password = part(text, "pw:", ')');
    return entry;
}

FrmGPRS::FrmGPRS(Session &session, const FrmModem &main, const DataFolders &folders)
    : Form("frmGPRS", "GPRS"), session_(session), main_(main), folders_(folders) {
    cobAPN.editable = true;
    cobAPN.recorded = without_password;
    tboPasswort.secret = true;
    cobAPN.max_length = longest_entry;
    cobAPN.changed = [this] { prz_GPRS_Benutzerdaten_selektieren(); };
    tboBenutzername.max_length = tboPasswort.max_length = longest_name;
    tboIP.accepts = digits_dot;
    tboIP.max_length = 15;
    tboDomain.max_length = 253;
    for (TextBox *port : {&tboIP_Port, &tboDomain_Port}) {
        port->accepts = digits;
        port->max_length = 5;
    }
    tboKeepAlive.accepts = digits;
    tboKeepAlive.lost_focus = [this] {
        if (tboKeepAlive.text.empty())
            tboKeepAlive.text = "0";
        limit_keep_alive();
    };
    for (TextBox *number : {&tboNummer1, &tboNummer2}) {
        number->accepts = digits_plus;
        number->max_length = 20;
        number->tool_tip =
            "Die freigegebene Nummer muss exakt in dem Format eingegeben werden, wie sie bei der "
            "Rufnummernübermittelung ausgegeben wird. Meist +49...";
    }
    fraCallback1.spoken_name = "Callback bei der 1. Nummer";
    fraCallback2.spoken_name = "Callback bei der 2. Nummer";
    cbuGPRS_lesen.tool_tip = "Nur per Direktverbindung möglich";
    cbuGPRS_vergleichen.tool_tip =
        "Liest das Gerät und zeigt, was anders ist als hier; die Felder bleiben, wie sie sind.";
    chkGPRS_pruefen.tool_tip =
        "Wartet nach dem Schreiben, bis das Gerät wieder da ist, liest es und vergleicht.";
    chkGPRS_pruefen.recorded = false; // the job that it leads to is
    cancel = &cbuGPRS_Abbrechen;
}

void FrmGPRS::reset() {
    locked_ = chkGPRS_pruefen.value = false;
    prz_GPRS_Zugangsdaten_laden();
    cobAPN.text.clear();
    session_.strGRPS_APN.clear();
    for (TextBox *box : {&tboBenutzername, &tboPasswort, &tboIP, &tboDomain, &tboNummer1, &tboNummer2})
        box->text.clear();
    tboIP_Port.text = tboDomain_Port.text = "1234";
    tboKeepAlive.text = "0"; // as the device leaves the factory
    for (OptionButton *option : {&optPPP_kein, &optStandleitung_aus, &optCallback1_kein, &optCallback2_kein})
        option->choose();
    compute();
}

void FrmGPRS::prz_GPRS_Zugangsdaten_laden() {
    cobAPN.items.clear();
    for (const std::string &line : read_lines(find_list_file(folders_.lists, "gprsapn.dat")))
        cobAPN.items.push_back(cobAPN.filtered(line));
}

void FrmGPRS::prz_GPRS_Benutzerdaten_selektieren() {
    const AccessPoint chosen = parse_access_point(cobAPN.text);
    session_.strGRPS_APN = first_characters(chosen.apn, longest_name);
    if (!chosen.from_list) {
        cobAPN.text = session_.strGRPS_APN; // what is shown is what the device gets
        return;
    }
    if (chosen.user)
        tboBenutzername.text = tboBenutzername.filtered(*chosen.user);
    if (chosen.password)
        tboPasswort.text = tboPasswort.filtered(*chosen.password);
    (tboBenutzername.text.empty() ? optPPP_kein : optPPP_PAP).choose();
}

GprsSettings FrmGPRS::settings() const {
    return {.apn = session_.strGRPS_APN,
            .user = tboBenutzername.text,
            .password = tboPasswort.text,
            .ip = tboIP.text,
            .ip_port = tboIP_Port.text,
            .domain = tboDomain.text,
            .domain_port = tboDomain_Port.text,
            .number1 = tboNummer1.text,
            .number2 = tboNummer2.text,
            .keep_alive = tboKeepAlive.text,
            .pap = optPPP_PAP.value,
            .callback1 = target(optCallback1_IP, optCallback1_Domain),
            .callback2 = target(optCallback2_IP, optCallback2_Domain),
            .leased_line = target(optStandleitung_IP, optStandleitung_Domain)};
}

void FrmGPRS::show(const GprsSettings &read) {
    struct Field {
        TextBox &box;
        const std::string &value;
    };
    cobAPN.write(read.apn); // first: an entry of the list would bring user and password
    for (const auto &[box, value] :
         {Field{tboBenutzername, read.user}, Field{tboPasswort, read.password}, Field{tboIP, read.ip},
          Field{tboIP_Port, read.ip_port}, Field{tboDomain, read.domain},
          Field{tboDomain_Port, read.domain_port}, Field{tboNummer1, read.number1},
          Field{tboNummer2, read.number2}, Field{tboKeepAlive, read.keep_alive}})
        box.text = box.filtered(value);
    (read.pap ? optPPP_PAP : optPPP_kein).choose();
    choose_target(read.callback1, optCallback1_kein, optCallback1_IP, optCallback1_Domain);
    choose_target(read.callback2, optCallback2_kein, optCallback2_IP, optCallback2_Domain);
    choose_target(read.leased_line, optStandleitung_aus, optStandleitung_IP, optStandleitung_Domain);
}

std::vector<std::string> FrmGPRS::differences(const GprsSettings &read) const {
    const GprsSettings shown = settings();
    struct Text {
        const char *name;
        std::string GprsSettings::*value;
    };
    struct Code {
        const char *name;
        int GprsSettings::*value;
    };
    constexpr Text texts[] = {{"APN", &GprsSettings::apn},
                              {"Benutzername", &GprsSettings::user},
                              {"Passwort", &GprsSettings::password},
                              {"IP-Adresse", &GprsSettings::ip},
                              {"Port der IP-Adresse", &GprsSettings::ip_port},
                              {"Domain-Name", &GprsSettings::domain},
                              {"Port der Domain", &GprsSettings::domain_port},
                              {"1. Nummer", &GprsSettings::number1},
                              {"2. Nummer", &GprsSettings::number2},
                              {"Keep Alive Timer", &GprsSettings::keep_alive}};
    constexpr Code codes[] = {{"Callback der 1. Nummer", &GprsSettings::callback1},
                              {"Callback der 2. Nummer", &GprsSettings::callback2},
                              {"Standleitungsbetrieb", &GprsSettings::leased_line}};
    std::vector<std::string> names;
    for (const auto &[field, value] : texts)
        if (shown.*value != read.*value)
            names.emplace_back(field);
    for (const auto &[field, value] : codes)
        if (shown.*value != read.*value)
            names.emplace_back(field);
    return names;
}

bool FrmGPRS::uses_ip() const {
    return optCallback1_IP.value || optCallback2_IP.value || optStandleitung_IP.value;
}

bool FrmGPRS::uses_domain() const {
    return optCallback1_Domain.value || optCallback2_Domain.value || optStandleitung_Domain.value;
}

void FrmGPRS::limit_keep_alive() {
    if (number_exceeds(tboKeepAlive.text, longest_keep_alive))
        tboKeepAlive.text = std::to_string(longest_keep_alive);
}

void FrmGPRS::lock() {
    locked_ = true;
    compute();
}

void FrmGPRS::unlock() {
    locked_ = false;
    compute();
}

void FrmGPRS::compute() {
    Control *const inputs[] = {&cobAPN,
                               &optPPP_kein,
                               &optPPP_PAP,
                               &tboIP,
                               &tboIP_Port,
                               &tboDomain,
                               &tboDomain_Port,
                               &tboNummer1,
                               &tboNummer2,
                               &optCallback1_kein,
                               &optCallback1_IP,
                               &optCallback1_Domain,
                               &optCallback2_kein,
                               &optCallback2_IP,
                               &optCallback2_Domain,
                               &optStandleitung_aus,
                               &optStandleitung_IP,
                               &optStandleitung_Domain,
                               &tboKeepAlive,
                               &cbuGPRS_schreiben};
    for (Control *input : inputs)
        input->enabled = !locked_;
    lblBenutzername.enabled = lblPasswort.enabled = optPPP_PAP.value;
    tboBenutzername.enabled = tboPasswort.enabled = !locked_ && optPPP_PAP.value;
    cbuGPRS_lesen.enabled = cbuGPRS_vergleichen.enabled = chkGPRS_pruefen.enabled =
        !locked_ && !main_.optFernverbindung.value;
}

} // namespace telvox
