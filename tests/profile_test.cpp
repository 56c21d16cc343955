// Profiles: what is saved comes back, what is wrong changes nothing, dialogs get and keep their part.

#include "cli/call.hpp"
#include "core/files/files.hpp"
#include "operation/profiles.hpp"
#include "rig/rig.hpp"

#include <gmock/gmock.h>

#include <fstream>
#include <sstream>

namespace telvox::test {
namespace {

namespace fs = std::filesystem;
using operation::Profiles;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

/// A program with its profiles and a folder for them.
struct Desktop {
    Desktop() { fs::create_directories(folder); }
    ~Desktop() { fs::remove_all(folder); }

    std::string write(const std::string &text) {
        std::ofstream(folder / "p.telvox", std::ios::binary) << text;
        return text_of(folder / "p.telvox");
    }
    std::string saved(bool secrets = false) {
        profiles.save(text_of(folder / "s.telvox"), secrets);
        std::ostringstream text;
        text << std::ifstream(folder / "s.telvox").rdbuf();
        return text.str();
    }
    template <class Kind> Kind &control(const char *form, const char *name) {
        for (Form *candidate : desk.forms)
            if (candidate->name == std::string_view(form))
                return *candidate->find<Kind>(name);
        throw std::invalid_argument(name);
    }

    fs::path folder = fs::temp_directory_path() / "telvox_profile_test";
    Rig rig{{folder, {SHARE}}};
    Telvox &program = rig.program;
    Desk &desk = program.desk;
    Profiles profiles{program, rig.scan};
};

TEST(Profile, ComesBackAsItWasSaved) {
    const char *const profiles[] = {
        "typ=analog\nverbindung=fern\nmodemanschluss=COM 6\nrufnummer-modem=0541123\n"
        "passwort=geheim\ncom-direkt=1200,e,7,2\ncom-fern=9600,n,8,1\nnachricht=fax\nempfaenger=0171\namt=0\n"
        "alarmtext=Pumpe \"Süd\" = 3 # steht\n",
        "typ=isdn\nverbindung=direkt\nanbieter=Telekom SMS im Festnetz 0193010\nservice-center=0193010\n\n"
        "[MSN]\nmsn=*\n\n[Anschlussart]\nanschlussart=punkt-zu-punkt\n",
        "typ=gprs\nempfaenger=0049171\nservice-center=+491710760000\n\n[PIN]\npin=1234\n\n"
        "[GPRS]\napn=internet.t-mobile\nppp=pap\nbenutzer=b\nkennwort=k\nziel-ip=10.0.0.1\ncallback1=ip\n\n"
        "[IP-Telemetrie]\ntelemetrie=ein\nbenutzer=anderer\nkennwort=kk\nverschleierung=aus\n",
        "typ=ethernet\n\n[IP und Port]\nip=192.168.1.5\nport=80\n\n[Gateway]\nip=192.168.1.6\n"
        "gateway=192.168.1.1\nnetzmaske=255.255.255.0\n\n[Netzwerk]\nneue-ip=192.168.1.7\nmac=00-1C-04\n",
    };
    for (const char *text : profiles) {
        Desktop first;
        first.profiles.open(first.write(text));
        ASSERT_TRUE(first.rig.boxes.empty()) << first.rig.boxes[0].text;
        for (const operation::Section &section : operation::sections())
            if (auto &entry = dynamic_cast<MenuEntry &>(section.menu(first.desk)); entry.usable()) {
                first.program.click(entry);
                first.program.close(section.form(first.desk));
            }
        const std::string saved = first.saved(true);
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);)
            EXPECT_THAT(saved, HasSubstr(line + "\n"));

        Desktop second;
        second.program.set(second.desk.frmModem.chkAmt, true);
        second.program.enter(second.desk.frmModem.tboAmt, "9");
        second.program.enter(second.desk.frmModem.tboAlarmmeldung, "von vorhin");
        second.profiles.open(second.write(saved));
        EXPECT_EQ(second.saved(true), saved) << "nothing of what stood there before is left";
        second.profiles.open(second.write("typ=gsm\n"));
        EXPECT_EQ(second.desk.frmModem.tboAlarmmeldung.text, "") << "one that names a variant begins anew";
        EXPECT_THAT(second.saved(true), Not(HasSubstr("rufnummer-modem="))) << "locked";
    }
}

TEST(Profile, SaysWhichLineIsWrongAndFillsNothing) {
    const struct {
        std::string text, because;
    } cases[] = {
        {"typ=gsm\nempfänger=1\n", "p.telvox, Zeile 2: \"empfänger\" gibt es nicht"},
        {"typ=gsm\r\nempfaenger=12a\r\n", "p.telvox, Zeile 2: empfaenger: nur Ziffern"},
        {"# nichts\n\ntyp=gsm2\n", "Zeile 3: typ: \"gsm2\" gibt es nicht (analog,"},
        {"typ=ethernet\nempfaenger=12\n", "Zeile 2: empfaenger gibt es nicht mit typ ethernet"},
        {"alarmtext\n", "Zeile 1: \"alarmtext\" hat nicht die Form name=wert"},
        {"alarmtext=a\nalarmtext=b\n", "Zeile 2: alarmtext ist doppelt"},
        {"alarmtext=a\n[GPRS]\nmsn=1\n", "Zeile 3: \"msn\" gibt es nicht in [GPRS]"},
        {"[GPSR]\n", "den Abschnitt [GPSR] gibt es nicht"},
        {"benutzer=a\n", "\"benutzer\" gibt es mehrmals; es gehört hinter eine Zeile [GPRS]"},
        {"alarmtext=neu\n[GPRS]\nkeep-alive=x\n", "Zeile 3: keep-alive: nur Ziffern"},
        {"alarmtext=neu\n[MSN]\nmsn=12a\n", "Zeile 3: msn: nur Ziffern und *"},
        {"schnittstelle=17\n", "ist weder eine COM-Nummer"},
        {std::string("typ=gsm\0", 8), "kein Text"},
        {"typ=\xFF\n", "kein Text"},
        {std::string("\xFF\xFEm\0\xFC\0l\0l\0=\0", 12), "Zeile 1: \"müll\" gibt es nicht"},
        {std::string("\xFF\xFE\0\xD8", 4), "kein Text"},
        {std::string(100'000, 'a'), "größer als 64 KB"},
    };
    Desktop desktop;
    desktop.program.enter(desktop.desk.frmModem.tboAlarmmeldung, "alt");
    const std::string before = operation::profile_text(desktop.desk, {}, true);
    const std::string record = desktop.program.record().transcript();
    for (const auto &[text, because] : cases) {
        desktop.profiles.open(desktop.write(text));
        ASSERT_EQ(desktop.rig.boxes.size(), 1U) << text;
        EXPECT_THAT(desktop.rig.boxes[0].text,
                    AllOf(HasSubstr("Das Profil wurde nicht geöffnet.\r"), HasSubstr(because)));
        desktop.rig.boxes.clear();
        EXPECT_EQ(operation::profile_text(desktop.desk, {}, true), before) << text;
        EXPECT_EQ(desktop.desk.frmModem.cobSchnittstelle.items, std::vector<std::string>());
    }
    for (const char *path : {"/nonexistent/p.telvox", "/dev/zero", "/"}) {
        desktop.profiles.open(path);
        EXPECT_EQ(desktop.rig.boxes.size(), 1U) << path;
        desktop.rig.boxes.clear();
    }
    // What the form holds then is a device's.
    desktop.profiles.list_is_open = [] { return true; };
    desktop.profiles.open(desktop.write("alarmtext=neu\n"));
    EXPECT_THAT(desktop.rig.boxes.at(0).text, HasSubstr("Zuerst muss die Liste geschlossen werden"));
    EXPECT_TRUE(desktop.desk.remembered.profiles.empty());
    EXPECT_THAT(desktop.program.record().transcript(),
                HasSubstr(record.substr(0, record.rfind('\n', record.size() - 2))));
}

TEST(Profile, FillsADialogWheneverItOpensAndFollowsItsUser) {
    Desktop desktop;
    auto &apn = desktop.control<ComboBox>("frmGPRS", "cobAPN");
    auto &password = desktop.control<TextBox>("frmGPRS", "tboPasswort");
    const auto open = [&] { desktop.program.click(desktop.desk.frmModem.mnuGPRS_konfig); };
    const auto close = [&] { desktop.program.close(desktop.desk.frmGPRS); };

    desktop.profiles.open(desktop.write("typ=gprs\n[GPRS]\napn=eins\nppp=pap\nbenutzer=b\n"));
    open();
    EXPECT_EQ(apn.text, "eins");
    desktop.program.select(apn, "zwei");
    desktop.program.enter(password, "geheim");
    close();
    open();
    EXPECT_EQ(apn.text, "zwei");
    EXPECT_EQ(password.text, "") << "no secret is kept that nobody wanted to be kept";
    desktop.program.enter(password, "geheim");
    close();
    EXPECT_THAT(desktop.saved(), AllOf(HasSubstr("apn=zwei\n"), Not(HasSubstr("geheim"))));
    EXPECT_THAT(desktop.saved(true), HasSubstr("kennwort=geheim\n"));
#ifndef _WIN32
    EXPECT_EQ(fs::status(desktop.folder / "s.telvox").permissions(),
              fs::perms::owner_read | fs::perms::owner_write);
#endif
    EXPECT_EQ(desktop.desk.remembered.profiles.size(), 2U);
    EXPECT_EQ(desktop.desk.frmModem.mnuProfil1.caption, "&1 s.telvox");
    EXPECT_FALSE(desktop.desk.frmModem.mnuProfil3.visible);

    // What a list puts into it is not the next device's.
    desktop.profiles.list_is_open = [] { return true; };
    open();
    desktop.program.select(apn, "von einem Gerät");
    close();
    open();
    EXPECT_EQ(apn.text, "zwei");
    close();
    desktop.profiles.list_is_open = [] { return false; };

    // Without its [GPRS] the dialog opens as it does at the first time.
    desktop.profiles.open(desktop.write("typ=gprs\n"));
    open();
    EXPECT_EQ(apn.text, Desktop().control<ComboBox>("frmGPRS", "cobAPN").text);
}

TEST(Profile, IsThereAgainWhereTheWindowBeginsAsItWasLeft) {
    for (const bool wanted : {true, false}) {
        const std::string title = "Telvox-A Konfiguration";
        Desktop left;
        left.program.click(left.desk.frmModem.mnuEinstellungen);
        left.program.set(left.desk.frmEinstellungen.chkWie_zuletzt, wanted);
        left.program.click(left.desk.frmEinstellungen.cmdOK);
        left.profiles.open(left.write("typ=gsm\nempfaenger=0171\nalarmtext=Pumpe\n"));
        EXPECT_EQ(left.desk.frmModem.caption, "p.telvox – " + title);
        left.rig.choose_cable_port(3);
        EXPECT_EQ(left.desk.frmModem.caption, "p.telvox* – " + title);
        left.profiles.note_left("800 600 0");

        Rig rig{{left.folder, {SHARE}}}; // the next start
        Profiles profiles{rig.program, rig.scan};
        FrmModem &main = rig.program.desk.frmModem;
        profiles.begin_as_left();
        EXPECT_EQ(main.optGSM.value, wanted);
        EXPECT_EQ(main.cobSchnittstelle.text, wanted ? "COM 3" : "");
        EXPECT_EQ(main.tboAlarmmeldung.text, wanted ? "Pumpe" : "");
        EXPECT_EQ(main.caption, wanted ? "p.telvox – " + title : title);
        EXPECT_EQ(rig.program.desk.remembered.geometry, wanted ? "800 600 0" : "");
        EXPECT_TRUE(rig.boxes.empty());

        fs::remove(left.folder / "p.telvox");
        Rig later{{left.folder, {SHARE}}};
        Profiles(later.program, later.scan).begin_as_left();
        EXPECT_EQ(later.boxes.size(), wanted ? 1U : 0U) << "it is gone, and the user hears of it";
        EXPECT_EQ(later.program.desk.frmModem.optGSM.value, wanted);
        EXPECT_EQ(later.program.desk.frmModem.tboService_Center.text.empty(), wanted)
            << "another variant's number";
    }
}

TEST(Profile, HoldsNoSecretThatNobodyWantedInIt) {
    Desktop desktop;
    // Secrets of the profile that was opened, of a dialog that nobody opened, and of an entry of the list.
    desktop.profiles.open(
        desktop.write("typ=gprs\n[PIN]\npin=9876\n[GPRS]\napn=Netz: web (user:ich pw:geheim)\n"
                      "kennwort=geheim\n[IP-Telemetrie]\nkennwort=geheim2\n"));
    ASSERT_TRUE(desktop.rig.boxes.empty()) << desktop.rig.boxes[0].text;
    for (const bool opened : {false, true}) {
        if (opened) {
            desktop.program.click(desktop.desk.frmModem.mnuGPRS_konfig);
            desktop.program.close(desktop.desk.frmGPRS);
        }
        EXPECT_THAT(desktop.saved(),
                    AllOf(Not(HasSubstr("geheim")), Not(HasSubstr("9876")), HasSubstr("apn=web\n")));
        desktop.profiles.open(text_of(desktop.folder / "p.telvox"));
    }
    EXPECT_THAT(desktop.saved(true), AllOf(HasSubstr("kennwort=geheim\n"), HasSubstr("pin=9876\n")));
}

TEST(Profile, IsWhatTheCommandLineTakes) {
    Desktop desktop;
    const std::string file = desktop.write("typ=gprs\nschnittstelle=3\nalarmtext=x\n[GPRS]\nbenutzer=g\n"
                                           "[IP-Telemetrie]\nbenutzer=i\n[PIN]\npin=1\n");
    const struct {
        const char *job, *option, *value;
    } cases[] = {{"gprs-schreiben", "benutzer", "g"},
                 {"ipt-schreiben", "benutzer", "i"},
                 {"parametrieren", "alarmtext", "x"},
                 {"pin", "pin", "1"}};
    for (const auto &[job, option, value] : cases) {
        cli::Call call = cli::parse_call({job, "--aus", file});
        std::istringstream nothing;
        cli::complete_call(call, nothing);
        ASSERT_TRUE(call.find(option)) << job;
        EXPECT_EQ(call.find(option)->value, value);
        EXPECT_EQ(call.find("typ")->value, "gprs");
    }
}

} // namespace
} // namespace telvox::test
