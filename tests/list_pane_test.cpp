// The window's list of devices, against a simulated device that is carried from cabinet to cabinet.

#include "operation/list_order.hpp"
#include "rig/listed.hpp"
#include "rig/player.hpp"
#include "simulator/analog.hpp"

#include <gmock/gmock.h>
#include <sstream>

namespace telvox::test {
namespace {

using operation::ListPane;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr const char *list = "name;typ;schnittstelle;empfaenger;service-center;alarmtext\n"
                             "Süd;gsm;3;0171;+49171;Pumpe steht\n"
                             "Nord;gsm;3;0172;+49172;\n"
                             "Ost;gsm;3;0173;+49173;Tür offen\n";

TEST_F(Listed, GoesFromDeviceToDeviceAndOnAfterABreak) {
    program.choose(main.optGSM);
    program.enter(main.tboAlarmmeldung, "für alle");
    open(list);
    EXPECT_EQ(main.StatusBar.text, "Gerät 1 von 3: Süd");
    EXPECT_EQ(main.tboRufnummer_Empfaenger.text, "0171");

    EXPECT_EQ(run(), "Gerät 2 von 3: Nord (Zeile 2, Süd: erfolgreich)") << "and no box over it";
    EXPECT_EQ(device->memory.text, "Pumpe steht");
    EXPECT_EQ(main.tboAlarmmeldung.text, "für alle") << "nothing of the row before is left";

    device->silent = true;
    EXPECT_THAT(run(), HasSubstr("Kommunikationsfehler: 31"));
    EXPECT_EQ(bench.rig.boxes.back().about, "Zeile 3, Nord");
    EXPECT_EQ(main.StatusBar.text, "Gerät 2 von 3: Nord (Zeile 3, Nord: fehlgeschlagen)");
    EXPECT_THAT(column(message)[1], HasSubstr("31. Bitte")) << "on one line";
    EXPECT_EQ(main.cbuListe_starten.caption, "Wiede&rholen");
    EXPECT_EQ(main.tblListe.mark(1), RowTable::Mark::bad);
    EXPECT_THAT(column(outcome), ElementsAre("erfolgreich", "fehlgeschlagen", "offen"));
    EXPECT_THAT(results(), AllOf(HasSubstr(";Süd;"), HasSubstr(";Nord;"), HasSubstr("fehlgeschlagen")))
        << "on the disk at once";

    device->silent = false;
    bench.rig.open_failure = "Die Schnittstelle ist nicht vorhanden.";
    EXPECT_THAT(run(), HasSubstr("konnte nicht geöffnet werden"));
    EXPECT_THAT(column(message)[1], HasSubstr("nicht vorhanden"));
    bench.rig.open_failure.clear();
    bench.rig.turn_by(milliseconds{10'000});
    // The user puts something right and presses the job's own button; another job is not the row's.
    program.enter(main.tboRufnummer_Empfaenger, "0199");
    program.click(main.cbuTest);
    bench.run(milliseconds{300'000});
    EXPECT_EQ(column(outcome)[1], "fehlgeschlagen");
    program.click(main.cbuParametrieren);
    bench.run(milliseconds{300'000});
    EXPECT_EQ(device->memory.recipient, "0199");
    EXPECT_EQ(column(outcome)[1], "erfolgreich");

    program.click(main.cbuListe_starten);
    bench.run(milliseconds{300'000}, bench.rig.now + milliseconds{3000},
              [&] { program.click(main.cbuAbbrechen); });
    EXPECT_EQ(column(outcome)[2], "abgebrochen");

    open(list);
    EXPECT_THAT(column(outcome), ElementsAre("erfolgreich", "erfolgreich", "abgebrochen"));
    EXPECT_EQ(main.StatusBar.text, "Gerät 3 von 3: Ost");
    main.wants_focus = nullptr; // the opening's
    program.click(main.cbuListe_ueberspringen);
    EXPECT_EQ(main.lblListe.caption, "l.csv: 3 von 3 erledigt");
    EXPECT_EQ(main.tblListe.mark(0), RowTable::Mark::good);
    EXPECT_EQ(main.tblListe.mark(2), RowTable::Mark::none) << "skipped is no success";
    EXPECT_EQ(main.wants_focus, &main.tblListe) << "the usual Enter must not skip again";
    EXPECT_EQ(main.StatusBar.text, "l.csv: alle Geräte sind erledigt");
    open(list);
    EXPECT_EQ(main.StatusBar.text, "l.csv: alle Geräte sind erledigt");
    EXPECT_FALSE(main.cbuListe_starten.enabled) << "no device is done again by one Enter too many";
    program.choose(main.tblListe, 0);
    run();
    EXPECT_EQ(device->memory.text, "Pumpe steht") << "a row can be repeated";
    EXPECT_EQ(device->memory.text, "Pumpe steht");
    program.click(main.cbuListe_schliessen);
    EXPECT_FALSE(main.fraListe.visible);
    EXPECT_EQ(main.tboAlarmmeldung.text, "für alle");
}

TEST_F(Listed, KnowsWhichDeviceHangsOnTheCable) {
    main.chkListe_pruefen.value = true;
    const auto number = [](int of) { return "00101000000000" + std::to_string(of); };
    std::string table = "name;auftrag;typ;schnittstelle;imei\n";
    for (int row = 1; row <= 8; ++row)
        table += "P" + std::to_string(row) + ";alarm-aus;gsm;3;" + (row == 3 ? number(3) : "") + "\n";
    open(table);
    const auto at = [&](int carried) { // to a device whose alarm is on
        bench.rig.turn_by(milliseconds{10'000});
        device->imei = number(carried);
        device->memory.service_number = "0900";
        const std::string said = run();
        return (device->memory.service_number.empty() ? "written: " : "left alone: ") + said;
    };
    EXPECT_EQ(at(1), "written: Gerät 2 von 8: P2 (Zeile 2, P1: erfolgreich)");
    EXPECT_EQ(at(1), "left alone: Dieses Gerät war schon Zeile 2 (P1). Trotzdem?");
    bench.rig.answer(false);
    EXPECT_EQ(column(outcome)[1], "fehlgeschlagen");
    EXPECT_EQ(at(2), "written: Gerät 3 von 8: P3 (Zeile 3, P2: erfolgreich)");
    EXPECT_EQ(at(4),
              "left alone: Am Kabel hängt ein anderes Gerät: IMEI 001010000000004 statt 001010000000003.");
    EXPECT_EQ(at(3), "written: Gerät 4 von 8: P4 (Zeile 4, P3: erfolgreich)");
    device->silent = true;
    EXPECT_THAT(at(4), HasSubstr("left alone: "));
    device->silent = false;
    EXPECT_THAT(at(4), HasSubstr("written: Gerät 5 von 8"));
    EXPECT_EQ(at(1), "left alone: Dieses Gerät war schon Zeile 2 (P1). Trotzdem?");
    bench.rig.answer(true);
    bench.run(milliseconds{60'000});
    EXPECT_EQ(device->memory.service_number, "");
    for (const int last : {6, 7, 8})
        EXPECT_THAT(at(last), HasSubstr("written: "));
    EXPECT_EQ(main.StatusBar.text, "l.csv: alle Geräte sind erledigt");
    EXPECT_THAT(results(),
                AllOf(HasSubstr("4;P3;1970-01-01 00:00:00;COM 3;erfolgreich;Die Alarmfunktion wurde "
                                "deaktiviert.;001010000000003\r\n"),
                      HasSubstr("statt 001010000000003.;\r\n")));
    EXPECT_FALSE(program.desk.frmGSM_Status.open);

    cable.carry_to(std::make_shared<simulator::Analog>());
    open("name;typ;auftrag;schnittstelle\nA;analog;alarm-aus;3\nB;analog;alarm-aus;3\n");
    EXPECT_THAT(run(), HasSubstr("A: erfolgreich"));
    for (const bool carried : {false, true}) {
        bench.rig.turn_by(milliseconds{10'000});
        EXPECT_EQ(run(),
                  "Am Kabel hing zuletzt das Gerät von Zeile 2 (A). Ist jetzt das andere angeschlossen?");
        bench.rig.answer(carried);
        bench.run(milliseconds{60'000});
        EXPECT_EQ(column(outcome)[1], carried ? "erfolgreich" : "offen");
    }
}

TEST_F(Listed, TakesJobsOfDialogsAndHidesSecrets) {
    open("name;auftrag;typ;schnittstelle;pin\nA;pin;gsm;3;1234\nB;signal;gsm;3;\n");
    EXPECT_THAT(run(), HasSubstr("Zeile 2, A: erfolgreich"));
    EXPECT_EQ(main.tblListe.cell(0, 9), "***");
    EXPECT_EQ(main.tblListe.cell(1, 4), "signal");
    EXPECT_FALSE(program.desk.frmPin.open);
    EXPECT_EQ(results().find("1234"), std::string::npos);
    run();
    EXPECT_THAT(column(outcome), ElementsAre("erfolgreich", "erfolgreich"));
    EXPECT_EQ(column(message)[1], program.desk.frmGSM_Status.lblSignalwert.caption);
}

TEST_F(Listed, NamesADeviceThatIsUnpluggedLater) {
    struct : PortScan {
        std::vector<PortInfo> ports() override { return {}; }
        int number_of(const std::string &) override { return plugged ? 3 : 0; }
        bool plugged = true;
    } scan;
    ListPane by_path(program, scan, profiles, [] { return std::time_t{0}; });
    std::ofstream(folder / "l.csv") << "name;typ;schnittstelle\nA;gsm;/dev/a\nB;gsm;/dev/b\n";
    by_path.open(text_of(folder / "l.csv"));
    scan.plugged = false;
    program.choose(main.tblListe, 1);
    ASSERT_EQ(bench.rig.boxes.size(), 1U);
    EXPECT_THAT(bench.rig.boxes[0].text, HasSubstr("/dev/b"));
    program.click(main.cbuListe_starten);
    EXPECT_FALSE(program.busy()) << "the form holds another device's port";
    EXPECT_EQ(bench.rig.boxes.size(), 2U);
    scan.plugged = true;
    program.choose(main.tblListe, 0);
    EXPECT_EQ(main.cobSchnittstelle.text, "COM 3");
}

TEST_F(Listed, TenRowsWithFaultsAreARecordThatPlays) {
    program.enter(main.tboAlarmmeldung, "von vorhin");
    std::ofstream(folder / "p") << "typ=gsm\nservice-center=+49171\namt=\n";
    profiles.open(text_of(folder / "p"));
    open("name;auftrag;schnittstelle;com-direkt;empfaenger;alarmtext;neu\n"
         "gut;;3;;0171;Text;\n"
         "Frage;signal;3;;;;\n"
         "falsches Format;;3;9600,n,8,1;0172;C;\n"
         "unvollständig;;3;;;D;\n"
         "stumm;imei;3;;;;\n"
         "abgezogen;alarm-aus;3;;;;\n"
         "kein Anschluss;imei;3;;;;\n"
         "abgebrochen;alarm-aus;3;;;;\n"
         "umgestellt;schnittstelle-aendern;3;;;;9600,n,8,1\n"
         "gut;alarm-aus;3;9600,n,8,1;;;\n");
    const auto in_mid_job = [&](const std::function<void()> &happens) {
        program.click(main.cbuListe_starten);
        bench.run(milliseconds{300'000}, bench.rig.now + milliseconds{150}, happens);
    };
    for (std::size_t row = 0; row < main.tblListe.rows; ++row) {
        program.choose(main.tblListe, row);
        device->silent = row == 4 || row == 5 || row == 7;
        bench.rig.open_failure = row == 6 ? "Die Schnittstelle ist nicht vorhanden." : "";
        if (row == 5)
            in_mid_job([&] {
                bench.rig.port.is_open = false;
                program.comSeriell_OnComm(CommEvent::lost);
            });
        else if (row == 7)
            in_mid_job([&] { program.click(main.cbuAbbrechen); });
        else
            run();
        bench.rig.turn_by(milliseconds{5000});
    }
    EXPECT_THAT(column(outcome),
                ElementsAre("erfolgreich", "erfolgreich", "fehlgeschlagen", "offen", "fehlgeschlagen",
                            "fehlgeschlagen", "fehlgeschlagen", "abgebrochen", "erfolgreich", "erfolgreich"));
    program.click(main.cbuListe_schliessen);
    program.click(main.cbuParametrieren);
    std::istringstream record(program.record().transcript());
    EXPECT_EQ(play(Presets().read(record), Playing::whole), "");
}

TEST_F(Listed, KeepsWhatARowCameToWhenTheProgramEnds) {
    open("typ;empfaenger;service-center;alarmtext\ngsm;1;2;x\ngsm;1;2;x\n");
    bench.rig.choose_cable_port(3);
    run();
    EXPECT_EQ(main.cobSchnittstelle.text, "COM 3") << "chosen by the user once, for all rows";
    program.click(main.cbuListe_starten);
    program.click(main.cbuBeenden);
    bench.rig.answer(true);
    EXPECT_THAT(results(), HasSubstr(";abgebrochen;;\r\n"));
}

TEST_F(Listed, LeavesTheFormAsItFoundIt) {
    program.enter(main.tboAlarmmeldung, "alt");
    open(list);
    open("name;typ;empfaenger\nA;gsm;1\n");
    EXPECT_EQ(main.tboAlarmmeldung.text, "alt") << "not what a device of the other list gets";
    open("name;auftrag;msn\nA;msn;1\n");
    EXPECT_TRUE(main.optISDN.value) << "a job of one variant needs no column for it";
    EXPECT_EQ(main.tboRufnummer_Empfaenger.text, "");
    program.click(main.cbuListe_schliessen);
    EXPECT_TRUE(main.optAnalog.value);
    EXPECT_EQ(main.tboAlarmmeldung.text, "alt");
    program.choose(main.optFernverbindung);
    program.set(main.chkPasswort, true);
    program.enter(main.tboPasswort, "geheim");
    open("name;typ;empfaenger\nA;analog;1\n");
    EXPECT_EQ(main.tboPasswort.text, "geheim");
    EXPECT_THAT(program.record().transcript(), AllOf(HasSubstr("passwort=***"), Not(HasSubstr("geheim"))));
}

TEST_F(Listed, EachRowSpeaksTheFormatInForce) {
    program.desk.folders.settings = folder;
    const auto spoken = [&] {
        run();
        return format_text(bench.rig.port.format);
    };
    open("auftrag;typ;schnittstelle;neu\nschnittstelle-aendern;gsm;3;9600,n,8,1\n"
         "schnittstelle-aendern;gsm;3;9600,n,8,1\nimei;gsm;3;\n");
    EXPECT_EQ(spoken(), "9600,n,8,1");
    EXPECT_EQ(column(outcome)[0], "erfolgreich");
    EXPECT_FALSE(program.desk.frmEinstellungen.open);
    EXPECT_TRUE(bench.rig.boxes.empty()) << "nothing asks whether to save";
    EXPECT_FALSE(std::filesystem::exists(folder / "Com.ini"));
    EXPECT_EQ(spoken(), "2400,e,8,1") << "the next device is as the first one was";
    // Settings that the user saves meanwhile hold.
    program.click(main.mnuEinstellungen);
    program.select(program.desk.frmEinstellungen.direkt.baud, "19200");
    program.click(program.desk.frmEinstellungen.cmdOK);
    program.choose(main.tblListe, 2);
    EXPECT_EQ(spoken(), "19200,e,8,1");
    program.click(main.cbuListe_schliessen);
    EXPECT_EQ(program.desk.session.strCOMparameter_direkt, "19200,e,8,1");
}

TEST_F(Listed, NotesHowItsOwnJobEndsWhateverElseGoesOn) {
    device->silent = true;
    FrmGateway &gateway = program.desk.frmGateway;
    const auto ping = [&] {
        program.click(main.mnuGateway);
        program.enter(gateway.tboIP, "10.0.0.9");
        program.click(gateway.cbuVerbindung_pruefen);
    };
    open("auftrag;ip;schnittstelle\nethernet-ip;10.0.0.1;3\nethernet-ip;10.0.0.2;3\n");
    program.click(main.cbuListe_starten);
    EXPECT_EQ(column(outcome)[0], "läuft");
    EXPECT_EQ(main.lblListe.caption, "l.csv: 0 von 2 erledigt") << "it has not failed yet";
    EXPECT_THAT(results(), HasSubstr(";begonnen;")) << "before anything is sent";
    ping();
    program.close(gateway);
    EXPECT_TRUE(gateway.open) << "its button ended the ping";
    ping();
    program.process_ended({.output = "64 bytes from 10.0.0.9: icmp_seq=1 ttl=64\n"});
    program.close(gateway);
    EXPECT_FALSE(gateway.open);
    EXPECT_EQ(column(outcome)[0], "läuft") << "the ping is not the row's, nor the row the ping's window's";
    bench.run(milliseconds{60'000});
    EXPECT_EQ(column(outcome)[0], "fehlgeschlagen");

    // What runs is as it was started: nothing is filled in, opened or closed in its middle.
    std::ofstream(folder / "p.telvox") << "typ=gsm\nempfaenger=0199\n";
    program.click(main.cbuListe_starten);
    bench.rig.boxes.clear();
    profiles.open(text_of(folder / "p.telvox"));
    open(list);
    ASSERT_EQ(bench.rig.boxes.size(), 2U);
    EXPECT_THAT(bench.rig.boxes[0].text, HasSubstr(already_running));
    EXPECT_THAT(bench.rig.boxes[1].text, HasSubstr(already_running));
    program.click(main.cbuListe_schliessen);
    EXPECT_TRUE(main.fraListe.visible && main.optEthernet.value);
    ping();
    program.click(main.cbuAbbrechen);
    program.process_ended({.output = "64 bytes from 10.0.0.9: icmp_seq=1 ttl=64\n"});
    EXPECT_EQ(column(outcome)[0], "abgebrochen");
}

TEST_F(Listed, NothingOfARowIsLeftForTheNext) {
    open("name;auftrag;typ;schnittstelle;pin\nA;pin;gsm;3;1234\nB;pin;gsm;3;5678\n");
    device->silent = true;
    bench.rig.open_failure = "Die Schnittstelle ist nicht vorhanden.";
    run();
    FrmPin &pin = program.desk.frmPin;
    EXPECT_TRUE(pin.open) << "what was wrong may be put right";
    program.enter(pin.tboPin, "4321");
    bench.rig.open_failure.clear();
    device->silent = false;
    program.choose(main.tblListe, 1);
    EXPECT_FALSE(pin.open);
    program.click(main.mnuPin_festlegen);
    program.enter(pin.tboPin, "9999");
    program.click(pin.cbuPin_Eingabe);
    bench.run(milliseconds{60'000});
    EXPECT_EQ(device->memory.pin, "9999");
    EXPECT_EQ(column(outcome)[1], "offen") << "what the user does in a dialog of his own is not the row's";
    bench.rig.turn_by(milliseconds{10'000});
    run();
    EXPECT_EQ(device->memory.pin, "5678");
    EXPECT_FALSE(pin.open);
}

TEST_F(Listed, AsksBeforeARowIsDoneOfWhichNobodyKnowsTheOutcome) {
    const std::string table = "name;auftrag;typ;schnittstelle;pin\nA;pin;gsm;3;1234\n";
    open(table);
    program.click(main.cbuListe_schliessen);
    {
        ResultFile killed(folder / "l-ergebnis.csv", operation::read_list(folder / "l.csv"));
        ASSERT_EQ(killed.append(0, {.outcome = RowOutcome::begun}), "");
    }
    open(table);
    EXPECT_EQ(column(outcome)[0], "begonnen, Ausgang unbekannt");
    for (const bool again : {false, true}) {
        EXPECT_EQ(run(), "Zeile 2, A: begonnen, Ausgang unbekannt. Noch einmal ausführen?");
        EXPECT_TRUE(bench.rig.boxes.back().asks);
        bench.rig.answer(again);
        bench.run(milliseconds{60'000});
        EXPECT_EQ(device->memory.pin, again ? "1234" : "");
    }
    EXPECT_EQ(column(outcome)[0], "erfolgreich");
}

TEST_F(Listed, ThatIsWrongChangesNothing) {
    const struct {
        const char *text, *because;
    } cases[] = {
        {"name;typ;farbe\nA;gsm;rot\n", "farbe"},
        {"name;typ;empfaenger\nA;gsm;1\nB;gsm;12x\n", "l.csv, Zeile 3, Spalte empfaenger: nur Ziffern"},
        {"name;auftrag\nA;tanzen\n", "den Auftrag \"tanzen\" gibt es nicht"},
        {"name;typ\n", "l.csv"},
        {"auftrag;typ;pin\npin;gsm;\n", "l.csv, Zeile 2: pin braucht Spalte pin"},
        {"auftrag\nerkennen\n", "l.csv, Zeile 2: erkennen braucht Spalte schnittstelle"},
        {"typ;empfaenger\ngsm;1x\ngsm;2x\n", "Zeile 2, Spalte empfaenger: nur Ziffern\rl.csv, Zeile 3"},
    };
    program.enter(main.tboAlarmmeldung, "alt");
    for (const auto &[text, because] : cases) {
        bench.rig.boxes.clear();
        open(text);
        ASSERT_EQ(bench.rig.boxes.size(), 1U) << text;
        EXPECT_THAT(bench.rig.boxes[0].text,
                    AllOf(HasSubstr("Die Liste wurde nicht geöffnet."), HasSubstr(because)));
        EXPECT_EQ(main.tboAlarmmeldung.text, "alt");
        EXPECT_FALSE(main.fraListe.visible);
        EXPECT_FALSE(std::filesystem::exists(folder / "l-ergebnis.csv"));
    }
    open(list);
    std::filesystem::copy(folder / "l.csv", folder / "b.csv");
    const ResultFile elsewhere(folder / "b-ergebnis.csv", operation::read_list(folder / "b.csv"));
    pane.open(text_of(folder / "b.csv"));
    EXPECT_THAT(bench.rig.boxes.back().text, HasSubstr("Die Liste wurde nicht geöffnet."));
    EXPECT_TRUE(main.fraListe.visible) << "the one that was open still is";
}

#ifndef _WIN32 // there nobody takes a file away that is open
TEST_F(Listed, NothingIsDoneOfWhichNobodyWouldKnow) {
    open(list);
    std::filesystem::remove(folder / "l-ergebnis.csv");
    run();
    EXPECT_EQ(column(outcome)[0], "abgebrochen");
    EXPECT_EQ(device->memory.recipient, "");
    ASSERT_EQ(bench.rig.boxes.size(), 2U);
    EXPECT_THAT(bench.rig.boxes[0].text, HasSubstr("ließ sich nicht aufschreiben"));
    EXPECT_THAT(bench.rig.boxes[1].text, HasSubstr("abgebrochen"));
}
#endif

} // namespace
} // namespace telvox::test
