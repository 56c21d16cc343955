// The main window's rules: filters, limits, what each variant and connection way enables, and the port lists.

#include "rig/rig.hpp"

#include "core/text.hpp"

#include <gmock/gmock.h>

namespace telvox::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class MainWindow : public testing::Test {
  protected:
    std::string entered(TextBox &box, std::string_view input) {
        rig.program.enter(box, input);
        return box.text;
    }

    Rig rig;
    FrmModem &f = rig.program.desk.frmModem;
};

TEST_F(MainWindow, BoxesTakeOnlyTheirCharacters) {
    rig.program.choose(f.optFernverbindung);
    rig.program.set(f.chkAmt, true);
    EXPECT_EQ(entered(f.tboRufnummer_Empfaenger, "a0+1 7-1\n"), "0171");
    // A number that a "+" was taken from is another number.
    for (const auto &[pasted, kept] : {std::pair{"+49(541)1#", "00495411"},
                                       {" +49 (0) 541-1", "00495411"},
                                       {"(+49)541", "0049541"},
                                       {"0541+1", "05411"},
                                       {"+", ""}})
        EXPECT_EQ(entered(f.tboRufnummer_Modem, pasted), kept);
    EXPECT_EQ(entered(f.tboService_Center, "+49 171*#"), "+49171");
    EXPECT_EQ(entered(f.tboAmt, "a0+*#1"), "0+*#1");
    EXPECT_EQ(entered(f.tboAlarmmeldung, "a\r\nb\tc\x7F\xC2\x85\xE2\x80\xA8\xFF!ü"), "abc!ü");
    // Overlong forms, half a surrogate pair, behind the last code point, cut off.
    for (const char *no_text : {"\xC0\xB1", "\xE0\x80\xA2", "\xF0\x80\x80\xB1", "\xED\xA0\x80",
                                "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xE2\x82", "\xEF\xBF\xBD"}) {
        EXPECT_EQ(entered(f.tboAlarmmeldung, "A" + std::string(no_text) + "B"), "AB");
        EXPECT_EQ(entered(f.tboRufnummer_Empfaenger, std::string(no_text) + "1"), "1");
    }
    rig.program.desk.frmMSN.load();
    rig.program.desk.frmPin.load();
    EXPECT_EQ(entered(rig.program.desk.frmMSN.tboMSN, "*12a+#"), "*12");
    EXPECT_EQ(entered(rig.program.desk.frmPin.tboPin, "1*2 3"), "123");
    const std::string endless(100, '1');
    for (TextBox *number : {&f.tboRufnummer_Modem, &f.tboRufnummer_Empfaenger, &f.tboService_Center})
        EXPECT_EQ(entered(*number, endless).size(), 40u) << number->name;
    EXPECT_EQ(entered(f.tboAmt, endless).size(), 20u);
    EXPECT_EQ(entered(rig.program.desk.frmMSN.tboMSN, endless).size(), 20u);
    EXPECT_EQ(entered(rig.program.desk.frmPin.tboPin, endless).size(), 8u);
    rig.program.set(f.chkPasswort, true);
    EXPECT_EQ(entered(f.tboPasswort, std::string(300, 'x')).size(), 254u);
}

TEST_F(MainWindow, AlarmTextIsLimitedInCharacters) {
    std::string umlauts;
    for (int i = 0; i < 200; ++i)
        umlauts += "ü";
    EXPECT_EQ(length(entered(f.tboAlarmmeldung, umlauts)), 160u);
    EXPECT_EQ(f.lblZeichen_frei.caption, "noch 0");
    rig.program.choose(f.optGSM);
    EXPECT_EQ(length(f.tboAlarmmeldung.text), 70u);
    EXPECT_EQ(f.lblAlarmmeldung.caption, "Alarm&meldung (max. 70 Zeichen):");
    rig.program.choose(f.optISDN);
    EXPECT_EQ(length(f.tboAlarmmeldung.text), 70u);
    EXPECT_EQ(f.lblAlarmmeldung.caption, "Alarm&meldung (max. 160 Zeichen):");
    EXPECT_EQ(f.lblZeichen_frei.caption, "noch 90");
    // What is sent counts: "ß" goes out as two letters.
    EXPECT_EQ(length(entered(f.tboAlarmmeldung, "aß")), 2u);
    EXPECT_EQ(f.lblZeichen_frei.caption, "noch 157");
    std::string sharp;
    for (int i = 0; i < 100; ++i)
        sharp += "ß";
    EXPECT_EQ(length(entered(f.tboAlarmmeldung, "a" + sharp)), 80u);
    EXPECT_EQ(f.lblZeichen_frei.caption, "noch 1");
    rig.program.choose(f.optGSM);
    EXPECT_EQ(length(f.tboAlarmmeldung.text), 35u);
}

TEST_F(MainWindow, AnOptionThatIsSetRunsNothingAndAnalogClearsThePasswordTick) {
    rig.program.enter(f.tboService_Center, "1");
    rig.program.choose(f.optAnalog);
    EXPECT_EQ(f.tboService_Center.text, "1");
    rig.program.choose(f.optISDN);
    rig.program.set(f.chkPasswort, true);
    rig.program.choose(f.optAnalog);
    EXPECT_FALSE(f.chkPasswort.value || f.tboPasswort.usable());
    EXPECT_EQ(f.tboPasswort.text, "BRUNEX");
}

/// What can be used, as one word per control.
std::string usable(const FrmModem &f) {
    std::string list;
    const auto add = [&list](const char *word, bool on) {
        list += on ? std::string(list.empty() ? "" : " ") + word : "";
    };
    // One that is offered where the others are not is seen too; that each opens, the transcripts see.
    add("ISDN", f.mnuMSN_festlegen.usable() || f.mnuISDN_Anschluss.usable());
    add("GSM", f.mnuPin_festlegen.usable() || f.mnuStatus_abfragen.usable());
    add("GPRS", f.mnuGPRS_konfig.usable() || f.mnuIPT_konfig.usable());
    add("Eth", f.mnuIPuPort.usable());
    add("cable", f.cobSchnittstelle.usable());
    add("modem", f.cobModem_Port.usable() && f.tboRufnummer_Modem.usable());
    add("number", f.tboRufnummer_Empfaenger.usable());
    add("amt", f.chkAmt.usable());
    add("service", f.tboService_Center.usable() && f.cbuSC_Uebersicht.usable());
    add("sms", f.optSMS.usable());
    add("fax", f.optFAX.usable());
    add("password", f.chkPasswort.usable());
    add("text", f.tboAlarmmeldung.usable());
    add("PARA", f.cbuParametrieren.usable());
    add("TEST", f.cbuTest.usable());
    add("OFF", f.cbuAlarm_aus.usable());
    return list;
}

TEST_F(MainWindow, StartsWithAnalogOverTheCableBySms) {
    EXPECT_EQ(usable(f), "cable number amt service sms fax password text PARA TEST OFF");
    EXPECT_TRUE(f.optAnalog.value && f.optDirektverbindung.value && f.optSMS.value);
    EXPECT_EQ(f.tboService_Center.text, "090032669000");
    EXPECT_EQ(f.tboPasswort.text, "BRUNEX");
    EXPECT_FALSE(f.tboPasswort.usable());
    EXPECT_EQ(f.StatusBar.text, "Bereit");
    EXPECT_THAT(rig.boxes, IsEmpty());
}

TEST_F(MainWindow, EachVariantOffersWhatItHas) {
    struct Case {
        OptionButton FrmModem::*type;
        const char *direct;
        const char *remote;
        const char *service;
        const char *password;
    };
    // The remote column is what stands after the variant and then the remote way were chosen.
    const Case cases[] = {
        {&FrmModem::optISDN, "ISDN cable number amt service sms password text PARA TEST OFF",
         "modem number amt service sms password text PARA OFF", "090032669000", ""},
        {&FrmModem::optGSM, "GSM cable number service text PARA TEST OFF",
         "modem number service text PARA TEST OFF", "", "BRUNEX"},
        {&FrmModem::optGPRS, "GSM GPRS cable number service text PARA OFF",
         "GPRS modem number service text OFF", "", "BRUNEX"},
        {&FrmModem::optEthernet, "Eth cable", "Eth", "090032669000", "BRUNEX"},
    };
    for (const Case &c : cases) {
        rig.program.choose(f.optAnalog);
        rig.program.choose(f.optDirektverbindung);
        rig.program.choose(f.*c.type);
        EXPECT_EQ(usable(f), c.direct);
        EXPECT_EQ(f.tboService_Center.text, c.service);
        rig.program.choose(f.optFernverbindung);
        EXPECT_EQ(usable(f), c.remote);
        // Analog again: everything is back, whatever was chosen before.
        rig.program.choose(f.optAnalog);
        EXPECT_EQ(usable(f), "modem number amt service sms fax password text PARA TEST OFF");
        EXPECT_EQ(f.tboPasswort.text, "BRUNEX");
    }
    rig.program.choose(f.optEthernet);
    EXPECT_EQ(f.optFernverbindung.caption, "Verbindung über das Netzwerk");
}

TEST_F(MainWindow, IsdnTestIsOfferedOverTheCableAndKeptWhenChosenFromTheRemoteWay) {
    rig.program.choose(f.optEthernet);
    rig.program.choose(f.optISDN);
    EXPECT_TRUE(f.cbuTest.usable());
    rig.program.choose(f.optFernverbindung);
    EXPECT_FALSE(f.cbuTest.usable());
    rig.program.choose(f.optDirektverbindung);
    EXPECT_TRUE(f.cbuTest.usable());
    rig.program.choose(f.optAnalog);
    rig.program.choose(f.optFernverbindung);
    rig.program.choose(f.optISDN);
    EXPECT_TRUE(f.cbuTest.usable());
}

TEST_F(MainWindow, FaxNeedsNoServiceNumberAndIsdnKnowsNoFax) {
    rig.program.choose(f.optFAX);
    EXPECT_FALSE(f.tboService_Center.usable());
    EXPECT_EQ(entered(f.tboService_Center, "1"), "090032669000");
    rig.program.choose(f.optISDN);
    EXPECT_TRUE(f.optSMS.value && f.tboService_Center.usable());
}

TEST_F(MainWindow, TicksOpenTheirFields) {
    rig.program.set(f.chkAmt, true);
    EXPECT_TRUE(f.tboAmt.usable());
    rig.program.set(f.chkPasswort, true);
    EXPECT_EQ(entered(f.tboPasswort, "geheim"), "geheim");
    rig.program.set(f.chkPasswort, false);
    EXPECT_EQ(f.tboPasswort.text, "BRUNEX");
    rig.program.choose(f.optISDN);
    EXPECT_FALSE(f.chkAmt.value || f.tboAmt.usable());
    rig.program.set(f.chkPasswort, true);
    rig.program.set(f.chkPasswort, false);
    EXPECT_EQ(f.tboPasswort.text, "");
}

TEST_F(MainWindow, AJobLocksTheInputsAndItsEndUnlocksThem) {
    rig.choose_cable_port(3);
    rig.program.click(f.cbuTest);
    EXPECT_EQ(usable(f), "");
    rig.turn_by(milliseconds{2000});
    rig.program.refresh();
    EXPECT_EQ(f.lblSchritt.caption, "Schritt 1 von 4, noch 3 s");
    EXPECT_TRUE(f.cbuAbbrechen.usable());
    EXPECT_TRUE(f.cbuBeenden.usable() && f.mnuInfo.usable());
    EXPECT_TRUE(rig.run_until_idle(milliseconds{10000}));
    EXPECT_EQ(usable(f), "cable number amt service sms fax password text PARA TEST OFF");
}

TEST_F(MainWindow, PortListsShowTheFreePortsAndKeepTheChoice) {
    rig.free_ports = {3, 1};
    rig.choose_cable_port(3);
    EXPECT_THAT(f.cobSchnittstelle.items, ElementsAre("COM 1", "COM 3"));
    EXPECT_THAT(f.cobModem_Port.items, ElementsAre("COM 1", "COM 3"));
    EXPECT_EQ(f.cobSchnittstelle.text, "COM 3");
    rig.free_ports = {1, 3, 15, 16};
    rig.program.focus(f.cobSchnittstelle);
    EXPECT_EQ(f.cobSchnittstelle.text, "COM 3");
    EXPECT_THAT(f.cobSchnittstelle.items, ElementsAre("COM 1", "COM 3", "COM 15"));
    rig.free_ports = {};
    rig.program.focus(f.cobSchnittstelle);
    EXPECT_EQ(f.cobSchnittstelle.text, "");
    const Message none{"Kein COM-Port verfügbar", "Laufzeitfehler Schnittstelle", Icon::exclamation};
    EXPECT_THAT(rig.boxes, ElementsAre(none));
    rig.program.select(f.cobSchnittstelle, "COM 7"); // no such entry
    EXPECT_EQ(f.cobSchnittstelle.text, "");
}

TEST_F(MainWindow, PortListsSayWhyAPortIsMissing) {
    const PortInfo locked{.number = 1,
                          .device = "/dev/ttyUSB0",
                          .refusal = "Keine Berechtigung.",
                          .in_short = "keine Berechtigung, Gruppe dialout; danach neu anmelden"};
    const PortInfo busy{.number = 2, .refusal = "Belegt.", .in_short = "von einem anderen Programm belegt"};
    rig.busy_ports = {locked, busy};
    rig.free_ports = {};
    rig.program.focus(f.cobSchnittstelle);
    ASSERT_EQ(rig.boxes.size(), 1u);
    EXPECT_EQ(rig.boxes[0].text,
              "Kein COM-Port verfügbar\r\r"
              "COM 1 (/dev/ttyUSB0): keine Berechtigung, Gruppe dialout; danach neu anmelden\r"
              "COM 2: von einem anderen Programm belegt");
    rig.busy_ports = {busy, {.number = 3, .device = "/dev/ttyS0", .description = "Karte"}};
    rig.program.focus(f.cobSchnittstelle);
    EXPECT_EQ(f.cobSchnittstelle.text, "COM 3") << "nothing was chosen, and there is one";
    EXPECT_EQ(f.cobSchnittstelle.tool_tip, "Nicht verfügbar:\nCOM 2: von einem anderen Programm belegt");
    EXPECT_EQ(f.lblPort_Beschreibung.caption, "/dev/ttyS0, Karte");
    rig.busy_ports = {{.number = 4, .device = "/dev/ttyS1"}};
    rig.program.focus(f.cobSchnittstelle);
    EXPECT_EQ(f.cobSchnittstelle.text, "") << "another one than the chosen one is the user's choice";
    EXPECT_EQ(f.lblPort_Beschreibung.caption, " ");
    EXPECT_EQ(rig.boxes.size(), 1u);
}

TEST_F(MainWindow, ASearchGoesOverTheCableAndLeavesEthernetWhatItHas) {
    rig.choose_cable_port(3);
    rig.program.choose(f.optEthernet);
    rig.program.choose(f.optFernverbindung);
    rig.program.click(f.cbuErkennen);
    EXPECT_TRUE(f.optDirektverbindung.value && rig.program.busy());
    rig.program.cancel();
    for (const Control *none : std::initializer_list<Control *>{
             &f.tboRufnummer_Empfaenger, &f.tboService_Center, &f.cbuSC_Uebersicht, &f.tboAlarmmeldung,
             &f.cbuParametrieren, &f.cbuTest, &f.cbuAlarm_aus})
        EXPECT_FALSE(none->usable()) << none->name;
    EXPECT_TRUE(f.lblMenue_Hinweis.visible);
    rig.program.choose(f.optAnalog);
    EXPECT_TRUE(f.tboAlarmmeldung.usable() && !f.lblMenue_Hinweis.visible);
}

TEST(TheEnd, AsksOnlyWhereTypedWorkWouldBeLost) {
    struct Case {
        const char *name;
        std::function<void(Telvox &)> before; ///< a job that succeeds sends it
        bool sends, asks;
    };
    const auto type = [](Telvox &p) { p.enter(p.desk.frmModem.tboAlarmmeldung, "Pumpe"); };
    const auto change_profile = [](Telvox &p) {
        p.saved();
        p.choose(p.desk.frmModem.optISDN);
    };
    const Case cases[] = {{"a look", [](Telvox &p) { p.choose(p.desk.frmModem.optISDN); }, false, false},
                          {"typed", type, false, true},
                          {"typed and sent", type, true, false},
                          {"filled in", [&](Telvox &p) { p.together([&] { type(p); }); }, false, false},
                          {"profile changed", change_profile, false, true},
                          {"profile sent", change_profile, true, false},
                          {"typed and saved", [&](Telvox &p) { type(p), p.saved(); }, false, false}};
    for (const Case &c : cases) {
        Rig rig;
        Desk &desk = rig.program.desk;
        rig.choose_cable_port(3);
        c.before(rig.program);
        if (c.sends) {
            rig.program.choose(desk.frmModem.optGSM);
            rig.program.click(desk.frmModem.mnuPin_festlegen);
            rig.program.enter(desk.frmPin.tboPin, "1");
            rig.program.click(desk.frmPin.cbuPin_Eingabe);
            rig.turn_by(milliseconds{100});
            rig.arrive("TIME: 1\r\n");
            ASSERT_TRUE(rig.run_until_idle(milliseconds{60'000}));
        }
        rig.program.click(desk.frmModem.cbuBeenden);
        EXPECT_EQ(desk.frmModem.open, c.asks) << c.name;
        if (!c.asks)
            continue;
        EXPECT_EQ(rig.boxes.back().text, "Es gibt nicht gespeicherte Angaben. Trotzdem beenden?");
        rig.answer(true);
        EXPECT_FALSE(desk.frmModem.open);
    }
}

TEST_F(MainWindow, DialogsKeepWhatTheirJobNeeds) {
    Desk &desk = rig.program.desk;
    rig.program.choose(f.optISDN);
    rig.program.choose(f.optFernverbindung);
    rig.program.click(f.mnuMSN_festlegen);
    EXPECT_FALSE(desk.frmMSN.open) << "only over the cable";
    rig.program.choose(f.optGSM);
    rig.program.choose(f.optDirektverbindung);
    rig.program.click(f.mnuPin_festlegen);
    rig.program.enter(desk.frmPin.tboPin, "1234");
    rig.program.click(desk.frmPin.cbuPin_Eingabe);
    EXPECT_TRUE(desk.frmPin.open) << "no port, no start";
    EXPECT_EQ(desk.frmPin.tboPin.text, "1234");
    rig.program.close(desk.frmPin);
    rig.choose_cable_port(3);
    rig.program.click(desk.frmPin.cbuPin_Eingabe);
    EXPECT_FALSE(rig.program.busy()) << "the button of a closed dialog";
    rig.program.click(f.mnuPin_festlegen);
    EXPECT_EQ(desk.frmPin.tboPin.text, "");
    rig.program.click(desk.frmPin.cbuPin_Eingabe);
    EXPECT_EQ(rig.boxes.back().text, "Die PIN wird gelöscht. Fortfahren?");
    rig.answer(false);
    EXPECT_TRUE(desk.frmPin.open && !rig.program.busy());
    rig.program.close(desk.frmPin);

    FrmGSM_Status &status = desk.frmGSM_Status;
    rig.program.click(f.mnuStatus_abfragen);
    status.tboIMEI.text = "490154203237518";
    rig.program.click(status.cbuSignalstaerke);
    ASSERT_TRUE(rig.program.busy());
    for (const auto &[signal, text] : {std::pair{17, "17 von 31, −79 dBm"}, {99, "nicht bekannt"}}) {
        status.show({.signal = signal});
        EXPECT_EQ(status.lblSignalwert.caption, text);
        EXPECT_EQ(status.pzbSignalstaerke.value, signal % 99);
    }
    for (const Button *button : {&status.cbuPIN_Status, &status.cbuReg_zustand, &status.cbuSignalstaerke,
                                 &status.cbuIMEI, &status.cbuSchließen})
        EXPECT_FALSE(button->usable()) << button->name;
    rig.program.click(f.mnuStatus_abfragen);
    EXPECT_TRUE(status.wants_front);
    EXPECT_EQ(status.tboIMEI.text, "490154203237518") << "opened again it changes nothing";
}

TEST_F(MainWindow, LeavingInMidJobAsksAndThenHangsUp) {
    rig.program.choose(f.optFernverbindung);
    rig.free_ports = {6};
    rig.choose_modem_port(6);
    rig.program.enter(f.tboRufnummer_Modem, "1");
    rig.program.click(f.cbuTest);
    rig.turn_by(milliseconds{5000});
    rig.program.click(f.cbuBeenden);
    EXPECT_EQ(rig.journal.back(), "5000 | asks Es läuft noch ein Vorgang. Trotzdem beenden?");
    rig.answer(false);
    EXPECT_TRUE(f.open && rig.program.busy());
    rig.program.close(f);
    rig.answer(true);
    EXPECT_TRUE(f.open) << "the call is hung up first";
    rig.turn_by(milliseconds{3300});
    EXPECT_FALSE(f.open || rig.port.is_open || rig.timer.on);
    EXPECT_EQ(rig.boxes.size(), 2u) << "no message beside the two questions";
    rig.program.Form_Unload();
    f.open = true;
    rig.program.click(f.cbuTest);
    EXPECT_FALSE(rig.program.busy()) << "after the end nothing starts any more";
}

} // namespace
} // namespace telvox::test
