#include "cli/jobs.hpp"

#include <algorithm>
#include <array>

namespace telvox::cli {

namespace {

constexpr Word variants[] = {
    {"analog", main_window<&FrmModem::optAnalog>},     {"isdn", main_window<&FrmModem::optISDN>},
    {"gsm", main_window<&FrmModem::optGSM>},           {"gprs", main_window<&FrmModem::optGPRS>},
    {"ethernet", main_window<&FrmModem::optEthernet>},
};
constexpr Word ways[] = {
    {"direkt", main_window<&FrmModem::optDirektverbindung>},
    {"fern", main_window<&FrmModem::optFernverbindung>},
};
constexpr Word messages[] = {
    {"sms", main_window<&FrmModem::optSMS>},
    {"fax", main_window<&FrmModem::optFAX>},
};

constexpr ControlOf password_tick[] = {main_window<&FrmModem::chkPasswort>};
constexpr ControlOf prefix_tick[] = {main_window<&FrmModem::chkAmt>};

constexpr Option way_rows[] = {
    {.name = "--typ",
     .value = "TYP",
     .help = "analog, isdn, gsm, gprs oder ethernet; sonst analog, oder der eine, den der Auftrag kennt",
     .words = variants},
    {.name = "--verbindung",
     .value = "direkt|fern",
     .help = "über das Kabel oder ein lokales Modem; sonst direkt",
     .words = ways},
    {.name = "--schnittstelle",
     .value = "3|GERÄT",
     .help = "Schnittstelle des Telvox-A: COM-Nummer oder Gerätepfad",
     .field = main_window<&FrmModem::cobSchnittstelle>},
    {.name = "--modemanschluss",
     .value = "6|GERÄT",
     .help = "Schnittstelle des lokalen Modems",
     .field = main_window<&FrmModem::cobModem_Port>},
    {.name = "--rufnummer-modem",
     .value = "NUMMER",
     .help = "Rufnummer des Telvox-A",
     .field = main_window<&FrmModem::tboRufnummer_Modem>},
    {.name = "--passwort",
     .value = "TEXT|-",
     .help = "Passwort, wenn nicht das Standard Passwort gilt",
     .field = main_window<&FrmModem::tboPasswort>,
     .needs = password_tick,
     .secret = true},
    {.name = "--com-direkt",
     .value = "2400,e,8,1",
     .help = "Schnittstellenparameter für das Kabel",
     .format = &Session::strCOMparameter_direkt},
    {.name = "--com-fern",
     .value = "9600,n,8,1",
     .help = "Schnittstellenparameter für das lokale Modem",
     .format = &Session::strCOMparameter_fern},
};

constexpr Option alarm_rows[] = {
    {.name = "--nachricht", .value = "sms|fax", .help = "Art der Alarmmeldung; sonst sms", .words = messages},
    {.name = "--empfaenger",
     .value = "NUMMER",
     .help = "Nummer des Empfängers",
     .field = main_window<&FrmModem::tboRufnummer_Empfaenger>},
    {.name = "--amt",
     .value = "ZEICHEN",
     .help = "Zeichen zur Amtsholung",
     .field = main_window<&FrmModem::tboAmt>,
     .needs = prefix_tick},
    {.name = "--service-center",
     .value = "NUMMER",
     .help = "Service-Center Nummer",
     .field = main_window<&FrmModem::tboService_Center>},
    {.name = "--alarmtext",
     .value = "TEXT",
     .help = "Alarmmeldung, 160 Zeichen, bei gsm und gprs 70",
     .field = main_window<&FrmModem::tboAlarmmeldung>},
};

constexpr Option pin_rows[] = {{.name = "--pin",
                                .value = "PIN|-",
                                .help = "PIN der SIM-Karte",
                                .field = at<&Desk::frmPin, &FrmPin::tboPin>,
                                .required = true,
                                .secret = true}};
constexpr Option msn_rows[] = {{.name = "--msn",
                                .value = "MSN",
                                .help = "MSN des Geräts; * nimmt alle Anrufe an",
                                .field = at<&Desk::frmMSN, &FrmMSN::tboMSN>,
                                .required = true}};
constexpr Word line_types[] = {
    {"punkt-zu-punkt", at<&Desk::frmAnschlussart, &FrmAnschlussart::optAnlagenanschluss>},
    {"mehrgeraete", at<&Desk::frmAnschlussart, &FrmAnschlussart::optMehrgeraeteanschluss>},
};
constexpr Option line_type_rows[] = {{.name = "--anschlussart",
                                      .value = "ART",
                                      .help = "punkt-zu-punkt oder mehrgeraete",
                                      .words = line_types,
                                      .required = true}};

constexpr const char *mobile = "gsm gprs";

std::string signal(Desk &desk) {
    const FrmGSM_Status &form = desk.frmGSM_Status;
    return form.signal_known ? std::to_string(form.pzbSignalstaerke.value) : "nicht bekannt";
}

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

constexpr JobCommand commands[] = {
    {.name = "parametrieren",
     .help = "Modem konfigurieren",
     .button = main_window<&FrmModem::cbuParametrieren>},
    {.name = "alarmtest", .help = "Alarmmeldung senden (Test)", .button = main_window<&FrmModem::cbuTest>},
    {.name = "alarm-aus",
     .help = "Alarmfunktion deaktivieren",
     .button = main_window<&FrmModem::cbuAlarm_aus>},
    {.name = "msn",
     .help = "MSN einstellen",
     .variants = "isdn",
     .button = at<&Desk::frmMSN, &FrmMSN::cbuMSN_einstellen>,
     .menu = main_window<&FrmModem::mnuMSN_festlegen>,
     .options = msn_rows},
    {.name = "anschlussart",
     .help = "Anschlussart einstellen",
     .variants = "isdn",
     .button = at<&Desk::frmAnschlussart, &FrmAnschlussart::cmdAnschlussart_einstellen>,
     .menu = main_window<&FrmModem::mnuISDN_Anschluss>,
     .options = line_type_rows},
    {.name = "pin",
     .help = "PIN einstellen",
     .variants = mobile,
     .button = at<&Desk::frmPin, &FrmPin::cbuPin_Eingabe>,
     .menu = main_window<&FrmModem::mnuPin_festlegen>,
     .options = pin_rows},
    {.name = "pin-status",
     .help = "PIN-Status abfragen",
     .variants = mobile,
     .button = at<&Desk::frmGSM_Status, &FrmGSM_Status::cbuPIN_Status>,
     .menu = main_window<&FrmModem::mnuStatus_abfragen>,
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
     .result = [](Desk &d) { return d.frmGSM_Status.tboReg_zustand.text; }},
    {.name = "signal",
     .help = "Signalstärke abfragen: 1 bis 31, oder \"nicht bekannt\"",
     .variants = mobile,
     .button = at<&Desk::frmGSM_Status, &FrmGSM_Status::cbuSignalstaerke>,
     .menu = main_window<&FrmModem::mnuStatus_abfragen>,
     .result = signal},
    {.name = "imei",
     .help = "Geräte-IMEI auslesen",
     .variants = mobile,
     .button = at<&Desk::frmGSM_Status, &FrmGSM_Status::cbuIMEI>,
     .menu = main_window<&FrmModem::mnuStatus_abfragen>,
     .result = [](Desk &d) { return d.frmGSM_Status.tboIMEI.text; }},
    {.name = "schnittstellen",
     .help = "nennt die Schnittstellen: Gerät, Beschreibung, ob sie sich öffnen lassen",
     .result = ports,
     .look = [](Telvox &program) { program.focus(program.desk.frmModem.cobSchnittstelle); }},
};

const Option *find_in(std::span<const Option> options, std::string_view name) {
    const auto found = std::find_if(options.begin(), options.end(),
                                    [&](const Option &option) { return option.name == name; });
    return found == options.end() ? nullptr : &*found;
}

} // namespace

std::span<const JobCommand> job_commands() { return commands; }
std::span<const Option> way_options() { return way_rows; }
std::span<const Option> alarm_options() { return alarm_rows; }

const JobCommand *find_job(std::string_view name) {
    const auto *found = std::find_if(std::begin(commands), std::end(commands),
                                     [&](const auto &job) { return job.name == name; });
    return found == std::end(commands) ? nullptr : found;
}

const Option *find_option(const JobCommand &job, std::string_view name) {
    for (const std::span<const Option> options : {job.options, way_options(), alarm_options()})
        if (const Option *option = find_in(options, name))
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
        if (find_in(job.options, option))
            names += (names.empty() ? "" : ", ") + std::string(job.name);
    return names;
}

std::vector<std::string> secrets_of(Desk &desk) {
    std::vector<std::string> secrets{desk.session.strPIN};
    const auto add = [&](std::span<const Option> options) {
        for (const Option &option : options)
            if (option.secret)
                secrets.push_back(value_of(option, desk));
    };
    add(way_rows);
    for (const JobCommand &job : commands)
        add(job.options);
    return secrets;
}

} // namespace telvox::cli
