#include "operation/sent_settings.hpp"

#include "core/text.hpp"
#include "operation/jobs.hpp"

namespace telvox::operation {

namespace {

/// What a row takes its value from: the copy that the job works with, and the network dialogs' fields.
struct From {
    const JobValues &values;
    const Desk &desk;
};

/// A setting, by the option of its job that fills it in.
struct Row {
    const char *option;
    std::string (*value)(const From &);
    bool (*when)(const From &) = [](const From &) { return true; };
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
    {"nachricht", [](const From &f) { return std::string(f.values.by_sms ? "SMS" : "Fax"); }, by_line},
    {"amt", text<&JobValues::outside_line>,
     [](const From &f) { return by_line(f) && !f.values.outside_line.empty(); }},
    {"service-center", text<&JobValues::service_number>, by_sms},
    {"empfaenger", text<&JobValues::receiver>},
    {"alarmtext", [](const From &f) { return from_line(to_line(func_Text_prüfen(f.values.alarm_text))); }},
};
constexpr Row pin[] = {{"pin", text<&JobValues::strPIN>}};
constexpr Row msn[] = {{"msn", text<&JobValues::strMSN>}};
constexpr Row line_type[] = {{"anschlussart", [](const From &f) {
                                  return std::string(f.values.byteISDN_Anschlussart == 0
                                                         ? "Punkt zu Mehrpunkt, Mehrgeräteanschluss"
                                                         : "Punkt zu Punkt, Anlagenanschluss");
                              }}};
constexpr Row mobile_data[] = {
    {"apn", gprs<&GprsSettings::apn>},
    {"ppp", [](const From &f) { return std::string(f.values.gprs.pap ? "PAP" : "keine"); }},
    {"benutzer", gprs<&GprsSettings::user>},
    {"kennwort", gprs<&GprsSettings::password>},
    {"ziel-ip", gprs<&GprsSettings::ip>},
    {"ziel-port", gprs<&GprsSettings::ip_port>},
    {"domain", gprs<&GprsSettings::domain>},
    {"domain-port", gprs<&GprsSettings::domain_port>},
    {"nummer1", gprs<&GprsSettings::number1>},
    {"callback1", callback<&GprsSettings::callback1>},
    {"nummer2", gprs<&GprsSettings::number2>},
    {"callback2", callback<&GprsSettings::callback2>},
    {"standleitung", target<&GprsSettings::leased_line>},
    {"keep-alive", gprs<&GprsSettings::keep_alive>},
};
constexpr Row telemetry[] = {
    {"telemetrie",
     [](const From &f) {
         const int mode = f.values.ipt.mode;
         return std::string(mode == 0   ? "aus"
                            : mode == 2 ? "ein"
                            : mode == 3 ? "ein, verschleiert"
                                        : "unbekannt");
     }},
    {"benutzer", ipt<&IptSettings::user>},
    {"kennwort", ipt<&IptSettings::password>},
    {"schluessel-fest", ipt<&IptSettings::fixed_key>},
    {"schluessel-challenge", ipt<&IptSettings::challenge_key>},
};
constexpr Row address[] = {{"ip", text<&JobValues::str_IP>}, {"port", text<&JobValues::str_Port>}};
constexpr Row gateway[] = {{"gateway", text<&JobValues::str_Gateway>},
                           {"netzmaske", text<&JobValues::str_Netzmaske>}};
constexpr Row network_gateway[] = {
    {"ip", field<&Desk::frmGateway, &FrmGateway::tboIP>},
    {"gateway", field<&Desk::frmGateway, &FrmGateway::tboGateway>},
    {"netzmaske", field<&Desk::frmGateway, &FrmGateway::tboNetzmaske>},
};
constexpr Row network_address[] = {
    {"neue-ip", field<&Desk::frmIPoEthernet, &FrmIPoEthernet::tboNeue_IP>},
    {"momentane-ip", field<&Desk::frmIPoEthernet, &FrmIPoEthernet::tboAlte_IP>,
     [](const From &f) { return !first_address(f); }},
    {"mac", [](const From &f) { return f.desk.frmIPoEthernet.mac(); }, first_address},
};
constexpr Row interface[] = {{"neu", text<&JobValues::strCOMparameter_gewuenscht>}};

/// What a button sends, and the job whose options say how it is called.
struct Sent {
    const Button &button;
    const char *job;
    std::span<const Row> rows;
};

Settings taken(const Sent &sent, const From &from) {
    Settings settings;
    for (const Row &row : sent.rows)
        if (row.when(from)) {
            const Option *own = find_option(*find_job(sent.job), row.option);
            const Option &option = own ? *own : *find_option(row.option);
            const std::string value = row.value(from);
            settings.emplace_back(option.title, option.secret && !value.empty() ? "gesetzt" : value);
        }
    return settings;
}

} // namespace

Settings sent_by(const Button &button, const Desk &d) {
    const Sent jobs[] = {
        {d.frmModem.cbuParametrieren, "parametrieren", alarm},
        {d.frmPin.cbuPin_Eingabe, "pin", pin},
        {d.frmMSN.cbuMSN_einstellen, "msn", msn},
        {d.frmAnschlussart.cmdAnschlussart_einstellen, "anschlussart", line_type},
        {d.frmGPRS.cbuGPRS_schreiben, "gprs-schreiben", mobile_data},
        {d.frmIPT.cbuIPT_schreiben, "ipt-schreiben", telemetry},
        {d.frmEthernet.cbuEthernet_Konfigurieren, "ethernet-ip", address},
        {d.frmGateway.cbuEthernet_GW_Kabel, "ethernet-gateway", gateway},
        {d.frmGateway.cbuEthernet_GW_Konfigurieren, "netz-gateway", network_gateway},
        {d.frmIPoEthernet.cbuEthernet_IP_aendern, "netz-ip", network_address},
        {d.frmEinstellungen.cmdUART_Einstellung_aendern, "schnittstelle-aendern", interface}};
    for (const Sent &sent : jobs)
        if (&sent.button == &button)
            return taken(sent, {d.job_values, d});
    return {};
}

Settings read_by(const Button &button, const Desk &desk) {
    JobValues read;
    if (&button == &desk.frmGPRS.cbuGPRS_lesen && desk.findings.gprs) {
        read.gprs = *desk.findings.gprs;
        return taken({button, "gprs-schreiben", mobile_data}, {read, desk});
    }
    if (&button == &desk.frmIPT.cbuIPT_lesen && desk.findings.ipt) {
        read.ipt = *desk.findings.ipt;
        return taken({button, "ipt-schreiben", telemetry}, {read, desk});
    }
    return {};
}

} // namespace telvox::operation
