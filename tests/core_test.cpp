#include "core/files/append_file.hpp"
#include "core/files/files.hpp"
#include "core/files/remembered.hpp"
#include "core/files/settings_file.hpp"
#include "core/files/system_error.hpp"
#include "core/port_choice.hpp"
#include "core/serial_format.hpp"
#include "core/text.hpp"
#include "link/receive_buffer.hpp"

#include <gmock/gmock.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <sstream>
#ifndef _WIN32
#include <sys/resource.h>
#include <sys/stat.h>
#endif

namespace telvox {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

TEST(Text, IsCleanedForTheDevice) {
    const std::pair<const char *, const char *> cases[] = {{"Größe", "Grosse"},
                                                           {"", ""},
                                                           {"ÄÖÜäöüß", "AOUaouss"},
                                                           {"é € 1", "é € 1"},
                                                           {"a\xFF\xC3", "a\xFF\xC3"}};
    for (const auto &[given, expected] : cases)
        EXPECT_EQ(func_Text_prüfen(given), expected);
    std::string longest;
    for (int i = 0; i < 254; ++i)
        longest += "ü";
    EXPECT_EQ(func_Text_prüfen(longest), std::string(254, 'u'));
    EXPECT_THROW(static_cast<void>(func_Text_prüfen(longest + "ü")), std::overflow_error);
}

TEST(Text, HasOneBytePerCharacterOnTheLine) {
    EXPECT_EQ(to_line("aé€Ž„"), "a\xE9\x80\x8E\x84");
    EXPECT_EQ(to_line("→😀\xC3"), "???"); // nothing that the code page lacks gets through as more bytes
    EXPECT_EQ(to_line("\xC2\x81"), "?"); // a code point that no byte stands for
    EXPECT_EQ(from_line("a\xE9\x80\x81"), "aé€\xEF\xBF\xBD");
    EXPECT_EQ(length("aé€😀\xFF"), 5u);
    EXPECT_EQ(first_characters("äöü", 2), "äö");
    EXPECT_EQ(character_at("äöü", 2), "ü");
    EXPECT_EQ(character_at("äöü", 3), "");
}

TEST(Text, DiallingReadsANumber) {
    const std::pair<const char *, const char *> cases[] = {
        {"0541 123", "541123"},
        {"0541-123", "541"},
        {"007", "7"},
        {"000", "0"},
        {"", "0"},
        {" 12", "12"},
        {"x1", "0"},
        {"123456789012345678901", "123456789012345678901"}};
    for (const auto &[given, expected] : cases)
        EXPECT_EQ(number_text(given), expected) << given;
}

TEST(SerialFormat, IsReadOnlyWhenItIsOne) {
    for (const char *good : {"2400,e,8,1", "9600,n,8,1", "300,o,7,2", "38400,n,8,2"})
        EXPECT_EQ(format_text(parse_format(good).value()), good);
    for (const char *bad : {"", "2400,,8,1", "2400,e,8", "2400,e,8,1,", "2400,e,8,1.5", "2401,e,8,1",
                            "2400,x,8,1", "2400,even,8,1", "2400,e,9,1", "2400,e,8,3", "-2400,e,8,1",
                            " 2400,e,8,1", "99999999999,e,8,1", "Baudrate,P,Bitzahl,"})
        EXPECT_FALSE(parse_format(bad)) << bad;
}

TEST(PortChoice, TakesTheNumberBehindCom) {
    const std::pair<const char *, int> cases[] = {
        {"COM 3", 3}, {"COM 12", 12}, {"COM 15", 15}, {"COM 16", 0}, {"COM 0", 0},
        {"COM", 0},   {"", 0},        {"COM x", 0},   {"COM -1", 0}, {"COM 99999999999", 0}};
    for (const auto &[entry, expected] : cases) {
        Outbox outbox;
        EXPECT_EQ(func_Port_Auswahl(entry, outbox), expected) << entry;
        EXPECT_EQ(outbox.take().size(), expected == 0 ? 1u : 0u) << entry;
    }
}

TEST(ReceiveBuffer, FindsATextHoweverItArrives) {
    constexpr std::string_view stream = "xREMOTE REMOTE CONFIGURATION MODE>";
    for (std::size_t piece = 1; piece <= stream.size(); ++piece) {
        ReceiveBuffer buffer;
        std::size_t found_after = 0;
        for (std::size_t at = 0; at < stream.size(); at += piece) {
            buffer.append(stream.substr(at, piece));
            if (found_after == 0 && buffer.contains("REMOTE CONFIGURATION MODE"))
                found_after = std::min(at + piece, stream.size());
        }
        const std::size_t complete = stream.size() - 1;
        EXPECT_GE(found_after, complete) << piece;
        EXPECT_LT(found_after, complete + piece) << piece;
        EXPECT_EQ(buffer.find("REMOTE CONFIGURATION MODE"), 8u);
        buffer.clear();
        EXPECT_FALSE(buffer.contains(">")); // an answer to the last command answers no other
    }
}

TEST(ReceiveBuffer, IsBounded) {
    ReceiveBuffer buffer;
    const std::string noise(ReceiveBuffer::capacity / 2 + 1, 'x');
    for (int i = 0; i < 3; ++i)
        buffer.append(noise);
    EXPECT_EQ(buffer.text().size(), ReceiveBuffer::capacity);
    buffer.append("TIME:");
    EXPECT_FALSE(buffer.contains("TIME:"));
}

class SettingsFile : public testing::Test {
  protected:
    void SetUp() override {
        // A user's name can stand in the path, umlauts and all.
        folder = fs::temp_directory_path() / fs::path(u8"telvox_prüfung_").concat(std::to_string(::getpid()));
        fs::create_directories(folder);
    }
    void TearDown() override {
        fs::permissions(folder, fs::perms::owner_all);
        fs::remove_all(folder);
    }
    void write(const std::string &content) { std::ofstream(folder / "Com.ini", std::ios::binary) << content; }
    std::string read() {
        std::ifstream file(folder / "Com.ini", std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    fs::path folder;
    Session session;
    Outbox outbox;
};

constexpr const char *factory_file =
    "Schnittstellenparameter Direktverbindung\r\nBaudrate, 2400\r\nBitzahl, 8\r\n"
    "Parity, even\r\nStoppbits, 1\r\n\r\n"
    "Schnittstellenparameter Modemverbindung\r\nBaudrate, 9600\r\nBitzahl, 8\r\n"
    "Parity, none\r\nStoppbits, 1\r\n";

TEST_F(SettingsFile, IsWrittenAndReadBack) {
    ASSERT_TRUE(prz_Einstellungen_speichern(session, folder, {"2400", "8", "even", "1"},
                                            {"9600", "8", "none", "1"}, outbox));
    EXPECT_EQ(read(), factory_file);
    EXPECT_EQ(session.strCOMparameter_direkt, "2400,e,8,1");
    EXPECT_EQ(session.strCOMparameter_fern, "9600,n,8,1");
    Session later;
    prz_Einstellungen_laden(later, folder);
    EXPECT_EQ(later.strCOMparameter_direkt, "2400,e,8,1");
    EXPECT_EQ(later.strCOMparameter_fern, "9600,n,8,1");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1) << "a draft was left behind";
}

TEST_F(SettingsFile, StopBitsWithCommaShiftTheSecondSection) {
    ASSERT_TRUE(prz_Einstellungen_speichern(session, folder, {"2400", "8", "even", "1,5"},
                                            {"9600", "8", "none", "1"}, outbox));
    EXPECT_THAT(read(), HasSubstr("Stoppbits, 1,5\r\n"));
    Session later;
    prz_Einstellungen_laden(later, folder);
    EXPECT_EQ(later.strCOMparameter_direkt, "2400,e,8,1");
    EXPECT_FALSE(parse_format(later.strCOMparameter_fern)); // so the port gets the factory format
}

TEST_F(SettingsFile, DamageNeverReachesThePort) {
    const std::string whole = factory_file;
    // Whatever is left of the file, the port gets its settings or none.
    const auto harmless = [](const std::string &settings, const char *whole_settings) {
        return settings == whole_settings || !parse_format(settings);
    };
    for (std::size_t cut = 0; cut < whole.size(); ++cut) {
        write(whole.substr(0, cut));
        Session cut_session;
        prz_Einstellungen_laden(cut_session, folder);
        EXPECT_TRUE(harmless(cut_session.strCOMparameter_direkt, "2400,e,8,1")) << cut;
        EXPECT_TRUE(harmless(cut_session.strCOMparameter_fern, "9600,n,8,1")) << cut;
    }
    std::string binary(200000, '\0');
    for (std::size_t i = 0; i < binary.size(); ++i)
        binary[i] = static_cast<char>(i * 7919 >> 3);
    write(binary);
    prz_Einstellungen_laden(session, folder);
    EXPECT_FALSE(parse_format(session.strCOMparameter_direkt));

    session.strCOMparameter_direkt = "kept";
    fs::remove(folder / "Com.ini");
    prz_Einstellungen_laden(session, folder);
    EXPECT_EQ(session.strCOMparameter_direkt, "kept");
    fs::create_directory(folder / "Com.ini");
    prz_Einstellungen_laden(session, folder);
    EXPECT_EQ(session.strCOMparameter_direkt, "kept");
}

TEST_F(SettingsFile, AFailedSaveKeepsWhatWasThereAndSaysWhy) {
    session.strCOMparameter_direkt = "2400,e,8,1";
    write(factory_file);
    fs::create_directories(folder / "sub" / "Com.ini" / "x");
    std::vector<std::pair<fs::path, const char *>> cases{
        {folder / "Com.ini" / "x", "Der Ordner ist nicht vorhanden."},
        {folder / "sub", "An der Stelle der Datei steht ein Ordner."}};
    for (const auto &[place, why] : cases) {
        EXPECT_FALSE(prz_Einstellungen_speichern(session, place, {"300", "7", "odd", "2"},
                                                 {"300", "7", "odd", "2"}, outbox));
        EXPECT_EQ(session.strCOMparameter_direkt, "2400,e,8,1");
        EXPECT_EQ(read(), factory_file);
        const auto boxes = outbox.take();
        ASSERT_EQ(boxes.size(), 1u);
        EXPECT_EQ(boxes[0].message.text,
                  std::string("Die Einstellungen konnten nicht gespeichert werden.\r") + why);
    }
}

#ifndef _WIN32
TEST_F(SettingsFile, IsReplacedThroughItsLinkAndKeepsRightsAndOwner) {
    const fs::path real = folder / "dort" / "real", link = folder / "Com.ini";
    ASSERT_EQ(replace_file(real, "alt"), 0);
    fs::create_symlink("dort/real", link);
    fs::create_symlink("dort/real",
                       folder / "Com.ini.neu"); // no name that somebody may have taken is written to
    ASSERT_EQ(::chmod(real.c_str(), 0640), 0);
    const bool as_root = ::geteuid() == 0;
    ASSERT_EQ(as_root ? ::chown(real.c_str(), 1234, 1235) : 0, 0);
    struct stat state {};
    const auto rights = [&](const fs::path &file) {
        return ::stat(file.c_str(), &state), state.st_mode & 07777;
    };
    EXPECT_EQ(replace_file(link, "neu"), 0);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(whole_file(real, 1024), "neu");
    EXPECT_EQ(rights(real), 0640u);
    EXPECT_TRUE(!as_root || (state.st_uid == 1234 && state.st_gid == 1235));
    EXPECT_EQ(std::distance(fs::directory_iterator(real.parent_path()), {}), 1) << "a draft was left behind";

    EXPECT_EQ(replace_file(real, "geheim", Readers::owner), 0);
    EXPECT_EQ(rights(real), 0600u);
    EXPECT_EQ(replace_file(folder / "neu", "geheim", Readers::owner), 0);
    EXPECT_EQ(replace_file(folder / "neu", "nicht mehr"), 0);
    EXPECT_EQ(rights(folder / "neu"), 0600u) << "it was not for others";

    fs::remove(real);
    EXPECT_EQ(replace_file(link, "neu"), EEXIST) << "a link that leads nowhere";
    EXPECT_EQ(AppendFile().open(link, "neu"), EEXIST);
    EXPECT_FALSE(fs::exists(real));
}

TEST_F(SettingsFile, ThatIsNoOrdinaryFileOrProtectedIsLeftAlone) {
    const fs::path pipe = folder / "Com.ini";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    session.strCOMparameter_direkt = "kept";
    prz_Einstellungen_laden(session, folder); // and does not wait for a writer
    EXPECT_EQ(session.strCOMparameter_direkt, "kept");
    for (const char *device : {"Com.ini", "/dev/zero"}) {
        EXPECT_EQ(read_file(folder / device, 1).error, EEXIST);
        EXPECT_EQ(replace_file(folder / device, ""), EEXIST);
        EXPECT_EQ(AppendFile().open(folder / device, ""), EEXIST);
    }
    for (const char *place : {"/sys/telvox", "/sys/telvox/Com.ini"})
        EXPECT_EQ(german_reason(replace_file(place, "")), "Der Ordner oder die Datei ist schreibgeschützt.")
            << place;

    ASSERT_EQ(replace_file(folder / "voll", "alt"), 0);
    ASSERT_EQ(::chmod((folder / "voll").c_str(), 0444), 0);
    ASSERT_EQ(::chmod(folder.c_str(), 0777), 0);
    const bool as_root = ::geteuid() == 0; // whom no rights keep off
    ASSERT_EQ(as_root ? ::seteuid(65534) : 0, 0);
    EXPECT_EQ(replace_file(folder / "voll", "neu"), EACCES)
        << "what is write-protected is not replaced either";
    ASSERT_EQ(as_root ? ::seteuid(0) : 0, 0);
    ASSERT_EQ(::chmod((folder / "voll").c_str(), 0644), 0);
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &limit), 0);
    const rlimit small{.rlim_cur = 10, .rlim_max = limit.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const int failed = replace_file(folder / "voll", std::string(20, 'x')),
              new_failed = AppendFile().open(folder / "x", "elf Zeichen");
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    EXPECT_EQ(failed, EFBIG);
    EXPECT_EQ(new_failed, EFBIG);
    EXPECT_EQ(whole_file(folder / "voll", 1024), "alt");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 2)
        << "what could not be written was left behind";
}
#endif

TEST_F(SettingsFile, OfTheWindowGivesBackWhatItCanBelieve) {
    EXPECT_EQ(read_remembered(folder), Remembered{}) << "the first start";
    const Remembered given{.protocol = true,
                           .history = false,
                           .profiles = {"/a=b/Süd.txt", "/mit\nZeile", "", "1", "2", "3", "4", "5"},
                           .done_by = "Jörg=Müller",
                           .place = "zwei\nZeilen",
                           .as_left = true};
    write_remembered(folder / "neu", given);
    Remembered kept = given;
    kept.profiles = {"/a=b/Süd.txt", "1", "2", "3", "4"};
    kept.place.clear();
    EXPECT_EQ(read_remembered(folder / "neu"), kept);
    Remembered own; // of a window that was open all the time
    remember(folder / "neu", own, [](Remembered &all) { all.place = "Süd"; });
    kept.place = "Süd";
    EXPECT_EQ(read_remembered(folder / "neu"), kept) << "another has written the rest";
    EXPECT_EQ(own.place, "Süd");
    write_remembered(folder / "neu", {});
    EXPECT_EQ(read_remembered(folder / "neu"), Remembered{});

    const auto read_from = [&](const std::string &content) {
        std::ofstream(folder / "Fenster.ini", std::ios::binary) << content;
        return read_remembered(folder);
    };
    EXPECT_EQ(read_from("\xEF\xBB\xBFprotokoll=ein\r\nprofil=ä\r\n"),
              (Remembered{.protocol = true, .profiles = {"ä"}}));
    const std::string long_path(5000, 'x');
    for (const std::string &content :
         {std::string("protokoll=EIN\nprotokoll\nprotokoll=ja\n=\nprofil=\nprofil=a\x01b\nandere=ein"),
          std::string("\0protokoll=ein", 14), "profil=" + long_path, std::string(50'000'000, 'p')})
        EXPECT_EQ(read_from(content), Remembered{}) << content.substr(0, 40);
    fs::remove(folder / "Fenster.ini");
    fs::create_directories(folder / "Fenster.ini" / "x");
    write_remembered(folder, given);
    EXPECT_EQ(read_remembered(folder), Remembered{});
}

TEST_F(SettingsFile, LiesBesideTheProgramWhereItCan) {
    EXPECT_EQ(choose_data_folders(folder, "/user", false).settings, folder);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 0) << "the probe was left behind";
    EXPECT_EQ(choose_data_folders("/proc", "/user", false).settings, "/user");
    EXPECT_EQ(choose_data_folders(folder, "/user", true).settings, "/user") << "installed";
    write("");
    EXPECT_EQ(choose_data_folders(folder, "/user", true).settings, folder) << "on a stick";
}

} // namespace
} // namespace telvox
