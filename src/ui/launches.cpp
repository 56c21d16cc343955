#include "ui/launches.hpp"

#include "core/port_choice.hpp"

#include <algorithm>

namespace telvox {

namespace {

// Inputs that a job needs.
std::string modem_port(const Desk &d) { return d.frmModem.cobModem_Port.text; }
std::string device_port(const Desk &d) { return d.frmModem.cobSchnittstelle.text; }
std::string device_number(const Desk &d) { return d.frmModem.tboRufnummer_Modem.text; }
std::string service_center(const Desk &d) { return d.frmModem.tboService_Center.text; }
std::string receiver(const Desk &d) { return d.frmModem.tboRufnummer_Empfaenger.text; }
std::string alarm_text(const Desk &d) { return d.frmModem.tboAlarmmeldung.text; }

constexpr Check test_remote_checks[] = {
    {modem_port, "Zur Anwahl muss die Schnittstelle ausgewählt werden,\ran der ein Modem angeschlossen ist."},
    {device_number,
     "Um eine Alarmmeldung aus der Ferne auslösen zu können,\rmuss eine Rufnummer eingegeben werden."},
};
constexpr Check test_direct_checks[] = {
    {device_port, "Zum Absetzen einer Test-Alarmmeldung muss die Schnittstelle ausgewählt werden,\r"
                  "an der das Telvox-A angeschlossen ist."},
};
constexpr Check alarm_off_remote_checks[] = {
    {modem_port,
     "Zum parametrieren muss die Schnittstelle ausgewählt werden,\ran der ein Modem angeschlossen ist."},
    {device_number, "Um die Alarmfunktion deaktivieren zu können, muss eine Rufnummer eingegeben werden."},
};
constexpr Check alarm_off_direct_checks[] = {
    {device_port, "Zum deaktivieren der Alarmmeldung muss die Schnittstelle ausgewählt werden,\r"
                  "an der das Telvox-A angeschlossen ist."},
};
constexpr Check configure_remote_checks[] = {
    {service_center, "Um das Telvox-A zu parametrieren, muss eine Service-Center Nummer eingegeben werden."},
    {receiver, "Um das Telvox-A zu parametrieren, muss die Rufnummer des Empfängers eingegeben werden."},
    {alarm_text, "Um das Telvox-A zu parametrieren, muss ein Alarmtext eingegeben werden."},
    {modem_port,
     "Zum parametrieren muss die Schnittstelle ausgewählt werden, an der ein Modem angeschlossen ist."},
    {device_number, "Um das Telvox-A aus der Ferne zu parametrieren, muss eine Rufnummer eingegeben werden."},
};
constexpr Check configure_direct_checks[] = {
    configure_remote_checks[0],
    configure_remote_checks[1],
    configure_remote_checks[2],
    {device_port,
     "Zum parametrieren muss die Schnittstelle ausgewählt werden, an der das Telvox-A angeschlossen ist."},
};
constexpr Check cable_checks[] = {configure_direct_checks[3]};

constexpr Launch test_remote = {
    .checks = test_remote_checks, .flag = &JobState::boolAlarmtest, .counter = &JobState::byteAnwahl_Counter};
constexpr Launch test_direct = {.checks = test_direct_checks, .counter = &JobState::byteAlarmtest_Counter};
constexpr Launch alarm_off_remote = {.checks = alarm_off_remote_checks,
                                     .flag = &JobState::boolAlarm_deaktivieren,
                                     .counter = &JobState::byteAnwahl_Counter};
constexpr Launch alarm_off_direct = {.checks = alarm_off_direct_checks,
                                     .flag = &JobState::boolAlarm_deaktivieren,
                                     .counter = &JobState::byteAlarm_aus_Counter};
constexpr Launch configure_remote = {.checks = configure_remote_checks,
                                     .flag = &JobState::boolParametrieren,
                                     .counter = &JobState::byteAnwahl_Counter};
/// Toward a mobile device the local modem's DTR stays as it is when the configuration is launched.
constexpr Launch configure_remote_mobile = {.checks = configure_remote_checks,
                                            .flag = &JobState::boolParametrieren,
                                            .counter = &JobState::byteAnwahl_Counter,
                                            .raise_dtr = false};
constexpr Launch configure_direct = {.checks = configure_direct_checks,
                                     .counter = &JobState::byteParametrier_Counter};
constexpr Launch configure_direct_mobile = {.checks = configure_direct_checks,
                                            .flag = &JobState::boolParametrieren,
                                            .counter = &JobState::byteParametrier_Counter};

constexpr Launch set_pin = {.checks = cable_checks,
                            .counter = &JobState::bytePin_Counter,
                            .cable_only = true,
                            .prepare = [](Desk &d) { d.session.strPIN = d.frmPin.tboPin.text; }};
constexpr Launch set_msn = {.checks = cable_checks,
                            .counter = &JobState::byteMSN_Counter,
                            .cable_only = true,
                            .prepare = [](Desk &d) { d.session.strMSN = d.frmMSN.tboMSN.text; }};
constexpr Launch set_line_type = {.checks = cable_checks,
                                  .counter = &JobState::byteISDN_Anschluss_Counter,
                                  .cable_only = true,
                                  .prepare = [](Desk &d) {
                                      d.session.byteISDN_Anschlussart =
                                          d.frmAnschlussart.optMehrgeraeteanschluss.value ? 0 : 1;
                                  }};

/// The queries of the GSM status dialog lock its buttons and blank their fields.
constexpr Launch query_pin = {.checks = cable_checks,
                              .flag = &JobState::boolPIN_Status_lesen,
                              .counter = &JobState::bytePin_Status_Counter,
                              .cable_only = true,
                              .prepare = [](Desk &d) {
                                  d.frmGSM_Status.tboStatus.text = d.frmGSM_Status.tboPIN_hinterlegt.text =
                                      "-";
                                  d.frmGSM_Status.enable_buttons(false);
                              }};
constexpr Launch query_registration = {.checks = cable_checks,
                                       .flag = &JobState::boolREG_lesen,
                                       .counter = &JobState::byteGSM_Reg_Counter,
                                       .cable_only = true,
                                       .prepare = [](Desk &d) {
                                           d.frmGSM_Status.tboReg_zustand.text = unknown;
                                           d.frmGSM_Status.enable_buttons(false);
                                       }};
constexpr Launch query_signal = {.checks = cable_checks,
                                 .flag = &JobState::boolFeld_lesen,
                                 .counter = &JobState::byteGSM_Signal_Counter,
                                 .cable_only = true,
                                 .prepare = [](Desk &d) {
                                     d.frmGSM_Status.pzbSignalstaerke.value = 0;
                                     d.frmGSM_Status.enable_buttons(false);
                                 }};
constexpr Launch query_imei = {.checks = cable_checks,
                               .flag = &JobState::boolIMEI_lesen,
                               .counter = &JobState::byteIMEI_Counter,
                               .cable_only = true,
                               .prepare = [](Desk &d) {
                                   d.frmGSM_Status.tboIMEI.text = unknown;
                                   d.frmGSM_Status.enable_buttons(false);
                               }};

const Launch &configure(const Desk &desk) {
    const bool mobile = desk.frmModem.optGSM.value || desk.frmModem.optGPRS.value;
    if (desk.frmModem.optFernverbindung.value)
        return mobile ? configure_remote_mobile : configure_remote;
    return mobile ? configure_direct_mobile : configure_direct;
}

} // namespace

void connect_handlers(Desk &desk, Sequencer &sequencer, const Link &link, SerialPort &scanner) {
    FrmModem &main = desk.frmModem;
    const bool &remote = main.optFernverbindung.value;
    main.cbuParametrieren.clicked = [&] { sequencer.start(configure(desk)); };
    main.cbuTest.clicked = [&] { sequencer.start(remote ? test_remote : test_direct); };
    main.cbuAlarm_aus.clicked = [&] { sequencer.start(remote ? alarm_off_remote : alarm_off_direct); };
    main.cbuBeenden.clicked = [&] { main.unload(); };
    main.cobModem_Port.got_focus =
        main.cobSchnittstelle.got_focus = [&] { prz_freie_Schnittstellen(desk, link, scanner); };

    main.mnuPin_festlegen.clicked = [&] { desk.frmPin.load(); };
    main.mnuMSN_festlegen.clicked = [&] { desk.frmMSN.load(); };
    main.mnuISDN_Anschluss.clicked = [&] { desk.frmAnschlussart.load(); };
    main.mnuStatus_abfragen.clicked = [&] { desk.frmGSM_Status.load(); };

    const auto start_and_unload = [&](const Launch &launch, Form &form) {
        return [&] {
            if (sequencer.start(launch))
                form.unload();
        };
    };
    desk.frmPin.cbuPin_Eingabe.clicked = start_and_unload(set_pin, desk.frmPin);
    desk.frmMSN.cbuMSN_einstellen.clicked = start_and_unload(set_msn, desk.frmMSN);
    desk.frmAnschlussart.cmdAnschlussart_einstellen.clicked =
        start_and_unload(set_line_type, desk.frmAnschlussart);
    desk.frmGSM_Status.cbuPIN_Status.clicked = [&] { sequencer.start(query_pin); };
    desk.frmGSM_Status.cbuReg_zustand.clicked = [&] { sequencer.start(query_registration); };
    desk.frmGSM_Status.cbuSignalstaerke.clicked = [&] { sequencer.start(query_signal); };
    desk.frmGSM_Status.cbuIMEI.clicked = [&] { sequencer.start(query_imei); };

    for (MenuEntry *entry :
         {&main.mnuGPRS_konfig, &main.mnuIPT_konfig, &main.mnuIPuPort, &main.mnuGateway,
          &main.mnuIP_over_Ethernet, &main.mnuEinstellungen, &main.mnuInfo, &main.mnuHilfe})
        entry->clicked = [&] {
            desk.outbox.show("Diese Funktion ist in dieser Version noch nicht enthalten.");
        };
    main.cbuSC_Uebersicht.clicked = main.mnuHilfe.clicked;
}

void prz_freie_Schnittstellen(Desk &desk, const Link &link, SerialPort &scanner) {
    if (link.comSeriell.PortOpen())
        return; // a hang-up still runs: its port is taken, but it is there
    std::vector<std::string> entries;
    for (desk.session.bytePortzaehler = 1; desk.session.bytePortzaehler <= last_port;
         ++desk.session.bytePortzaehler) {
        const int number = desk.session.bytePortzaehler;
        scanner.CommPort(number);
        if (scanner.PortOpen(true).empty())
            entries.push_back(port_entry(number));
        scanner.PortOpen(false);
    }
    for (ComboBox *list : {&desk.frmModem.cobModem_Port, &desk.frmModem.cobSchnittstelle}) {
        list->items = entries;
        if (std::find(entries.begin(), entries.end(), list->text) == entries.end())
            list->text.clear();
    }
    if (entries.empty())
        desk.outbox.show(
            {.text = "Kein COM-Port verfügbar", .title = port_error_title, .icon = Icon::exclamation});
}

} // namespace telvox
