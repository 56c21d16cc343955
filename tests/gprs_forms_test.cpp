// The rules of the GPRS and IP-telemetry dialogs, and what they read: entries of the list, numbers.

#include "core/text.hpp"
#include "rig/rig.hpp"

#include <gmock/gmock.h>
#include <unistd.h>

#include <fstream>

namespace telvox::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(FieldChecks, NumbersOfAnyLength) {
    const std::string endless(1000, '9');
    for (const char *within : {"", "0", "65535", "00000000000065535"})
        EXPECT_FALSE(number_exceeds(within, 65535)) << within;
    for (const char *above : {"65536", "99999999999", "18446744073709551617", endless.c_str()})
        EXPECT_TRUE(number_exceeds(above, 65535)) << above;
}

TEST(AccessPoint, TakesEntriesApart) {
    using Part = std::optional<std::string>;
    const std::pair<std::string_view, AccessPoint> cases[] = {
        {"internet", {.apn = "internet"}},
        {"", {}},
        {"abc: web", {.apn = "abc: web"}}, // the label has at least four characters
        {"äöü: web", {.apn = "äöü: web"}},
        {"äöüß: web x", {.apn = "web", .from_list = true}},
        {"abc: web: x", {.apn = "x", .from_list = true}},
        {"Netz: web", {.apn = "web", .from_list = true}},
        {"Netz: ", {.from_list = true}},
        {"Netz: web (user:me pw:you) z", {"web", true, Part("me"), Part("you")}},
        {"Netz: web (user: pw:)", {"web", true, Part(""), Part("")}},
        {"Netz: web (user:me", {"web", true, Part("me"), {}}},
        {"Netz: web (user:me pw:yo u", {"web", true, Part("me"), Part("yo u")}},
        {"Netz: web (pw:you)", {"web", true, {}, {}}},
        {"Netz: web (User:me PW:you)", {"web", true, {}, {}}},
    };
    for (const auto &[text, expected] : cases)
        EXPECT_EQ(parse_access_point(text), expected) << text;
}

/// Whether the user can work with a window's controls: their names, in the order of the window.
std::string locked(const Form &form) {
    std::string names;
    for (const Control *control : form.controls())
        if (!control->enabled)
            names += std::string(names.empty() ? "" : " ") + control->name;
    return names;
}

/// A GPRS device on the cable, and its windows.
class GprsDialogs : public testing::Test {
  protected:
    GprsDialogs() {
        fs::create_directories(folder);
        rig.program.choose(desk.frmModem.optGPRS);
        rig.choose_cable_port(3);
    }
    ~GprsDialogs() override { fs::remove_all(folder); }
    /// Clicks the button and answers the boxes that wait, in turn; returns how the job then stands.
    std::string start(Button &button, std::initializer_list<bool> answers) {
        rig.boxes.clear();
        rig.program.click(button);
        for (const bool yes : answers)
            rig.answer(yes);
        EXPECT_THAT(rig.answers, IsEmpty());
        std::string texts;
        for (const Message &box : rig.boxes)
            texts += box.text.substr(0, box.text.find('\r')) + (box.asks ? "? " : ". ");
        return texts + (rig.program.busy() ? "runs" : "idle");
    }
    void end_job() {
        rig.program.cancel();
        ASSERT_TRUE(rig.run_until_idle(milliseconds{60'000}));
    }
    void dial() {
        rig.program.choose(desk.frmModem.optFernverbindung);
        rig.choose_modem_port(3);
        rig.program.enter(desk.frmModem.tboRufnummer_Modem, "0171");
    }

    const fs::path folder = fs::temp_directory_path() / ("telvox_gprs_" + std::to_string(getpid()));
    const fs::path list = folder / "gprsapn.dat";
    Rig rig{DataFolders{"/nonexistent", {folder}}};
    Desk &desk = rig.program.desk;
    FrmGPRS &gprs = desk.frmGPRS;
    FrmIPT &ipt = desk.frmIPT;
};

TEST_F(GprsDialogs, OpenWithTheirListAndDesignState) {
    std::ofstream(list, std::ios::binary)
        << "Netz: web (user:me pw:you)\r\n\r\n\x1B[2J" + std::string(100'000, 'x');
    rig.program.click(desk.frmModem.mnuGPRS_konfig);
    EXPECT_TRUE(gprs.open);
    EXPECT_THAT(gprs.cobAPN.items,
                ElementsAre("Netz: web (user:me pw:you)", "", "[2J" + std::string(252, 'x')));
    EXPECT_EQ(locked(gprs), "lblBenutzername tboBenutzername lblPasswort tboPasswort");

    rig.program.select(gprs.cobAPN, "Netz: web (user:me pw:you)");
    EXPECT_EQ(desk.session.strGRPS_APN, "web");
    EXPECT_EQ(gprs.tboBenutzername.text + gprs.tboPasswort.text, "meyou");
    EXPECT_TRUE(gprs.optPPP_PAP.value);
    EXPECT_EQ(locked(gprs), "");
    rig.program.select(gprs.cobAPN, "other\x01"); // typed: user and password stay
    EXPECT_EQ(desk.session.strGRPS_APN, "other");
    EXPECT_EQ(gprs.tboBenutzername.text, "me");
    rig.program.select(gprs.cobAPN, "Netz: bare");
    EXPECT_TRUE(gprs.optPPP_PAP.value);
    rig.program.select(gprs.cobAPN, std::string(64, 'x'));
    EXPECT_EQ(gprs.cobAPN.text, std::string(63, 'x')) << "the box shows what will be sent";
    rig.program.select(gprs.cobAPN, "Netz: " + std::string(64, 'x'));
    EXPECT_EQ(desk.session.strGRPS_APN, std::string(63, 'x'));

    rig.program.enter(gprs.tboIP, "1.2.3.4\n5 a");
    rig.program.enter(gprs.tboIP_Port, "655365");
    rig.program.enter(gprs.tboNummer1, "+49 a171");
    EXPECT_EQ(gprs.tboIP.text + "|" + gprs.tboIP_Port.text + "|" + gprs.tboNummer1.text,
              "1.2.3.45|65536|+49171");
    const std::pair<const char *, const char *> minutes[] = {
        {"", "0"}, {"999", "255"}, {"255", "255"}, {"007", "007"}, {"99999999999999999999999", "255"}};
    for (const auto &[entered, kept] : minutes) {
        rig.program.enter(gprs.tboKeepAlive, entered);
        rig.program.leave(gprs.tboKeepAlive);
        EXPECT_EQ(gprs.tboKeepAlive.text, kept);
    }
    rig.program.close(gprs);
    EXPECT_FALSE(gprs.open);
    fs::remove(list);
    rig.program.click(desk.frmModem.mnuGPRS_konfig);
    EXPECT_EQ(gprs.cobAPN.text + desk.session.strGRPS_APN + gprs.tboIP.text + gprs.tboKeepAlive.text, "0");
    EXPECT_THAT(gprs.cobAPN.items, IsEmpty());
    EXPECT_TRUE(gprs.optPPP_kein.value);
}

TEST_F(GprsDialogs, WritingAsksForWhatIsMissing) {
    const std::string apn = "Es wurde kein APN eingetragen.? ", warns = "Achtung !. ",
                      address = "Es wurde keine gültige IP-Adresse eingetragen.? ",
                      range = "Es wurde keine gültige Portnummer (0-65535) eingetragen.? ",
                      port = "Es wurde keine Portnummer eingetragen.? ",
                      domain = "Es wurde keine Domain Adresse eingetragen.? ";
    struct Case {
        const char *apn, *ip, *ip_port, *domain, *domain_port, *keep_alive;
        OptionButton *target;
        std::initializer_list<bool> answers;
        std::string expected;
        Control *focus = nullptr;
    };
    // clang-format off
    const Case cases[] = {
        {"a", "", "", "", "", "0", &gprs.optCallback1_kein, {}, "runs"},
        {"", "", "", "", "", "5", &gprs.optCallback1_kein, {false, true}, apn + warns + "idle"},
        {"", "", "", "", "", "999", &gprs.optCallback2_kein, {true, true}, apn + warns + "runs"},
        {"a", "300.1.1.1", "65535", "", "", "0", &gprs.optCallback2_IP, {}, "runs"},
        {"a", "1.2.3.", "65536", "", "", "0", &gprs.optStandleitung_IP, {true, true}, address + range + "runs"},
        {"a", "1.2.3.", "", "", "", "0", &gprs.optCallback1_IP, {false, true},
         address + port + "idle", &gprs.tboIP},
        {"", "1", "", "x", "1", "0", &gprs.optCallback1_IP, {true, false, false},
         apn + address + port + "idle", &gprs.tboIP_Port},
        {"a", "", "", "", "99999", "0", &gprs.optCallback1_Domain, {false, true},
         domain + range + "idle", &gprs.tboDomain},
        {"a", "", "", "x", "", "0", &gprs.optStandleitung_Domain, {false},
         port + "idle", &gprs.tboDomain_Port},
        {"", "", "", "x", "0", "", &gprs.optCallback2_Domain, {true, true},
         apn + "Es wurde kein Keep Alive Timerwert eingetragen.. idle", &gprs.tboKeepAlive},
    };
    // clang-format on
    for (const Case &c : cases) {
        rig.program.click(desk.frmModem.mnuGPRS_konfig);
        rig.program.select(gprs.cobAPN, c.apn);
        const std::pair<TextBox *, const char *> fields[] = {{&gprs.tboIP, c.ip},
                                                             {&gprs.tboIP_Port, c.ip_port},
                                                             {&gprs.tboDomain, c.domain},
                                                             {&gprs.tboDomain_Port, c.domain_port},
                                                             {&gprs.tboKeepAlive, c.keep_alive}};
        for (const auto &[box, text] : fields)
            rig.program.enter(*box, text);
        rig.program.choose(*c.target);
        gprs.wants_focus = nullptr;
        EXPECT_EQ(start(gprs.cbuGPRS_schreiben, c.answers), c.expected);
        EXPECT_EQ(gprs.wants_focus, c.focus) << c.expected;
        if (rig.program.busy()) {
            EXPECT_FALSE(number_exceeds(desk.job_values.gprs.keep_alive, 255))
                << "the key press left it in its box";
            end_job();
        }
        rig.program.close(gprs);
    }
}

TEST_F(GprsDialogs, TelemetryChecksItsLoginAndKeysOnlyWhereTheyAreUsed) {
    const std::string user = "Es wurde kein Benutzer eingetragen.? ",
                      password = "Es wurde kein Passwort eingetragen.? ",
                      fixed = "Fixed Scramble Key muss 64 Zeichen lang sein!. ",
                      challenge = "Challenge Scramble Key muss 64 Zeichen lang sein!. ";
    struct Case {
        bool on, scrambled;
        const char *login;
        std::size_t fixed_length, challenge_length;
        std::initializer_list<bool> answers;
        std::string expected;
        int mode = 0;
    };
    const Case cases[] = {
        {false, true, "", 0, 0, {}, "runs", 0},
        {true, false, "me", 0, 0, {}, "runs", 2},
        {true, false, "", 0, 0, {true, true}, user + password + "runs", 2},
        {true, false, "", 0, 0, {false, true}, user + password + "idle"},
        {true, true, "me", 63, 64, {true}, fixed + "idle"},
        {true, true, "me", 64, 63, {true}, challenge + "idle"},
        {true, true, "", 63, 63, {true, false, true, true}, user + password + fixed + challenge + "idle"},
        {true, true, "me", 65, 64, {}, "runs", 3},
    };
    for (const Case &c : cases) {
        rig.program.click(desk.frmModem.mnuIPT_konfig);
        rig.program.set(ipt.chkIPT_Betrieb, true);
        rig.program.choose(ipt.optScrambled);
        rig.program.enter(ipt.tboBenutzer, c.login);
        rig.program.enter(ipt.tboPasswort, *c.login ? "geheim" : "");
        rig.program.enter(ipt.tboFix_Scrambled_Key, std::string(c.fixed_length, '7'));
        rig.program.enter(ipt.tboClg_Scrambled_Key, std::string(c.challenge_length, '8'));
        if (!c.scrambled)
            rig.program.choose(ipt.optUnscrambled);
        rig.program.set(ipt.chkIPT_Betrieb, c.on);
        EXPECT_EQ(start(ipt.cbuIPT_schreiben, c.answers), c.expected);
        if (rig.program.busy()) {
            EXPECT_EQ(desk.job_values.ipt.mode, c.mode);
            EXPECT_EQ(desk.job_values.ipt.fixed_key.size(), c.fixed_length)
                << "the keys are written in every mode";
            end_job();
        }
        rig.program.close(ipt);
    }
    rig.program.click(desk.frmModem.mnuIPT_konfig);
    const std::string record = rig.program.record().transcript();
    EXPECT_THAT(record, testing::HasSubstr("enter frmIPT.tboClg_Scrambled_Key ***\n"));
    for (const char *secret : {"geheim", "777", "888"})
        EXPECT_EQ(record.find(secret), std::string::npos) << secret;
    const std::string default_key = ipt.tboClg_Scrambled_Key.text;
    EXPECT_EQ(default_key.size(), 64u);
    rig.program.set(ipt.chkIPT_Betrieb, true);
    rig.program.choose(ipt.optScrambled);
    rig.program.enter(ipt.tboFix_Scrambled_Key, std::string(200, '1'));
    EXPECT_EQ(ipt.tboFix_Scrambled_Key.text.size(), 128u);
    rig.program.enter(ipt.tboClg_Scrambled_Key, "1");
    rig.program.click(ipt.cbuDefault_Fix);
    EXPECT_EQ(ipt.tboFix_Scrambled_Key.text, default_key);
    EXPECT_EQ(ipt.tboClg_Scrambled_Key.text, "1") << "only its own";
}

/// What a job locks, what stays, and what comes back by the window's own rules.
TEST_F(GprsDialogs, JobsLockTheirWindowUntilTheyEnd) {
    const std::string login = "lblBenutzername tboBenutzername lblPasswort tboPasswort";
    const std::string keys = "lblFix_Scrambled_Key tboFix_Scrambled_Key cbuDefault_Fix lblClg_Scrambled_Key "
                             "tboClg_Scrambled_Key cbuDefault_Clg";
    const std::string ipt_inputs =
        "chkIPT_Betrieb fraIPT_Login lblBenutzer tboBenutzer lblPasswort tboPasswort "
        "fraScramble optUnscrambled optScrambled " +
        keys;
    const std::string gprs_inputs =
        "cobAPN optPPP_kein optPPP_PAP lblBenutzername tboBenutzername lblPasswort tboPasswort tboIP "
        "tboIP_Port "
        "tboDomain tboDomain_Port optStandleitung_aus optStandleitung_IP optStandleitung_Domain tboKeepAlive "
        "tboNummer1 optCallback1_kein optCallback1_IP optCallback1_Domain tboNummer2 optCallback2_kein "
        "optCallback2_IP optCallback2_Domain cbuGPRS_schreiben cbuGPRS_vergleichen chkGPRS_pruefen "
        "cbuGPRS_lesen";
    struct Case {
        bool by_modem;
        MenuEntry &menu;
        Form &form;
        Button &button;
        std::string while_running, then;
    };
    FrmModem &main = desk.frmModem;
    const Case cases[] = {
        {false, main.mnuGPRS_konfig, gprs, gprs.cbuGPRS_schreiben, gprs_inputs, login},
        {false, main.mnuGPRS_konfig, gprs, gprs.cbuGPRS_lesen, gprs_inputs, login},
        {false, main.mnuIPT_konfig, ipt, ipt.cbuIPT_schreiben, ipt_inputs, ipt_inputs.substr(15)},
        {false, main.mnuIPT_konfig, ipt, ipt.cbuIPT_lesen,
         ipt_inputs + " cbuIPT_vergleichen chkIPT_pruefen cbuIPT_lesen cbuIPT_schreiben",
         ipt_inputs.substr(15)},
        {true, main.mnuGPRS_konfig, gprs, gprs.cbuGPRS_schreiben, gprs_inputs,
         login + " cbuGPRS_vergleichen chkGPRS_pruefen cbuGPRS_lesen"},
        {true, main.mnuIPT_konfig, ipt, ipt.cbuIPT_schreiben,
         ipt_inputs + " cbuIPT_vergleichen chkIPT_pruefen cbuIPT_lesen",
         ipt_inputs.substr(15) + " cbuIPT_vergleichen chkIPT_pruefen cbuIPT_lesen"},
    };
    for (const Case &c : cases) {
        if (c.by_modem)
            dial();
        rig.program.click(c.menu);
        rig.program.select(gprs.cobAPN, "a");
        EXPECT_EQ(start(c.button, {}), "runs") << c.button.name;
        EXPECT_EQ(locked(c.form), c.while_running) << c.button.name;
        if (c.button.usable()) { // a second start
            EXPECT_EQ(start(c.button, {}), "Es läuft bereits ein Vorgang.. runs");
        }
        end_job();
        EXPECT_EQ(locked(c.form), c.then) << c.button.name;
        rig.program.close(c.form);
    }
}

/// At 2400 baud the longest values take longer than the wait: they count as long as they come, and no longer.
TEST_F(GprsDialogs, ReadingWaitsForAValueThatIsUnderWay) {
    struct Case {
        const char *label;
        int bytes_every; ///< milliseconds
        int until;
        bool read;
    };
    const Case cases[] = {{"IPTKEYC: ", 50, 2500, true},
                          {"IPTKEYC: ", 50, 1500, false},   // nothing comes any more
                          {"IPTKEYC: ", 50, 60'000, false}, // it never ends
                          {"xIPTKEYC: ", 50, 2500, false},
                          {"", 50, 2500, false}};
    rig.program.click(desk.frmModem.mnuIPT_konfig);
    for (const Case &c : cases) {
        rig.program.click(ipt.cbuIPT_lesen);
        rig.turn_by(milliseconds{100});
        rig.arrive("IMEI: 123456789012345\r\n");
        rig.turn_by(milliseconds{100});
        rig.arrive("OK\r\n");
        rig.turn_by(milliseconds{100});
        const milliseconds asked = rig.now;
        rig.arrive(c.label);
        while (rig.program.busy() && rig.now < asked + milliseconds{c.until}) {
            rig.turn_by(milliseconds{c.bytes_every});
            rig.arrive("7");
        }
        if (c.read)
            rig.arrive("\r\nOK\r\n");
        ASSERT_TRUE(rig.run_until_idle(milliseconds{10'000}));
        EXPECT_EQ(rig.boxes.back().text.starts_with("Das Telvox-A wurde"), c.read) << c.label << c.until;
        EXPECT_LE(rig.now - asked, milliseconds{c.read ? 5000 : c.until == 60'000 ? 4100 : 2000});
    }
}

TEST_F(GprsDialogs, TheirAbbrechenEndsTheirJobAndStaysAtTheirWindow) {
    for (const bool by_modem : {false, true}) {
        if (by_modem)
            dial();
        rig.program.click(desk.frmModem.mnuGPRS_konfig);
        rig.program.select(gprs.cobAPN, "taken over");
        EXPECT_EQ(start(gprs.cbuGPRS_schreiben, {}), "runs");
        rig.program.close(gprs);
        EXPECT_EQ(rig.boxes.back().text, "Der Vorgang wurde abgebrochen.");
        EXPECT_TRUE(gprs.open);
        ASSERT_TRUE(rig.run_until_idle(milliseconds{60'000}));
        rig.program.click(gprs.cbuGPRS_Abbrechen);
        EXPECT_FALSE(gprs.open);
    }
    // Another window's job is not theirs.
    rig.program.choose(desk.frmModem.optDirektverbindung);
    rig.program.click(desk.frmModem.cbuErkennen);
    ASSERT_TRUE(rig.program.busy());
    rig.program.click(desk.frmModem.mnuIPT_konfig);
    rig.program.close(ipt);
    EXPECT_TRUE(rig.program.busy() && !ipt.open);
}

TEST_F(GprsDialogs, MissingConnectionsStopBeforeAnyQuestion) {
    rig.free_ports = {};
    rig.program.focus(desk.frmModem.cobSchnittstelle);
    rig.program.click(desk.frmModem.mnuGPRS_konfig);
    const std::string no_cable = "Zum parametrieren muss die Schnittstelle ausgewählt werden, an der das "
                                 "Telvox-A angeschlossen ist.. idle";
    EXPECT_EQ(start(gprs.cbuGPRS_schreiben, {}), no_cable);
    EXPECT_EQ(start(gprs.cbuGPRS_lesen, {}), no_cable);
    rig.program.choose(desk.frmModem.optFernverbindung);
    EXPECT_EQ(start(gprs.cbuGPRS_schreiben, {}),
              "Zum parametrieren muss die Schnittstelle ausgewählt werden, "
              "an der ein Modem angeschlossen ist.. idle");
    rig.free_ports = {3};
    rig.choose_modem_port(3);
    EXPECT_EQ(start(gprs.cbuGPRS_schreiben, {}),
              "Um das Telvox-A aus der Ferne zu parametrieren, muss eine Rufnummer eingegeben werden.. idle");
}

} // namespace
} // namespace telvox::test
