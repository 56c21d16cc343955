// What the program asks of Windows, on Windows.

#include "core/files/files.hpp"
#include "ports/os.hpp"

#include <gmock/gmock.h>

namespace telvox::test {
namespace {

TEST(Windows, ProgramsOfTheSystemPrintInACodePageOfTheirOwn) {
    EXPECT_EQ(os::console_text("Zeit\x81"
                               "berschreitung"),
              "Zeitüberschreitung");
    EXPECT_EQ(os::console_text("Zeitüberschreitung"), "Zeitüberschreitung");
}

TEST(Windows, PortsHaveTheNumbersOfTheirNames) {
    const struct {
        const char *device, *name;
        int number;
    } cases[] = {{"COM1", "COM1", 1}, {"\\\\.\\com12", "COM12", 12}, {"//./COM3", "COM3", 3},
                 {"LPT1", "LPT1", 0}, {"COMX", "COMX", 0},           {"\\\\.\\XCOM3", "XCOM3", 0},
                 {"", "", 0}};
    for (const auto &[device, name, number] : cases) {
        EXPECT_EQ(os::real_name(device), name);
        EXPECT_EQ(os::port_number(device), number) << device;
    }
}

TEST(Windows, APortThatIsNotThereIsSaidToBeAbsent) {
    for (const char *device : {"COM255", "\\\\.\\COM255", "kein\\Gerät", ""}) {
        EXPECT_FALSE(os::exists(device)) << device;
        EXPECT_EQ(os::probe(device).value_or(os::Refusal{}).sentence, port_absent.sentence) << device;
    }
}

TEST(Windows, SettingsLieWithThoseOfOtherPrograms) {
    EXPECT_EQ(os::settings_folder(), std::filesystem::path(::_wgetenv(L"APPDATA")));
    EXPECT_TRUE(os::keeps_folder_clean("C:/Program Files/telvox"));
}

TEST(Windows, TextsForPeopleHaveTheLinesThatTheyExpectAndFilesWhatTheyAreGiven) {
    EXPECT_EQ(with_local_ends("typ=gsm\nip=1\r\n"), "typ=gsm\r\nip=1\r\n");
    const auto file = std::filesystem::temp_directory_path() / L"Höhe.telvox";
    ASSERT_EQ(replace_file(file, "%PDF\n\r\x1A"), 0);
    EXPECT_EQ(read_file(file, 100).bytes, "%PDF\n\r\x1A");
    std::filesystem::remove(file);
}

} // namespace
} // namespace telvox::test
