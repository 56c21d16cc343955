#include "operation/sent_settings.hpp"

#include "core/text.hpp"

namespace telvox::operation {

namespace {

/// What a row takes its value from: the copy that the job works with, and the network dialogs' fields.
struct From {
    const JobValues &values;
    const Desk &desk;
};

struct Row {
    const char *caption;
    std::string (*value)(const From &);
    bool (*when)(const From &) = [](const From &) { return true; };
    bool secret = false;
};

template <auto Field> std::string text(const From &f) { return f.values.*Field; }
template <auto Form, auto Box> std::string field(const From &f) { return (f.desk.*Form.*Box).text; }
template <auto Field> std::string gprs(const From &f) { return f.values.gprs.*Field; }
template <auto Field> std::string ipt(const From &f) { return f.values.ipt.*Field; }
template <auto Field> std::string target(const From &f) {
    const int code = f.values.gprs.*Field;
    return code == 0   ? "aus"
           : code == 2 ? "zur IP-Adresse"
           : code == 3 ? "zum Domain-Namen"
                       : "Code " + std::to_string(code);
}

template <auto Field> std::string callback(const From &f) {
    return f.values.gprs.*Field == 0 ? "kein" : target<Field>(f);
}

bool by_line(const From &f) { return f.values.type == ModemType::Analog || f.values.type == ModemType::ISDN; }
bool by_sms(const From &f) { return f.values.type != ModemType::Analog || f.values.by_sms; }
bool first_address(const From &f) { return f.desk.frmIPoEthernet.optIP_Erstkonfiguration.value; }

constexpr Row alarm[] = {
    {"Nachrichten Typ", [](const From &f) { return std::string(f.values.by_sms ? "SMS" : "Fax"); }, by_line},
    {"Zeichen zur Amtsholung", text<&JobValues::outside_line>,
     [](const From &f) { return by_line(f) && !f.values.outside_line.empty(); }},
    {"Service-Center Nummer", text<&JobValues::service_number>, by_sms},
    {"Nummer des Empfängers", text<&JobValues::receiver>},
    {"Alarmmeldung", [](const From &f) { return from_line(to_line(func_Text_prüfen(f.values.alarm_text))); }},
};
constexpr Row pin[] = {{.caption = "PIN", .value = text<&JobValues::strPIN>, .secret = true}};
constexpr Row msn[] = {{"MSN", text<&JobValues::strMSN>}};
constexpr Row line_type[] = {{"Anschlussart", [](const From &f) {
                                  return std::string(f.values.byteISDN_Anschlussart == 0
                                                         ? "Punkt zu Mehrpunkt, Mehrgeräteanschluss"
                                                         : "Punkt zu Punkt, Anlagenanschluss");
                              }}};
constexpr Row mobile_data[] = {
    {"APN", gprs<&GprsSettings::apn>},
    {"PPP-Authentifizierung", [](const From &f) { return std::string(f.values.gprs.pap ? "PAP" : "keine"); }},
    {"Benutzername", gprs<&GprsSettings::user>},
    {.caption = "Passwort", .value = gprs<&GprsSettings::password>, .secret = true},
    {"IP-Adresse", gprs<&GprsSettings::ip>},
    {"Port der IP-Adresse", gprs<&GprsSettings::ip_port>},
    {"Domain-Name", gprs<&GprsSettings::domain>},
    {"Port der Domain", gprs<&GprsSettings::domain_port>},
    {"1. Nummer", gprs<&GprsSettings::number1>},
    {"Callback der 1. Nummer", callback<&GprsSettings::callback1>},
    {"2. Nummer", gprs<&GprsSettings::number2>},
    {"Callback der 2. Nummer", callback<&GprsSettings::callback2>},
    {"Standleitungsbetrieb", target<&GprsSettings::leased_line>},
    {"Keep Alive Timer (Minuten)", gprs<&GprsSettings::keep_alive>},
};
constexpr Row telemetry[] = {
    {"IP-Telemetrie Betrieb",
     [](const From &f) {
         const int mode = f.values.ipt.mode;
         return std::string(mode == 0   ? "aus"
                            : mode == 2 ? "ein"
                            : mode == 3 ? "ein, verschleiert"
                                        : "unbekannt");
     }},
    {"Benutzer", ipt<&IptSettings::user>},
    {.caption = "Passwort", .value = ipt<&IptSettings::password>, .secret = true},
    {.caption = "Fixed Scramble Key", .value = ipt<&IptSettings::fixed_key>, .secret = true},
    {.caption = "Challenge Scramble Key", .value = ipt<&IptSettings::challenge_key>, .secret = true},
};
constexpr Row address[] = {{"IP-Adresse", text<&JobValues::str_IP>}, {"Port", text<&JobValues::str_Port>}};
constexpr Row gateway[] = {{"Gateway", text<&JobValues::str_Gateway>},
                           {"Netzmaske", text<&JobValues::str_Netzmaske>}};
constexpr Row network_gateway[] = {
    {"IP-Adresse des Geräts", field<&Desk::frmGateway, &FrmGateway::tboIP>},
    {"Gateway", field<&Desk::frmGateway, &FrmGateway::tboGateway>},
    {"Netzmaske", field<&Desk::frmGateway, &FrmGateway::tboNetzmaske>},
};
constexpr Row network_address[] = {
    {"Neue IP", field<&Desk::frmIPoEthernet, &FrmIPoEthernet::tboNeue_IP>},
    {"Bisherige IP", field<&Desk::frmIPoEthernet, &FrmIPoEthernet::tboAlte_IP>,
     [](const From &f) { return !first_address(f); }},
    {"MAC-Adresse", [](const From &f) { return f.desk.frmIPoEthernet.mac(); }, first_address},
};
constexpr Row interface[] = {{"Schnittstelle des Geräts", text<&JobValues::strCOMparameter_gewuenscht>}};

std::span<const Row> rows_of(const Button &by, const Desk &d) {
    const struct {
        const Button &button;
        std::span<const Row> rows;
    } jobs[] = {{d.frmModem.cbuParametrieren, alarm},
                {d.frmPin.cbuPin_Eingabe, pin},
                {d.frmMSN.cbuMSN_einstellen, msn},
                {d.frmAnschlussart.cmdAnschlussart_einstellen, line_type},
                {d.frmGPRS.cbuGPRS_schreiben, mobile_data},
                {d.frmIPT.cbuIPT_schreiben, telemetry},
                {d.frmEthernet.cbuEthernet_Konfigurieren, address},
                {d.frmGateway.cbuEthernet_GW_Kabel, gateway},
                {d.frmGateway.cbuEthernet_GW_Konfigurieren, network_gateway},
                {d.frmIPoEthernet.cbuEthernet_IP_aendern, network_address},
                {d.frmEinstellungen.cmdUART_Einstellung_aendern, interface}};
    for (const auto &[button, rows] : jobs)
        if (&button == &by)
            return rows;
    return {};
}

Settings taken(std::span<const Row> rows, const From &from) {
    Settings settings;
    for (const Row &row : rows)
        if (row.when(from)) {
            const std::string value = row.value(from);
            settings.emplace_back(row.caption, row.secret && !value.empty() ? "gesetzt" : value);
        }
    return settings;
}

} // namespace

Settings sent_by(const Button &button, const Desk &desk) {
    return taken(rows_of(button, desk), {desk.job_values, desk});
}

Settings read_by(const Button &button, const Desk &desk) {
    JobValues read;
    if (&button == &desk.frmGPRS.cbuGPRS_lesen && desk.findings.gprs) {
        read.gprs = *desk.findings.gprs;
        return taken(mobile_data, {read, desk});
    }
    if (&button == &desk.frmIPT.cbuIPT_lesen && desk.findings.ipt) {
        read.ipt = *desk.findings.ipt;
        return taken(telemetry, {read, desk});
    }
    return {};
}

} // namespace telvox::operation
