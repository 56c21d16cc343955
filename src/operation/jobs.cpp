#include "operation/jobs.hpp"

#include "core/files/files.hpp"
#include "core/text.hpp"
#include "operation/backups.hpp"
#include "operation/rows.hpp"

#include <algorithm>
#include <sstream>

namespace telvox::operation {

namespace {

constexpr ModemType isdn[] = {ModemType::ISDN};
constexpr ModemType mobile[] = {ModemType::GSM, ModemType::GPRS};
constexpr ModemType gprs_only[] = {ModemType::GPRS};
constexpr ModemType ethernet[] = {ModemType::Ethernet};

std::string ports(Desk &desk) {
    std::string lines;
    for (const PortInfo &port : desk.ports) {
        std::string what = port.device;
        if (!port.description.empty())
            what += (what.empty() ? "" : ", ") + port.description;
        lines += "COM " + std::to_string(port.number) + (what.empty() ? "" : " (" + what + ")") + ": " +
                 (port.refusal.empty() ? "frei" : port.refusal) + "\n";
    }
    if (!lines.empty())
        lines.pop_back();
    return lines;
}

std::string backup_lines(Desk &desk) {
    std::string lines;
    for (const Backup &backup : backups(desk.folders))
        lines += (lines.empty() ? "" : "\n") + backup.imei + " " + backup.time + " " + backup.what + ": " +
                 text_of(backup.file);
    return lines.empty() ? "Es gibt keine Sicherungen." : lines;
}

std::string service_numbers(Desk &desk) {
    std::string lines = "Mobilfunk (--netz):";
    for (const ServiceNumber &entry : mobile_networks(desk))
        lines += "\n" + one_line(entry.label);
    lines += "\nFestnetz (--anbieter):";
    for (const ServiceNumber &entry : fixed_network(desk))
        lines += "\n" + one_line(entry.label);
    return lines;
}

constexpr JobCommand commands[] = {
    {.name = "parametrieren",
     .help = "Modem konfigurieren",
     .button = main_window<&FrmModem::cbuParametrieren>,
     .around = device_rows},
    {.name = "alarmtest",
     .help = "Alarmmeldung senden (Test)",
     .button = main_window<&FrmModem::cbuTest>,
     .around = device_rows,
     .leaves_busy = true},
    {.name = "alarm-aus",
     .help = "Alarmfunktion deaktivieren",
     .button = main_window<&FrmModem::cbuAlarm_aus>,
     .around = device_rows},
    {.name = "msn",
     .help = "MSN einstellen",
     .variants = isdn,
     .button = at<&Desk::frmMSN, &FrmMSN::cbuMSN_einstellen>,
     .menu = main_window<&FrmModem::mnuMSN_festlegen>,
     .options = msn_rows},
    {.name = "anschlussart",
     .help = "Anschlussart einstellen",
     .variants = isdn,
     .button = at<&Desk::frmAnschlussart, &FrmAnschlussart::cmdAnschlussart_einstellen>,
     .menu = main_window<&FrmModem::mnuISDN_Anschluss>,
     .options = line_type_rows},
    {.name = "pin",
     .help = "PIN einstellen",
     .variants = mobile,
     .button = at<&Desk::frmPin, &FrmPin::cbuPin_Eingabe>,
     .menu = main_window<&FrmModem::mnuPin_festlegen>,
     .options = pin_rows,
     .around = device_rows},
    {.name = "pin-status",
     .help = "PIN-Status abfragen",
     .variants = mobile,
     .button = at<&Desk::frmGSM_Status, &FrmGSM_Status::cbuPIN_Status>,
     .menu = main_window<&FrmModem::mnuStatus_abfragen>,
     .around = device_rows,
     .result =
         [](Desk &d) {
             return "Status: " + d.frmGSM_Status.tboStatus.text +
                    "\nPIN hinterlegt: " + d.frmGSM_Status.tboPIN_hinterlegt.text;
         }},
    {.name = "registrierung",
     .help = "Registrierungszustand abfragen",
     .variants = mobile,
     .button = at<&Desk::frmGSM_Status, &FrmGSM_Status::cbuReg_zustand>,
     .menu = main_window<&FrmModem::mnuStatus_abfragen>,
     .around = device_rows,
     .result = [](Desk &d) { return d.frmGSM_Status.tboReg_zustand.text; }},
    {.name = "signal",
     .help = "Signalstärke abfragen: \"17 von 31, −79 dBm\", oder \"nicht bekannt\"",
     .variants = mobile,
     .button = at<&Desk::frmGSM_Status, &FrmGSM_Status::cbuSignalstaerke>,
     .menu = main_window<&FrmModem::mnuStatus_abfragen>,
     .around = device_rows,
     .result = [](Desk &d) { return d.frmGSM_Status.lblSignalwert.caption; },
     .repeats = at<&Desk::frmGSM_Status, &FrmGSM_Status::chkLaufend>},
    {.name = "imei",
     .help = "Geräte-IMEI auslesen",
     .variants = mobile,
     .button = at<&Desk::frmGSM_Status, &FrmGSM_Status::cbuIMEI>,
     .menu = main_window<&FrmModem::mnuStatus_abfragen>,
     .around = device_rows,
     .result = [](Desk &d) { return d.frmGSM_Status.tboIMEI.text; }},
    {.name = "gprs-schreiben",
     .help = "GPRS Einstellungen schreiben",
     .variants = gprs_only,
     .button = gprs<&FrmGPRS::cbuGPRS_schreiben>,
     .menu = main_window<&FrmModem::mnuGPRS_konfig>,
     .options = gprs_rows,
     .around = write_rows,
     .reads = "gprs-lesen",
     .verify = gprs<&FrmGPRS::chkGPRS_pruefen>},
    {.name = "gprs-lesen",
     .help = "GPRS Einstellungen lesen, ausgegeben als Zeilen name=wert",
     .variants = gprs_only,
     .button = gprs<&FrmGPRS::cbuGPRS_lesen>,
     .menu = main_window<&FrmModem::mnuGPRS_konfig>,
     .around = device_rows,
     .result = [](Desk &d) { return value_lines(gprs_rows, d); }},
    {.name = "gprs-vergleichen",
     .help = "liest die GPRS Einstellungen und vergleicht sie mit den Angaben",
     .variants = gprs_only,
     .button = gprs<&FrmGPRS::cbuGPRS_vergleichen>,
     .menu = main_window<&FrmModem::mnuGPRS_konfig>,
     .options = gprs_rows,
     .around = device_rows,
     .compares = true},
    {.name = "ipt-schreiben",
     .help = "IP-Telemetrie einstellen",
     .variants = gprs_only,
     .button = ipt<&FrmIPT::cbuIPT_schreiben>,
     .menu = main_window<&FrmModem::mnuIPT_konfig>,
     .options = ipt_rows,
     .around = write_rows,
     .reads = "ipt-lesen",
     .verify = ipt<&FrmIPT::chkIPT_pruefen>},
    {.name = "ipt-lesen",
     .help = "IP-Telemetrie lesen, ausgegeben als Zeilen name=wert",
     .variants = gprs_only,
     .button = ipt<&FrmIPT::cbuIPT_lesen>,
     .menu = main_window<&FrmModem::mnuIPT_konfig>,
     .around = device_rows,
     .result = [](Desk &d) { return value_lines(ipt_rows, d); }},
    {.name = "ipt-vergleichen",
     .help = "liest die IP-Telemetrie und vergleicht sie mit den Angaben",
     .variants = gprs_only,
     .button = ipt<&FrmIPT::cbuIPT_vergleichen>,
     .menu = main_window<&FrmModem::mnuIPT_konfig>,
     .options = ipt_rows,
     .around = device_rows,
     .compares = true},
    {.name = "ethernet-ip",
     .help = "IP-Adresse und Port über das Kabel einstellen",
     .variants = ethernet,
     .button = at<&Desk::frmEthernet, &FrmEthernet::cbuEthernet_Konfigurieren>,
     .menu = main_window<&FrmModem::mnuIPuPort>,
     .options = address_rows},
    {.name = "ethernet-gateway",
     .help = "Gateway und Netzmaske über das Kabel einstellen",
     .variants = ethernet,
     .button = at<&Desk::frmGateway, &FrmGateway::cbuEthernet_GW_Kabel>,
     .menu = main_window<&FrmModem::mnuGateway>,
     .options = gateway_rows},
    {.name = "netz-pruefen",
     .help = "prüft mit Ping, ob ein Gerät im Netzwerk erreichbar ist",
     .variants = ethernet,
     .button = gateway<&FrmGateway::cbuVerbindung_pruefen>,
     .menu = main_window<&FrmModem::mnuGateway>,
     .options = ping_rows},
    {.name = "netz-gateway",
     .help = "Gateway und Netzmaske über das Netzwerk einstellen",
     .variants = ethernet,
     .button = gateway<&FrmGateway::cbuEthernet_GW_Konfigurieren>,
     .menu = main_window<&FrmModem::mnuGateway>,
     .options = network_gateway_rows},
    {.name = "netz-ip",
     .help = "IP-Adresse über das Netzwerk ändern",
     .variants = ethernet,
     .button = over_ip<&FrmIPoEthernet::cbuEthernet_IP_aendern>,
     .menu = main_window<&FrmModem::mnuIP_over_Ethernet>,
     .options = network_address_rows},
    {.name = "netz-erstvergabe",
     .help = "einem Gerät ohne IP-Adresse seine erste geben",
     .variants = ethernet,
     .button = over_ip<&FrmIPoEthernet::cbuEthernet_IP_aendern>,
     .menu = main_window<&FrmModem::mnuIP_over_Ethernet>,
     .options = first_address_rows},
    {.name = "schnittstelle-aendern",
     .help = "Schnittstellenparameter des Geräts ändern und speichern",
     .button = at<&Desk::frmEinstellungen, &FrmEinstellungen::cmdUART_Einstellung_aendern>,
     .menu = main_window<&FrmModem::mnuEinstellungen>,
     .options = change_rows,
     .around = device_rows,
     .also_needs = "schnittstelle",
     .leaves_busy = true,
     .afterwards = at<&Desk::frmEinstellungen, &FrmEinstellungen::cmdOK>},
    {.name = "erkennen",
     .help = "stellt fest, was am Kabel hängt; ohne --schnittstelle an allen freien",
     .button = main_window<&FrmModem::cbuErkennen>,
     .also_needs = "schnittstelle",
     .everywhere = true,
     .result =
         [](Desk &d) {
             return "typ=" + value_of(*find_option("typ"), d) +
                    "\ncom-direkt=" + value_of(*find_option("com-direkt"), d);
         }},
    {.name = "liste",
     .help = "führt eine Tabelle von Geräten aus, an mehreren Schnittstellen gleichzeitig",
     .file = "DATEI"},
    {.name = "einstellungen",
     .help = "nennt die Schnittstellenparameter und den Ordner von Com.ini",
     .result =
         [](Desk &d) {
             return "com-direkt=" + value_of(*find_option("com-direkt"), d) +
                    "\ncom-fern=" + value_of(*find_option("com-fern"), d) +
                    "\nordner=" + d.folders.settings.string();
         },
     .look = [](Telvox &) {}},
    {.name = "sicherungen",
     .help = "nennt die Sicherungen; gprs-schreiben --aus DATEI schreibt eine zurück",
     .result = backup_lines,
     .look = [](Telvox &) {}},
    {.name = "servicenummern",
     .help = "nennt die Einträge beider Listen von Servicenummern, für --netz und --anbieter",
     .result = service_numbers,
     .look = [](Telvox &) {}},
    {.name = "schnittstellen",
     .help = "nennt die Schnittstellen: Gerät, Beschreibung, ob sie sich öffnen lassen",
     .result = ports,
     .look = [](Telvox &program) { program.focus(program.desk.frmModem.cobSchnittstelle); }},
};

template <auto Window> Form &window(Desk &desk) { return desk.*Window; }

constexpr Section dialogs[] = {
    {"PIN", window<&Desk::frmPin>, pin_rows, main_window<&FrmModem::mnuPin_festlegen>},
    {"MSN", window<&Desk::frmMSN>, msn_rows, main_window<&FrmModem::mnuMSN_festlegen>},
    {"Anschlussart", window<&Desk::frmAnschlussart>, line_type_rows,
     main_window<&FrmModem::mnuISDN_Anschluss>},
    {"GPRS", window<&Desk::frmGPRS>, gprs_rows, main_window<&FrmModem::mnuGPRS_konfig>},
    {"IP-Telemetrie", window<&Desk::frmIPT>, ipt_rows, main_window<&FrmModem::mnuIPT_konfig>},
    {"IP und Port", window<&Desk::frmEthernet>, address_rows, main_window<&FrmModem::mnuIPuPort>},
    {"Gateway", window<&Desk::frmGateway>, network_gateway_rows, main_window<&FrmModem::mnuGateway>},
    {"Netzwerk", window<&Desk::frmIPoEthernet>, over_network_rows,
     main_window<&FrmModem::mnuIP_over_Ethernet>},
};

} // namespace

std::span<const Section> sections() { return dialogs; }

const Section *find_section(std::string_view name) {
    const auto *found = std::find_if(std::begin(dialogs), std::end(dialogs),
                                     [&](const Section &section) { return section.name == name; });
    return found == std::end(dialogs) ? nullptr : found;
}

const Section *section_of(const JobCommand &job) {
    const auto *found = std::find_if(std::begin(dialogs), std::end(dialogs),
                                     [&](const Section &section) { return section.menu == job.menu; });
    return found == std::end(dialogs) ? nullptr : found;
}

const Option *find_option(std::span<const Option> options, std::string_view name) {
    const auto found = std::find_if(options.begin(), options.end(),
                                    [&](const Option &option) { return option.name == name; });
    return found == options.end() ? nullptr : &*found;
}

std::span<const JobCommand> job_commands() { return commands; }
std::span<const Option> way_options() { return way_rows; }
std::span<const Option> alarm_options() { return alarm_rows; }
std::span<const Option> around_options() { return write_rows; }

const JobCommand *find_job(std::string_view name) {
    const auto *found = std::find_if(std::begin(commands), std::end(commands),
                                     [&](const auto &job) { return job.name == name; });
    return found == std::end(commands) ? nullptr : found;
}

const Option *find_option(const JobCommand &job, std::string_view name) {
    for (const std::span<const Option> options : {job.options, job.around, way_options(), alarm_options()})
        if (const Option *option = find_option(options, name))
            return option;
    return nullptr;
}

const Option *find_option(std::string_view name) {
    for (const JobCommand &job : commands)
        if (const Option *option = find_option(job, name))
            return option;
    return nullptr;
}

std::string jobs_with(std::string_view option) {
    std::string names;
    for (const JobCommand &job : commands)
        if (find_option(job.options, option) || find_option(job.around, option))
            names += (names.empty() ? "" : ", ") + std::string(job.name);
    return names;
}

std::string found_out(const JobCommand &job, Desk &desk) {
    std::istringstream lines(job.result ? job.result(desk) : "");
    std::string all;
    for (std::string line; std::getline(lines, line);) {
        const std::string name = line.substr(0, line.find('='));
        if (const Option *option = find_option(name); option && option->secret)
            line = name + "=" + Mask::hidden;
        all += (all.empty() ? "" : ", ") + line;
    }
    return all;
}

const char *word_of(ModemType variant) { return variants[static_cast<std::size_t>(variant)].word; }

std::string words_of(std::span<const ModemType> all, const char *between) {
    std::string words;
    for (const ModemType variant : all)
        words += (words.empty() ? "" : between) + std::string(word_of(variant));
    return words;
}

} // namespace telvox::operation
