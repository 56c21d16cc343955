// The serial settings with their file, the list files and number lists, and the help's table of contents.

#include "core/files/list_files.hpp"
#include "core/help_topics.hpp"
#include "rig/rig.hpp"

#include <gmock/gmock.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <iterator>

namespace telvox::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// A program whose files lie in a folder of its own.
class SettingsForms : public testing::Test {
  protected:
    SettingsForms() {
        fs::create_directories(folder);
        rig.choose_cable_port(3);
    }
    ~SettingsForms() override { fs::remove_all(folder); }

    void write(const char *name, std::string_view content) {
        std::ofstream(folder / name, std::ios::binary) << content;
    }
    std::string saved() {
        std::ifstream file(folder / "Com.ini", std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    std::vector<std::string> shown() const {
        return {f.direkt.settings(), f.fern.settings(), f.soll.settings()};
    }
    /// Changes the device to 9600,n,8,1 as an Analog one that answers.
    void change_device() {
        p.click(d.frmModem.mnuEinstellungen);
        p.set(f.cboSchnittstelle_aendern, true);
        p.select(f.cobSchnittstelle_Baud_soll, "9600");
        p.select(f.cobSchnittstelle_Parity_soll, "none");
        p.click(f.cmdUART_Einstellung_aendern);
        for (int i = 0; i < 100 && p.busy(); ++i) {
            rig.turn_by(milliseconds{100});
            rig.arrive("33600\r\n");
        }
        EXPECT_THAT(rig.boxes.back().text, HasSubstr("erfolgreich"));
    }

    const fs::path folder = fs::temp_directory_path() / ("telvox_settings_" + std::to_string(getpid()));
    Rig rig{{folder, {folder}}};
    Telvox &p = rig.program;
    Desk &d = p.desk;
    FrmEinstellungen &f = d.frmEinstellungen;
};

TEST_F(SettingsForms, ShowTheSessionAndTheFactoryWhereThatIsNone) {
    struct Case {
        const char *session_direkt, *session_fern, *direkt, *fern;
    };
    constexpr Case cases[] = {
        {"", "", "2400,e,8,1", "9600,n,8,1"},
        {"38400,o,7,2", "2400,e,7,2", "38400,o,7,2", "2400,e,7,2"},
        {"9600,n,8,1.5", "1200,n,8,1", "9600,n,8,1", "1200,n,8,1"},
        {"57600,n,8,1", "115200,n,8,1", "2400,n,8,1", "115200,n,8,1"},
        {"Unsinn", ",,,,,", "2400,e,8,1", "9600,n,8,1"},
        {"77,x,9,3", "19200", "2400,e,8,1", "9600,n,8,1"},
    };
    for (const Case &c : cases) {
        d.session.strCOMparameter_direkt = c.session_direkt;
        d.session.strCOMparameter_fern = c.session_fern;
        p.click(d.frmModem.mnuEinstellungen);
        EXPECT_THAT(shown(), ElementsAre(c.direkt, c.fern, "2400,e,8,1"));
        p.select(f.cobSchnittstelle_Baud_soll, "300");
        p.click(f.cmdCancel);
    }
    d.frmModem.cobSchnittstelle.text.clear();
    p.click(d.frmModem.mnuEinstellungen);
    EXPECT_FALSE(f.cboSchnittstelle_aendern.usable()) << "there is no device to change";
    EXPECT_EQ(saved(), "");
}

TEST_F(SettingsForms, AreSavedWithOkAndOnlyThen) {
    p.click(d.frmModem.mnuEinstellungen);
    EXPECT_FALSE(f.cmdUART_Einstellung_aendern.usable());
    p.select(f.cobSchnittstelle_Baud, "1200");
    p.select(f.cobSchnittstelle_Bitzahl, "7");
    p.select(f.cobModem_Parity, "odd");
    p.click(f.cmdCancel);
    EXPECT_EQ(d.session.strCOMparameter_direkt + saved(), "");

    p.click(d.frmModem.mnuEinstellungen);
    p.click(f.cbuModem_Standard);
    EXPECT_EQ(d.session.strCOMparameter_fern, "9600,n,8,1") << "the default holds at once";
    EXPECT_EQ(saved(), "");
    p.select(f.cobSchnittstelle_Baud, "1200");
    fs::create_directories(folder / "Com.ini" / "x");
    p.click(f.cmdOK);
    EXPECT_TRUE(f.open) << "what cannot be saved is not lost";
    EXPECT_EQ(rig.boxes.size(), 1u);
    EXPECT_EQ(d.session.strCOMparameter_direkt, "");
    fs::remove_all(folder / "Com.ini");
    p.click(f.cmdOK);
    EXPECT_FALSE(f.open);
    EXPECT_EQ(d.session.strCOMparameter_direkt, "1200,e,8,1");
    EXPECT_THAT(saved(), HasSubstr("Baudrate, 1200\r\nBitzahl, 8\r\nParity, even\r\nStoppbits, 1\r\n\r\n"));
}

TEST_F(SettingsForms, AskBeforeANewFormatOfTheDeviceIsForgotten) {
    for (const bool yes : {false, true}) {
        change_device();
        EXPECT_EQ(d.session.strCOMparameter_direkt, "9600,n,8,1");
        p.select(f.cobModem_Baudrate, "2400");
        p.close(f);
        EXPECT_EQ(rig.boxes.back().text,
                  "Die neue Schnittstelleneinstellung ist noch nicht gespeichert. Jetzt speichern?");
        EXPECT_TRUE(f.open && saved().empty() && rig.boxes.back().can_go_back);
        rig.answer(yes);
        EXPECT_FALSE(f.open);
        d.session.strCOMparameter_direkt = yes ? d.session.strCOMparameter_direkt : "2400,e,8,1";
    }
    EXPECT_EQ(d.session.strCOMparameter_direkt, "9600,n,8,1");
    EXPECT_THAT(saved(), HasSubstr("Baudrate, 9600\r\nBitzahl, 8\r\nParity, none\r\n"));
    EXPECT_THAT(saved(), Not(HasSubstr("2400"))) << "what was cancelled beside it is not saved";
    change_device();
    p.click(f.cmdOK);
    p.click(d.frmModem.mnuEinstellungen);
    p.close(f);
    EXPECT_FALSE(f.open) << "all is saved";
}

TEST_F(SettingsForms, LinesAreReadWhateverWroteThem) {
    using Lines = std::vector<std::string>;
    const auto lines_of = [&](std::string_view content) {
        write("FSN.dat", content);
        return read_lines(folder / "FSN.dat");
    };
    const std::pair<std::string_view, Lines> cases[] = {
        {"", {}},
        {"a: b\r\n\r\nc", {"a: b", "", "c"}},
        {"\xEF\xBB\xBF"
         "ä\nb\n",
         {"ä", "b"}},
        {"\xE4\r\n\x80", {"ä", "€"}},
        {"ä\n\xE4", {"Ã¤", "ä"}}, // one byte decides for the whole file
        {"\xC0\xAF\xED\xA0\x80", {"À¯í\u00A0€"}},
        {std::string_view("a\0b\n\r\r\n", 7), {std::string("a\0b", 3), "\r"}},
    };
    for (const auto &[content, lines] : cases)
        EXPECT_EQ(lines_of(content), lines) << content;
    EXPECT_THAT(lines_of(std::string(10'000'000, 'x')), IsEmpty());
    EXPECT_EQ(lines_of(std::string(10'000'000, '\n')).size(), 5000u);
    EXPECT_EQ(lines_of("ü\n" + std::string(262142, 'x') + "ü"), Lines{"ü"}) << "no half characters";
    for (const fs::path &none : {fs::path(), folder, folder / "none", fs::path("/dev/zero")})
        EXPECT_THAT(read_lines(none), IsEmpty()) << none;
}

TEST_F(SettingsForms, ListsAreLookedForInTheirOrder) {
    constexpr const char *name = "gprsapn.dat";
    const fs::path data = folder / "data", program = folder / "bin", shared = folder / "share" / "telvox";
    const auto folders = list_folders(data, program);
    EXPECT_EQ(find_list_file(folders, name), fs::path());
    for (const fs::path &place : {shared, program, data}) {
        fs::create_directories(place / name); // a folder of that name is no list
        EXPECT_NE(find_list_file(folders, name), place / name);
        fs::remove(place / name);
        std::ofstream(place / name) << "x";
        EXPECT_EQ(find_list_file(folders, name), place / name);
    }
}

TEST(NumberLists, GiveEachLineItsNumberAndCodes) {
    using Entries = std::vector<ServiceNumber>;
    const std::pair<std::string, ServiceNumber> centers[] = {
        {"D-Netz", {.label = "D-Netz", .heading = true}},
        {"", {.heading = true}},
        {"Äöüßé D1 +49171 ", {.label = "Äöüßé D1 +49171 ", .number = "+49171"}},
        {"123456789+1", {.label = "123456789+1", .number = "+1"}},
        {"12345678+1", {.label = "12345678+1"}},
        {"Netz +1   +49 171", {.label = "Netz +1   +49 171", .number = "+49 171"}},
        {"+", {.label = "+"}},
    };
    for (const auto &[line, entry] : centers)
        EXPECT_EQ(parse_service_centers({line}), Entries{entry}) << line;
    EXPECT_FALSE(parse_service_centers(std::vector<std::string>(21, "x"))[20].heading);

    const std::pair<std::string, Entries> numbers[] = {
        {"Festnetz", {}},
        {"Anbieter  0193010,M6,M1,aldest=1",
         {{"Anbieter  0193010", "0193010", false, "M6", "M1", "aldest=1"}}},
        {"Anbieter  0193,M65,,aldest=12", {{"Anbieter  0193", "0193", false, "M6", ",a", "aldest=1"}}},
        {"0", {{.label = "0"}}},
        {",0", {{.protocol = "0"}}},
        {"Büro 0 GmbH  01", {{.label = "Büro 0 GmbH  01", .number = "01"}}},
    };
    for (const auto &[line, entries] : numbers)
        EXPECT_EQ(parse_service_numbers({line}), entries) << line;
    const auto many = parse_service_numbers(std::vector<std::string>(22, "Anbieter  01,M2,M3,aldest=0"));
    EXPECT_EQ(many[20].protocol_remote + many[21].protocol + many[21].number, "aldest=001");

    const auto all = parse_service_centers({"D-Netz Telekom", "Telekom D1  +1", "Telekom D2 +2"});
    EXPECT_EQ(entries_with(all, "telekom").size(), 2u);
    EXPECT_EQ(entries_with(all, "d1").at(0).number, "+1");
    EXPECT_TRUE(entries_with(all, "netz").empty());
}

TEST_F(SettingsForms, AHeadingOfTheServiceCentersIsNeverChosen) {
    write("SCN.dat", "A\r\nB\r\nTelekom D1   +49 171\r\nC\r\nO2           +49176\r\nkurz +1\r\nD\r\n");
    p.choose(d.frmModem.optGSM);
    p.click(d.frmModem.cbuSC_Uebersicht);
    ListBox &list = d.frmService_Center.lstSCNummer;
    const auto key = [&](int to) {
        p.select(list, to);
        return list.selected;
    };
    const auto click = [&](int to) {
        p.click(list, to);
        return list.selected;
    };
    EXPECT_EQ(click(0), 2);
    EXPECT_EQ(key(3), 4) << "down";
    EXPECT_EQ(key(3), 2) << "up";
    EXPECT_EQ(key(1), 2) << "nothing above: the other way";
    EXPECT_EQ(click(3), 4) << "a click goes down";
    EXPECT_EQ(key(6), 5) << "nothing below";
    p.click(d.frmService_Center.cbuOK);
    EXPECT_EQ(d.frmModem.tboService_Center.text, "") << "this one has no number";
    p.click(d.frmModem.cbuSC_Uebersicht);
    EXPECT_EQ(list.selected, -1);
    p.click(list, 2);
    p.double_click(list);
    EXPECT_FALSE(d.frmService_Center.open);
    EXPECT_EQ(d.frmModem.tboService_Center.text, "+49171");

    write("SCN.dat", "A\nB");
    p.click(d.frmModem.cbuSC_Uebersicht);
    EXPECT_EQ(key(1), -1);
    p.click(d.frmService_Center.cbuOK);
    EXPECT_EQ(d.frmModem.tboService_Center.text, "+49171");
    fs::remove(folder / "SCN.dat");
    p.click(d.frmModem.cbuSC_Uebersicht);
    EXPECT_THAT(d.frmService_Center.lblErklaerung.caption, HasSubstr("SCN.dat"));
    EXPECT_TRUE(rig.boxes.empty());
}

TEST_F(SettingsForms, AServiceNumberComesWithItsProtocols) {
    write("FSN.dat", "Standard  090032669000,M6,M1,aldest=1\r\nAndere    0193010,M2,M3,aldest=2\r\n");
    Session &s = d.session;
    const auto choose = [&](int position) {
        p.click(d.frmModem.cbuSC_Uebersicht);
        p.select(d.frmServicenummer.lstServicenummer, position);
        p.click(d.frmServicenummer.cbuOK);
        return d.frmModem.tboService_Center.text + " " + s.strSMS_Protokoll + s.strSMS_Protokoll_ISDN +
               s.strSMS_Protokoll_ISDN_fern;
    };
    EXPECT_EQ(choose(1), "0193010 M2M3aldest=2");
    EXPECT_EQ(choose(0), "0193010 M6M3aldest=2") << "the first sets the one protocol back, and no number";
    EXPECT_EQ(choose(1), "0193010 M2M3aldest=2");
    EXPECT_EQ(choose(9), "0193010 M6M3aldest=2") << "as does none";
    EXPECT_FALSE(d.frmServicenummer.open);
}

/// What the supplied help says it is about is there, and every window has a page.
TEST_F(SettingsForms, TheHelpKnowsEveryWindow) {
    const fs::path help = fs::path(SHARE) / "hilfe";
    const auto topics = parse_help_topics(read_lines(help / help_contents));
    ASSERT_FALSE(topics.empty());
    for (const HelpTopic &topic : topics) {
        EXPECT_TRUE(fs::is_regular_file(help / topic.file)) << topic.file;
        for (const std::string &key : topic.keys) {
            const auto dot = key.find('.');
            const auto form = std::find_if(d.forms.begin(), d.forms.end(),
                                           [&](Form *one) { return one->name == key.substr(0, dot); });
            const bool known =
                dot == std::string::npos || form == d.forms.end() || (*form)->find(key.substr(dot + 1));
            EXPECT_TRUE(known) << key;
        }
    }
    for (const Form *form : d.forms) {
        const HelpTopic &topic = *find_help_topic(topics, std::string(form->name) + ".nichts");
        EXPECT_EQ(std::count(topic.keys.begin(), topic.keys.end(), form->name), 1) << form->name;
    }
    EXPECT_EQ(find_help_topic(topics, "frmModem.cbuTest")->file, "alarmtest.html");
    EXPECT_EQ(find_help_topic(topics, "")->file, "index.html");
    EXPECT_TRUE(parse_help_topics({"", "nur.html", "../x.html|X|", "C:x|X", "|X"}).empty());
    EXPECT_EQ(find_help_topic({}, "frmPin"), nullptr);
}

} // namespace
} // namespace telvox::test
