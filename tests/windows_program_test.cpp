// The Windows program under wine: simulated devices, and devices with faults, at a pseudo-terminal that wine
// shows it as COM 1. Run by "./check windows"; WINDOWS_CLI names the program, WINEPREFIX the system that it
// runs in and which runs already: when wine starts it names the ports of the computer.

#include "rig/cli_program.hpp"
#include "rig/served_devices.hpp"
#include "simulator/gsm.hpp"

#include <QElapsedTimer>
#include <gmock/gmock.h>

#include <csignal>
#include <filesystem>
#include <fstream>

namespace telvox::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

class WindowsProgram : public CliProgram {
  protected:
    void SetUp() override { fs::create_directories(folder); }
    void TearDown() override {
        fs::remove(com1);
        fs::remove_all(folder);
    }

    /// What Windows knows the device by from now on.
    void plug_in(const std::string &device) const {
        fs::remove(com1);
        fs::create_symlink(device, com1);
    }
    /// Ends of lines and results of the last call, as a Linux program has them.
    int run(std::vector<std::string> words) {
        begin(std::move(words));
        const int code = result();
        for (std::string *text : {&out, &err})
            std::erase(*text, '\r');
        return code;
    }
    void begin(std::vector<std::string> words) {
        words.insert(words.begin(), std::getenv("WINDOWS_CLI"));
        start_program(words);
    }

    const fs::path com1 = fs::path(std::getenv("WINEPREFIX")) / "dosdevices" / "com1";
    const fs::path folder = fs::temp_directory_path() / ("telvox_wine_ü_" + std::to_string(::getpid()));
    const std::vector<std::string> alarm_off{"alarm-aus", "--typ", "gsm", "--schnittstelle", "1"};
};

TEST_F(WindowsProgram, ConfiguresADeviceFromAFileWithUmlauts) {
    const auto device = std::make_shared<simulator::Gsm>(simulator::Generation::newer);
    ServedDevices served({device});
    plug_in(served.path(0));
    std::ofstream(folder / "Höhe.telvox")
        << "typ=gsm\r\nempfaenger=01711234567\r\nservice-center=+491710760000\r\n"
           "alarmtext=Pumpe für Höhe\r\n";
    EXPECT_EQ(run({"parametrieren", "--schnittstelle", "1", "--aus", folder / "Höhe.telvox"}), 0)
        << out << err;
    EXPECT_THAT(out, HasSubstr("erfolgreich"));
    EXPECT_EQ(device->memory.recipient, "01711234567");
    EXPECT_THAT(device->memory.text, testing::StartsWith("Pumpe f"));
    EXPECT_THAT(err, HasSubstr("Übertragung"));
}

TEST_F(WindowsProgram, ScansInNoTimeAndLeavesThePortFree) {
    const auto far = std::make_unique<FarEnd>();
    plug_in(far->path);
    QElapsedTimer clock;
    for (int round = 0; round < 2; ++round) {
        clock.start();
        EXPECT_EQ(run({"schnittstellen"}), 0);
        EXPECT_EQ(out, "COM 1 (COM1): frei\n");
        EXPECT_LT(clock.elapsed(), 10'000) << "two seconds, and what wine takes to start";
    }
}

TEST_F(WindowsProgram, AnUnpluggedPortEndsTheJobAndIsNotOpenedAgain) {
    const auto far = std::make_unique<FarEnd>();
    plug_in(far->path);
    begin(alarm_off);
    ASSERT_TRUE(far->hears());
    far->unplug();
    EXPECT_EQ(result(), 1);
    EXPECT_THAT(out, HasSubstr("Die Verbindung zur Schnittstelle COM 1 ging verloren."));
    EXPECT_EQ(run(alarm_off), 1);
    EXPECT_THAT(out, HasSubstr("COM 1 konnte nicht geöffnet werden."));
}

TEST_F(WindowsProgram, ADeviceInAnotherFormatAndOneThatTakesNothingEndTheJob) {
    const auto garbled = std::make_unique<FarEnd>();
    plug_in(garbled->path);
    begin(alarm_off);
    ASSERT_TRUE(garbled->hears());
    garbled->says("\xF8\x00\xE0\xFF\x80");
    EXPECT_EQ(result(), 1);
    EXPECT_THAT(out, HasSubstr("Kommunikationsfehler: 33."));

    const auto stuck = std::make_unique<FarEnd>();
    plug_in(stuck->path);
    stuck->holds_up();
    EXPECT_EQ(run(alarm_off), 1) << err;
    EXPECT_THAT(out, HasSubstr("fehler"));
}

TEST_F(WindowsProgram, PingsAndSetsAnAddressWithTheProgramsOfTheSystem) {
    EXPECT_EQ(run({"netz-pruefen", "--ip", "127.0.0.1"}), 0) << out << err;
    EXPECT_EQ(run({"netz-erstvergabe", "--neue-ip", "127.0.0.1", "--mac", "00-1C-04", "--trotzdem"}), 0)
        << out << err;
}

TEST_F(WindowsProgram, CtrlCHangsUp) {
    const auto far = std::make_unique<FarEnd>();
    plug_in(far->path);
    begin({"parametrieren", "--typ", "gsm", "--empfaenger", "1", "--service-center", "1", "--alarmtext", "x",
           "--schnittstelle", "1"});
    ASSERT_TRUE(far->hears());
    ::kill(static_cast<pid_t>(process.processId()), SIGINT);
    EXPECT_EQ(result(), 130);
    EXPECT_THAT(out, HasSubstr("Der Vorgang wurde abgebrochen."));
}

} // namespace
} // namespace telvox::test
