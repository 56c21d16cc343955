#include "ui/jobs.hpp"

namespace telvox {

namespace {

/// An Analog device lets nobody in without its password; asked for none, the set-up would knock for ever.
constexpr Check password_entered = {
    .holds =
        [](const Desk &d) { return !d.frmModem.optAnalog.value || !d.frmModem.tboPasswort.text.empty(); },
    .otherwise = "Bitte geben Sie das Konfigurations Passwort ein.",
    .field = [](Desk &d) -> Control * { return &d.frmModem.tboPasswort; }};

constexpr Check cable_chosen_to_ask = filled<&FrmModem::cobSchnittstelle>(
    "Zum Erkennen muss die Schnittstelle ausgewählt werden, an der das Telvox-A angeschlossen ist.");

constexpr Check test_remote_checks[] = {
    filled<&FrmModem::cobModem_Port>(
        "Zur Anwahl muss die Schnittstelle ausgewählt werden,\ran der ein Modem angeschlossen ist."),
    filled<&FrmModem::tboRufnummer_Modem>(
        "Um eine Alarmmeldung aus der Ferne auslösen zu können,\rmuss eine Rufnummer eingegeben werden."),
    password_entered,
};
constexpr Check test_direct_checks[] = {
    filled<&FrmModem::cobSchnittstelle>(
        "Zum Absetzen einer Test-Alarmmeldung muss die Schnittstelle ausgewählt werden,\r"
        "an der das Telvox-A angeschlossen ist."),
};
constexpr Check alarm_off_remote_checks[] = {
    filled<&FrmModem::cobModem_Port>(
        "Zum parametrieren muss die Schnittstelle ausgewählt werden,\ran der ein Modem angeschlossen ist."),
    filled<&FrmModem::tboRufnummer_Modem>(
        "Um die Alarmfunktion deaktivieren zu können, muss eine Rufnummer eingegeben werden."),
    password_entered,
};
constexpr Check alarm_off_direct_checks[] = {
    filled<&FrmModem::cobSchnittstelle>(
        "Zum deaktivieren der Alarmmeldung muss die Schnittstelle ausgewählt werden,\r"
        "an der das Telvox-A angeschlossen ist."),
};
constexpr Check configure_remote_checks[] = {
    filled<&FrmModem::tboService_Center>(
        "Um das Telvox-A zu parametrieren, muss eine Service-Center Nummer eingegeben werden."),
    filled<&FrmModem::tboRufnummer_Empfaenger>(
        "Um das Telvox-A zu parametrieren, muss die Rufnummer des Empfängers eingegeben werden."),
    filled<&FrmModem::tboAlarmmeldung>(
        "Um das Telvox-A zu parametrieren, muss ein Alarmtext eingegeben werden."),
    modem_chosen,
    number_entered,
    password_entered,
};
constexpr Check configure_direct_checks[] = {
    configure_remote_checks[0],
    configure_remote_checks[1],
    configure_remote_checks[2],
    cable_chosen,
};

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

const Launch &configure(const Desk &desk) {
    const bool mobile = desk.frmModem.optGSM.value || desk.frmModem.optGPRS.value;
    if (desk.frmModem.optFernverbindung.value)
        return mobile ? configure_remote_mobile : configure_remote;
    return mobile ? configure_direct_mobile : configure_direct;
}

/// Asks what hangs on the cable, whatever variant is chosen.
constexpr Check recognise_checks[] = {cable_chosen_to_ask};
constexpr Launch recognise = {.checks = recognise_checks,
                              .flag = &JobState::boolErkennen,
                              .counter = &JobState::byteErkennen_Counter,
                              .cable_only = true};

} // namespace

void connect_main_window(Desk &desk, Sequencer &sequencer) {
    FrmModem &main = desk.frmModem;
    const bool &remote = main.optFernverbindung.value;
    main.cbuParametrieren.clicked = [&] { sequencer.start(configure(desk), main.cbuParametrieren); };
    main.cbuErkennen.clicked = [&] {
        if (!main.optDirektverbindung.value)
            main.optDirektverbindung.choose(); // it is the cable that is searched
        sequencer.start(recognise, main.cbuErkennen);
    };
    main.cbuTest.clicked = [&] { sequencer.start(remote ? test_remote : test_direct, main.cbuTest); };
    main.cbuAlarm_aus.clicked = [&] {
        sequencer.start(remote ? alarm_off_remote : alarm_off_direct, main.cbuAlarm_aus);
    };

    main.mnuInfo.clicked = opens(desk.frmAbout);
    main.cbuSC_Uebersicht.clicked = [&] {
        const bool mobile = main.optGSM.value || main.optGPRS.value;
        mobile ? desk.frmService_Center.load() : desk.frmServicenummer.load();
    };
}

} // namespace telvox
