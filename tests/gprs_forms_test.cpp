// The rules of the GPRS and IP-telemetry dialogs, and what they read: list files, addresses, numbers.

#include "core/ip_address.hpp"
#include "core/list_files.hpp"
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

/// A folder with list files in it.
class ListFolder : public testing::Test {
  protected:
    ListFolder() { fs::create_directories(folder); }
    ~ListFolder() override { fs::remove_all(folder); }
    fs::path write(std::string_view content) {
        std::ofstream(folder / name, std::ios::binary) << content;
        return folder / name;
    }

    const fs::path folder = fs::temp_directory_path() / ("telvox_lists_" + std::to_string(getpid()));
    static constexpr const char *name = "gprsapn.dat";
};

TEST_F(ListFolder, LinesAreReadWhateverWroteThem) {
    using Lines = std::vector<std::string>;
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
        EXPECT_EQ(read_lines(write(content)), lines) << content;
    EXPECT_THAT(read_lines(write(std::string(10'000'000, 'x'))), IsEmpty());
    EXPECT_EQ(read_lines(write(std::string(10'000'000, '\n'))).size(), 5000u);
    EXPECT_EQ(read_lines(write("ü\n" + std::string(262142, 'x') + "ü")), Lines{"ü"}) << "no half characters";
    for (const fs::path &none : {fs::path(), folder, folder / "none", fs::path("/dev/zero")})
        EXPECT_THAT(read_lines(none), IsEmpty()) << none;
}

TEST_F(ListFolder, ListsAreLookedForInTheirOrder) {
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

TEST(FieldChecks, AddressesAndNumbers) {
    for (const char *good : {"1.2.3.4", "300.1.1.1", "999.999.999.999", "192.168.0.1"})
        EXPECT_TRUE(func_IP_pruefen(good)) << good;
    for (const char *bad :
         {"", "1.2.3.", "1.2.3.4.", ".1.2.345", "1..2.34", "1.2.3.4.5", "1.2.3456", "1234567"})
        EXPECT_FALSE(func_IP_pruefen(bad)) << bad;
    const std::string endless(1000, '9');
    for (const char *within : {"", "0", "65535", "00000000000065535"})
        EXPECT_FALSE(number_exceeds(within, 65535)) << within;
    for (const char *above : {"65536", "99999999999", "18446744073709551617", endless.c_str()})
        EXPECT_TRUE(number_exceeds(above, 65535)) << above;
}

} // namespace
} // namespace telvox::test
