#pragma once

#include "core/files/list_files.hpp"

#include "operation/option.hpp"
#include <algorithm>

/// The options, a table per window, in the order in which the help names them and the fields are filled.
namespace telvox::operation {

inline constexpr Word variants[] = {
    {"analog", main_window<&FrmModem::optAnalog>},     {"isdn", main_window<&FrmModem::optISDN>},
    {"gsm", main_window<&FrmModem::optGSM>},           {"gprs", main_window<&FrmModem::optGPRS>},
    {"ethernet", main_window<&FrmModem::optEthernet>},
};
inline constexpr Word ways[] = {
    {"direkt", main_window<&FrmModem::optDirektverbindung>},
    {"fern", main_window<&FrmModem::optFernverbindung>},
};
inline constexpr Word messages[] = {
    {"sms", main_window<&FrmModem::optSMS>},
    {"fax", main_window<&FrmModem::optFAX>},
};

inline constexpr ControlOf password_tick[] = {main_window<&FrmModem::chkPasswort>};
inline constexpr ControlOf prefix_tick[] = {main_window<&FrmModem::chkAmt>};

inline constexpr Option way_rows[] = {
    {.name = "typ",
     .value = "TYP",
     .help = "analog, isdn, gsm, gprs oder ethernet; sonst analog, oder der eine, den der Auftrag kennt",
     .words = variants,
     .title = "Telvox-A Typ"},
    {.name = "verbindung",
     .value = "direkt|fern",
     .help = "über das Kabel oder ein lokales Modem; sonst direkt",
     .words = ways,
     .title = "Verbindungsart"},
    {.name = "schnittstelle",
     .value = "3|GERÄT",
     .help = "Schnittstelle des Telvox-A: COM-Nummer oder Gerätepfad",
     .field = main_window<&FrmModem::cobSchnittstelle>,
     .caption = "schnittstelle",
     .title = "Schnittstelle",
     .way = "direkt",
     .belongs_to = "zum Kabel"},
    {.name = "modemanschluss",
     .value = "6|GERÄT",
     .help = "Schnittstelle des lokalen Modems",
     .field = main_window<&FrmModem::cobModem_Port>,
     .caption = "modemanschluss",
     .title = "Modemanschluss",
     .way = "fern",
     .belongs_to = "zum Modem"},
    {.name = "rufnummer-modem",
     .value = "NUMMER",
     .help = "Rufnummer des Telvox-A",
     .field = main_window<&FrmModem::tboRufnummer_Modem>,
     .caption = "rufnummer des telvox-a",
     .title = "Rufnummer des Telvox-A",
     .way = "fern",
     .belongs_to = "zum Modem"},
    {.name = "passwort",
     .value = "TEXT|-",
     .help = "Passwort, wenn nicht das Standard Passwort gilt",
     .field = main_window<&FrmModem::tboPasswort>,
     .needs = password_tick,
     .secret = true,
     .title = "Passwort"},
    {.name = "com-direkt",
     .value = "2400,e,8,1",
     .help = "Schnittstellenparameter für das Kabel",
     .format = &Session::strCOMparameter_direkt,
     .title = "Format am Kabel"},
    {.name = "com-fern",
     .value = "9600,n,8,1",
     .help = "Schnittstellenparameter für das lokale Modem",
     .format = &Session::strCOMparameter_fern,
     .title = "Format am Modem"},
};

/// The supplied numbers of the mobile networks, and of the fixed network's gateways.
inline std::vector<ServiceNumber> mobile_networks(const Desk &desk) {
    return parse_service_centers(read_lines(find_list_file(desk.folders.lists, "SCN.dat")));
}
inline std::vector<ServiceNumber> fixed_network(const Desk &desk) {
    return parse_service_numbers(read_lines(find_list_file(desk.folders.lists, "FSN.dat")));
}
/// A gateway's protocol codes are nowhere but in the list, and their number may have been edited since; the
/// standard provider, the first one, sets only one code.
inline std::string taken_provider(const Desk &desk) {
    const Session &session = desk.session;
    const std::vector<ServiceNumber> entries = fixed_network(desk);
    const auto label_of = [&](auto &&taken) {
        const auto entry = std::find_if(entries.begin(), entries.end(), taken);
        return entry == entries.end() ? std::string() : single_spaced(entry->label);
    };
    const auto has_codes = [&](const ServiceNumber &entry) {
        return entry.protocol == session.strSMS_Protokoll &&
               entry.protocol_ISDN == session.strSMS_Protokoll_ISDN &&
               entry.protocol_remote == session.strSMS_Protokoll_ISDN_fern;
    };
    if (session.strSMS_Protokoll.empty() || entries.empty())
        return {};
    if (session.strSMS_Protokoll_ISDN.empty())
        return single_spaced(entries.front().label);
    const std::string with_number = label_of([&](const ServiceNumber &entry) {
        return has_codes(entry) && entry.number == desk.frmModem.tboService_Center.text;
    });
    return with_number.empty() ? label_of(has_codes) : with_number;
}
inline constexpr Pick pick_network = {
    .entries = mobile_networks,
    .opens = main_window<&FrmModem::cbuSC_Uebersicht>,
    .list = at<&Desk::frmService_Center, &FrmService_Center::lstSCNummer>,
    .ok = at<&Desk::frmService_Center, &FrmService_Center::cbuOK>,
};
inline constexpr Pick pick_provider = {
    .entries = fixed_network,
    .opens = main_window<&FrmModem::cbuSC_Uebersicht>,
    .list = at<&Desk::frmServicenummer, &FrmServicenummer::lstServicenummer>,
    .ok = at<&Desk::frmServicenummer, &FrmServicenummer::cbuOK>,
    .taken = taken_provider,
};

inline constexpr Option alarm_rows[] = {
    {.name = "nachricht",
     .value = "sms|fax",
     .help = "Art der Alarmmeldung; sonst sms",
     .words = messages,
     .title = "Nachrichten Typ"},
    {.name = "empfaenger",
     .value = "NUMMER",
     .help = "Nummer des Empfängers",
     .field = main_window<&FrmModem::tboRufnummer_Empfaenger>,
     .caption = "empfänger",
     .title = "Nummer des Empfängers"},
    {.name = "amt",
     .value = "ZEICHEN",
     .help = "Zeichen zur Amtsholung",
     .field = main_window<&FrmModem::tboAmt>,
     .needs = prefix_tick,
     .title = "Zeichen zur Amtsholung"},
    {.name = "anbieter",
     .value = "TEXT",
     .help = "analog, isdn: Servicenummer und Protokoll aus der Liste, der eine Eintrag mit diesem Text",
     .pick = &pick_provider,
     .title = "SMS Provider"},
    {.name = "netz",
     .value = "TEXT",
     .help = "gsm, gprs: Service-Center Nummer aus der Liste, der eine Eintrag mit diesem Text",
     .pick = &pick_network,
     .title = "Netz"},
    {.name = "service-center",
     .value = "NUMMER",
     .help = "Service-Center Nummer",
     .field = main_window<&FrmModem::tboService_Center>,
     .caption = "service-center nummer",
     .title = "Service-Center Nummer"},
    {.name = "alarmtext",
     .value = "TEXT",
     .help = "Alarmmeldung, 160 Zeichen, bei gsm und gprs 70",
     .field = main_window<&FrmModem::tboAlarmmeldung>,
     .caption = "alarmmeldung",
     .title = "Alarmmeldung"},
};

// ----------------------------------------------------------------------------------------- around a job

inline constexpr Option check_option = {
    .name = "geraet-pruefen",
    .value = "ein|aus",
    .help = "fragt vor dem Auftrag, welches Gerät am Kabel hängt (IMEI); sonst nur bei einer Liste",
    .bare = true};
inline constexpr Option imei_option = {
    .name = "imei",
    .value = "IMEI",
    .help = "das Gerät, für das der Auftrag ist; hängt ein anderes am Kabel, wird nichts gesendet"};
/// Of the mobile variants; the others have no number that they tell.
inline constexpr Option device_rows[] = {check_option, imei_option};
inline constexpr Option write_rows[] = {
    check_option,
    imei_option,
    {.name = "nur-aenderungen",
     .value = "ein|aus",
     .help = "liest erst und lässt, was nicht angegeben ist, wie es im Gerät steht; in einer "
             "Liste immer, wenn etwas fehlt",
     .bare = true},
    {.name = "nach-neustart-pruefen",
     .value = "ein|aus",
     .help = "wartet auf den Neustart, liest und vergleicht",
     .bare = true},
    {.name = "rest", .value = "leeren", .help = "in einer Liste: was die Zeile nicht nennt, wird geleert"}};

inline constexpr Option pin_rows[] = {{.name = "pin",
                                       .value = "PIN|-",
                                       .help = "PIN der SIM-Karte",
                                       .field = at<&Desk::frmPin, &FrmPin::tboPin>,
                                       .required = true,
                                       .secret = true,
                                       .title = "PIN"}};
inline constexpr Option msn_rows[] = {{.name = "msn",
                                       .value = "MSN",
                                       .help = "MSN des Geräts; * nimmt alle Anrufe an",
                                       .field = at<&Desk::frmMSN, &FrmMSN::tboMSN>,
                                       .required = true,
                                       .title = "MSN"}};
inline constexpr Word line_types[] = {
    {"punkt-zu-punkt", at<&Desk::frmAnschlussart, &FrmAnschlussart::optAnlagenanschluss>},
    {"mehrgeraete", at<&Desk::frmAnschlussart, &FrmAnschlussart::optMehrgeraeteanschluss>},
};
inline constexpr Option line_type_rows[] = {{.name = "anschlussart",
                                             .value = "ART",
                                             .help = "punkt-zu-punkt oder mehrgeraete",
                                             .words = line_types,
                                             .required = true,
                                             .title = "Anschlussart"}};

inline constexpr ControlOf change_tick[] = {
    at<&Desk::frmEinstellungen, &FrmEinstellungen::cboSchnittstelle_aendern>};
inline constexpr Option change_rows[] = {{.name = "neu",
                                          .value = "9600,n,8,1",
                                          .help = "Parameter, die das Gerät bekommt",
                                          .needs = change_tick,
                                          .required = true,
                                          .combos = &FrmEinstellungen::soll,
                                          .title = "Neues Format"}};

// ------------------------------------------------------------------------------------------------- GPRS

template <auto Member> inline constexpr ControlOf gprs = at<&Desk::frmGPRS, Member>;

inline constexpr Word ppp_modes[] = {{"keine", gprs<&FrmGPRS::optPPP_kein>},
                                     {"pap", gprs<&FrmGPRS::optPPP_PAP>}};
inline constexpr Word first_targets[] = {{"kein", gprs<&FrmGPRS::optCallback1_kein>},
                                         {"ip", gprs<&FrmGPRS::optCallback1_IP>},
                                         {"domain", gprs<&FrmGPRS::optCallback1_Domain>}};
inline constexpr Word second_targets[] = {{"kein", gprs<&FrmGPRS::optCallback2_kein>},
                                          {"ip", gprs<&FrmGPRS::optCallback2_IP>},
                                          {"domain", gprs<&FrmGPRS::optCallback2_Domain>}};
inline constexpr Word leased_lines[] = {{"aus", gprs<&FrmGPRS::optStandleitung_aus>},
                                        {"ip", gprs<&FrmGPRS::optStandleitung_IP>},
                                        {"domain", gprs<&FrmGPRS::optStandleitung_Domain>}};
inline constexpr ControlOf ppp_on[] = {gprs<&FrmGPRS::optPPP_PAP>};

inline constexpr Option gprs_rows[] = {
    // The entry of the list that was picked may hold a password.
    {.name = "apn",
     .value = "TEXT",
     .help = "Access Point Name",
     .field = gprs<&FrmGPRS::cobAPN>,
     .title = "APN",
     .means = [](std::string_view text) { return parse_access_point(text).apn; }},
    {.name = "ppp",
     .value = "keine|pap",
     .help = "Authentifizierung; sonst keine, mit --benutzer oder --kennwort pap",
     .words = ppp_modes,
     .title = "PPP-Authentifizierung"},
    {.name = "benutzer",
     .value = "TEXT",
     .help = "Benutzername beim Anbieter",
     .field = gprs<&FrmGPRS::tboBenutzername>,
     .needs = ppp_on,
     .title = "Benutzername"},
    {.name = "kennwort",
     .value = "TEXT|-",
     .help = "Passwort beim Anbieter",
     .field = gprs<&FrmGPRS::tboPasswort>,
     .needs = ppp_on,
     .secret = true,
     .title = "Passwort"},
    {.name = "ziel-ip",
     .value = "ADRESSE",
     .help = "IP-Adresse des Ziels",
     .field = gprs<&FrmGPRS::tboIP>,
     .title = "IP-Adresse"},
    {.name = "ziel-port",
     .value = "PORT",
     .help = "sein Port; sonst 1234",
     .field = gprs<&FrmGPRS::tboIP_Port>,
     .title = "Port der IP-Adresse"},
    {.name = "domain",
     .value = "NAME",
     .help = "Domain-Name des Ziels",
     .field = gprs<&FrmGPRS::tboDomain>,
     .title = "Domain-Name"},
    {.name = "domain-port",
     .value = "PORT",
     .help = "sein Port; sonst 1234",
     .field = gprs<&FrmGPRS::tboDomain_Port>,
     .title = "Port der Domain"},
    {.name = "nummer1",
     .value = "NUMMER",
     .help = "erste freigegebene Rufnummer, wie sie übermittelt wird, meist +49...",
     .field = gprs<&FrmGPRS::tboNummer1>,
     .title = "1. Nummer"},
    {.name = "nummer2",
     .value = "NUMMER",
     .help = "zweite freigegebene Rufnummer",
     .field = gprs<&FrmGPRS::tboNummer2>,
     .title = "2. Nummer"},
    {.name = "callback1",
     .value = "ZIEL",
     .help = "wohin ein Anruf der ersten Nummer verbindet: kein, ip oder domain; sonst kein",
     .words = first_targets,
     .title = "Callback der 1. Nummer"},
    {.name = "callback2",
     .value = "ZIEL",
     .help = "ebenso für die zweite Nummer",
     .words = second_targets,
     .title = "Callback der 2. Nummer"},
    {.name = "standleitung",
     .value = "ZIEL",
     .help = "Standleitung: aus, ip oder domain; sonst aus",
     .words = leased_lines,
     .title = "Standleitungsbetrieb"},
    {.name = "keep-alive",
     .value = "MINUTEN",
     .help = "Keep Alive Timer, 0 bis 255; sonst 0",
     .field = gprs<&FrmGPRS::tboKeepAlive>,
     .title = "Keep Alive Timer"},
};

// ---------------------------------------------------------------------------------------- IP-telemetry

template <auto Member> inline constexpr ControlOf ipt = at<&Desk::frmIPT, Member>;

inline constexpr Word scramblings[] = {{"aus", ipt<&FrmIPT::optUnscrambled>},
                                       {"ein", ipt<&FrmIPT::optScrambled>}};
inline constexpr ControlOf telemetry_on[] = {ipt<&FrmIPT::chkIPT_Betrieb>};
inline constexpr ControlOf scrambling_on[] = {ipt<&FrmIPT::chkIPT_Betrieb>, ipt<&FrmIPT::optScrambled>};

inline constexpr Option ipt_rows[] = {
    {.name = "telemetrie",
     .value = "aus|ein",
     .help = "IP-Telemetrie Betrieb; sonst aus, mit einer der folgenden Angaben ein",
     .field = ipt<&FrmIPT::chkIPT_Betrieb>,
     .title = "IP-Telemetrie Betrieb"},
    {.name = "benutzer",
     .value = "TEXT",
     .help = "Benutzer des Telemetrie-Servers",
     .field = ipt<&FrmIPT::tboBenutzer>,
     .needs = telemetry_on,
     .title = "Benutzer"},
    {.name = "kennwort",
     .value = "TEXT|-",
     .help = "Passwort des Telemetrie-Servers",
     .field = ipt<&FrmIPT::tboPasswort>,
     .needs = telemetry_on,
     .secret = true,
     .title = "Passwort"},
    {.name = "verschleierung",
     .value = "aus|ein",
     .help = "verschleierte Übertragung; sonst aus, mit einem Schlüssel ein",
     .words = scramblings,
     .needs = telemetry_on,
     .title = "Verschleierung"},
    {.name = "schluessel-fest",
     .value = "KEY|-",
     .help = "Fixed Scramble Key, 64 Zeichen; sonst der Defaultkey",
     .field = ipt<&FrmIPT::tboFix_Scrambled_Key>,
     .needs = scrambling_on,
     .secret = true,
     .title = "Fixed Scramble Key"},
    {.name = "schluessel-challenge",
     .value = "KEY|-",
     .help = "Challenge Scramble Key, 64 Zeichen; sonst der Defaultkey",
     .field = ipt<&FrmIPT::tboClg_Scrambled_Key>,
     .needs = scrambling_on,
     .secret = true,
     .title = "Challenge Scramble Key"},
};

// -------------------------------------------------------------------------------------------- Ethernet

inline constexpr Option address_rows[] = {
    {.name = "ip",
     .value = "ADRESSE",
     .help = "IP-Adresse, die das Gerät bekommt",
     .field = at<&Desk::frmEthernet, &FrmEthernet::tboIP>,
     .required = true,
     .title = "IP-Adresse"},
    {.name = "port",
     .value = "PORT",
     .help = "TCP-Port, den das Gerät bekommt; sonst 1234",
     .field = at<&Desk::frmEthernet, &FrmEthernet::tboPort>,
     .title = "Port"},
};
template <auto Member> inline constexpr ControlOf gateway = at<&Desk::frmGateway, Member>;
inline constexpr Option gateway_option = {.name = "gateway",
                                          .value = "ADRESSE",
                                          .help = "Gateway; sonst 0.0.0.0",
                                          .field = gateway<&FrmGateway::tboGateway>,
                                          .title = "Gateway"};
inline constexpr Option netmask_option = {.name = "netzmaske",
                                          .value = "MASKE",
                                          .help = "Netzmaske; sonst 255.255.255.0",
                                          .field = gateway<&FrmGateway::tboNetzmaske>,
                                          .title = "Netzmaske"};
inline constexpr Option pinged_option = {.name = "ip",
                                         .value = "ADRESSE",
                                         .help = "IP-Adresse, die das Gerät hat",
                                         .field = gateway<&FrmGateway::tboIP>,
                                         .required = true,
                                         .title = "IP-Adresse"};
inline constexpr Option gateway_rows[] = {gateway_option, netmask_option};
inline constexpr Option ping_rows[] = {pinged_option};
inline constexpr Option network_gateway_rows[] = {pinged_option, gateway_option, netmask_option};

template <auto Member> inline constexpr ControlOf over_ip = at<&Desk::frmIPoEthernet, Member>;
inline constexpr ControlOf first_address[] = {over_ip<&FrmIPoEthernet::optIP_Erstkonfiguration>};
inline constexpr Option new_address_option = {.name = "neue-ip",
                                              .value = "ADRESSE",
                                              .help = "IP-Adresse, die das Gerät bekommt",
                                              .field = over_ip<&FrmIPoEthernet::tboNeue_IP>,
                                              .required = true,
                                              .title = "Neue IP"};
inline constexpr Option present_address_option = {.name = "momentane-ip",
                                                  .value = "ADRESSE",
                                                  .help = "IP-Adresse, die das Gerät hat",
                                                  .field = over_ip<&FrmIPoEthernet::tboAlte_IP>,
                                                  .required = true,
                                                  .title = "Momentane IP"};
inline constexpr Option mac_option = {.name = "mac",
                                      .value = "00-1C-04",
                                      .help = "das Ende der MAC-Adresse auf dem Gerät, hinter 00-05-B6-",
                                      .field = over_ip<&FrmIPoEthernet::tboMAC_Adresse2>,
                                      .needs = first_address,
                                      .required = true,
                                      .title = "MAC-Adresse"};
inline constexpr Option network_address_rows[] = {new_address_option, present_address_option};
inline constexpr Option first_address_rows[] = {new_address_option, mac_option};
inline constexpr Option over_network_rows[] = {new_address_option, present_address_option, mac_option};

} // namespace telvox::operation
