// The serial port on Qt against the system's real terminal driver: a pseudo-terminal whose master is the far
// end. Real time, so every wait is polled with a limit.

#include "ports/os.hpp"
#include "ports/qt_port_scan.hpp"
#include "rig/far_end.hpp"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QSemaphore>
#include <QSerialPort>
#include <QTemporaryDir>
#include <QThread>
#include <gmock/gmock.h>

#include <atomic>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/times.h>

namespace telvox::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr const char *busy = "Die Schnittstelle wird von einem anderen Programm benutzt.";
constexpr const char *absent = "Die Schnittstelle ist nicht vorhanden.";

/// Runs events until the condition holds, at most two seconds.
bool wait_for(const std::function<bool()> &condition) {
    const QDeadlineTimer deadline(2000);
    while (!condition() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 10);
    return condition();
}

/// Runs events for a while in which something must not happen.
void run_events(milliseconds span) {
    const QDeadlineTimer deadline(span);
    while (!deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10), QThread::msleep(1);
}

CommonOptions named(std::map<int, std::string> ports) { return {.ports = std::move(ports)}; }

class SerialAdapter : public testing::Test {
  protected:
    SerialAdapter() {
        port.CommPort(3);
        port.comm_event = [this](CommEvent event) {
            events.push_back(event);
            if (event == CommEvent::data)
                received += port.Input();
        };
    }

    FarEnd far;
    PortMap ports{named({{3, far.path}, {4, "/dev/no-such-device"}, {6, "/etc"}})};
    QtSerialPort port{ports};
    std::vector<CommEvent> events;
    std::string received;
};

TEST_F(SerialAdapter, SendsExactlyTheBytesGiven) {
    ASSERT_EQ(port.PortOpen(true), "");
    EXPECT_TRUE(port.PortOpen());
    const std::string bytes("AT**TIME?\r\n\x00\x11\x13\x7F\xFF", 16);
    port.Output(bytes);
    std::string arrived;
    EXPECT_TRUE(wait_for([&] { return (arrived += far.take()).size() >= bytes.size(); }));
    EXPECT_EQ(arrived, bytes);
    EXPECT_TRUE(events.empty()) << "no echo, no event";
}

TEST_F(SerialAdapter, ReportsWhatArrivesAfterTheRunningHandler) {
    ASSERT_EQ(port.PortOpen(true), "");
    const std::string bytes("TIME: 1\r\nOK\n\x00\x03\x1A\xE4", 16);
    far.says(bytes);
    port.drain(20ms);
    EXPECT_TRUE(events.empty()) << "never from inside a call";
    EXPECT_TRUE(wait_for([&] { return received.size() >= bytes.size(); }));
    EXPECT_EQ(received, bytes);
    EXPECT_EQ(port.Input(), "");
}

TEST_F(SerialAdapter, SetsTheFormatBeforeAndAfterOpening) {
    const auto speed = [&] {
        const int fd = ::open(far.path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
        termios settings{};
        ::tcgetattr(fd, &settings);
        ::close(fd);
        return std::pair(::cfgetospeed(&settings), settings.c_cflag & (CSTOPB | PARENB | PARODD));
    };
    // A port keeps others off, so its settings are read through the master's own view where that is refused.
    port.Settings({.baud = 2400, .parity = 'e', .data_bits = 8, .stop_bits = 2});
    ASSERT_EQ(port.PortOpen(true), "");
    if (::geteuid() != 0)
        GTEST_SKIP() << "only the superuser can look at a port that is kept exclusive";
    EXPECT_EQ(speed().first, static_cast<speed_t>(B2400));
    EXPECT_NE(speed().second & CSTOPB, 0u);
    port.Settings({.baud = 9600, .parity = 'n', .data_bits = 8, .stop_bits = 1});
    EXPECT_EQ(speed().first, static_cast<speed_t>(B9600));
    EXPECT_EQ(speed().second & CSTOPB, 0u);
}

TEST_F(SerialAdapter, SaysWhyAPortCannotBeOpened) {
    const auto cause = [&](int number) {
        port.CommPort(number);
        return port.PortOpen(true);
    };
    EXPECT_EQ(cause(4), absent);
    EXPECT_EQ(cause(14), absent) << "no device has this number";
    EXPECT_THAT(cause(6), HasSubstr("keine serielle Schnittstelle"));
    EXPECT_FALSE(port.PortOpen());

    QtSerialPort other(ports);
    other.CommPort(3);
    ASSERT_EQ(other.PortOpen(true), "");
    EXPECT_EQ(cause(3), busy);
    other.PortOpen(false);
    EXPECT_EQ(cause(3), "") << "free again";
}

TEST_F(SerialAdapter, KeepsOffAProgramThatOnlyLocks) {
    const int fd = ::open(far.path.c_str(), O_RDWR | O_NOCTTY);
    ASSERT_EQ(::flock(fd, LOCK_EX | LOCK_NB), 0);
    EXPECT_EQ(port.PortOpen(true), busy);
    ::close(fd);
    EXPECT_EQ(port.PortOpen(true), "");
}

TEST_F(SerialAdapter, NamesTheGroupThatOwnsTheDevice) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only the superuser can become somebody without the right";
    ASSERT_EQ(::chown(far.path.c_str(), 0, 20), 0);
    ASSERT_EQ(::chmod(far.path.c_str(), 0660), 0);
    ASSERT_EQ(::seteuid(65534), 0);
    const std::string cause = port.PortOpen(true);
    ASSERT_EQ(::seteuid(0), 0);
    EXPECT_THAT(cause, HasSubstr("Gruppe \"dialout\""));
    EXPECT_THAT(cause, HasSubstr("neu an"));
}

TEST_F(SerialAdapter, ReportsALostPeerOnceAndRests) {
    ASSERT_EQ(port.PortOpen(true), "");
    port.watch_carrier(true);
    far.unplug();
    EXPECT_TRUE(wait_for([&] { return !events.empty(); }));
    EXPECT_FALSE(port.PortOpen());
    tms before{};
    tms after{};
    ::times(&before);
    const QDeadlineTimer deadline(1200);
    while (!deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 100), QThread::msleep(1);
    ::times(&after);
    EXPECT_THAT(events, ElementsAre(CommEvent::lost));
    const auto ticks = after.tms_utime + after.tms_stime - before.tms_utime - before.tms_stime;
    EXPECT_LT(ticks, ::sysconf(_SC_CLK_TCK) / 2) << "busy while nothing is left to do";
    port.Output("AT\r"); // goes nowhere
    EXPECT_EQ(port.Input(), "");
}

TEST_F(SerialAdapter, AHangUpIsSeenWithoutReading) {
    QSerialPort raw(QString::fromStdString(far.path));
    ASSERT_TRUE(raw.open(QIODevice::ReadWrite));
    EXPECT_FALSE(os::hung_up(raw.handle()));
    far.unplug();
    EXPECT_TRUE(os::hung_up(raw.handle()));
}

TEST_F(SerialAdapter, APortWithoutPinsIsNoLostPort) {
    ASSERT_EQ(port.PortOpen(true), "");
    port.watch_carrier(true);
    port.DTREnable(false);
    port.DTREnable(true);
    run_events(700ms);
    EXPECT_TRUE(events.empty());
    EXPECT_TRUE(port.PortOpen());
}

TEST_F(SerialAdapter, DrainingIsBoundedAndClosingNeverWaits) {
    ASSERT_EQ(port.PortOpen(true), "");
    port.Output(std::string(1 << 20, 'x')); // far more than a peer that does not read lets through
    QElapsedTimer clock;
    clock.start();
    EXPECT_FALSE(port.drain(300ms));
    EXPECT_GE(clock.elapsed(), 250) << "it does wait";
    EXPECT_LT(clock.elapsed(), 1000);
    clock.restart();
    port.PortOpen(false);
    EXPECT_LT(clock.elapsed(), 100);
    EXPECT_FALSE(port.PortOpen());
}

TEST_F(SerialAdapter, DrainingLetsEverythingOut) {
    ASSERT_EQ(port.PortOpen(true), "");
    port.Output("ATH\r");
    EXPECT_TRUE(port.drain(1000ms));
    port.PortOpen(false);
    EXPECT_EQ(far.take(), "ATH\r");
}

TEST_F(SerialAdapter, NothingIsReportedAfterClosing) {
    ASSERT_EQ(port.PortOpen(true), "");
    far.says("OK\r\n");
    port.Output("x");
    port.drain(20ms); // meanwhile the answer is seen
    port.PortOpen(false);
    run_events(50ms);
    EXPECT_TRUE(events.empty());
    EXPECT_EQ(port.PortOpen(true), "");
    port.PortOpen(false);
}

TEST(Ports, GetTheLowestFreeNumbersAndKeepThem) {
    std::vector<PresentPort> present{{"/dev/ttyUSB0", "Adapter"}, {"/dev/ttyUSB2", ""}};
    PortMap ports({}, [&] { return present; });
    ASSERT_NE(ports.find(2), nullptr);
    EXPECT_EQ(ports.find(1)->device, "/dev/ttyUSB0");
    EXPECT_EQ(ports.find(2)->device, "/dev/ttyUSB2");
    EXPECT_EQ(ports.find(3), nullptr);
    EXPECT_EQ(ports.info(1), (PortInfo{1, "/dev/ttyUSB0", "Adapter", ""}));

    present = {{"/dev/ttyACM0", ""}, {"/dev/ttyUSB2", ""}};
    EXPECT_TRUE(wait_for([&] { return ports.find(3) != nullptr; })) << "one came, one went";
    EXPECT_EQ(ports.find(3)->device, "/dev/ttyACM0");
    EXPECT_EQ(ports.find(2)->device, "/dev/ttyUSB2");
    EXPECT_EQ(ports.number_of("/dev/ttyUSB0"), 1) << "comes back to its number";
    EXPECT_EQ(ports.number_of("/dev/other"), 4);

    const QTemporaryDir folder;
    const std::string link = folder.filePath("tty").toStdString();
    ASSERT_EQ(::symlink("/dev/null", link.c_str()), 0);
    EXPECT_EQ(ports.number_of("/dev/null"), ports.number_of(link)) << "one device, one number";
    present = {{"/dev/gone", ""}};
    QtPortScan scan(
        ports, [](const std::string &) { return port_absent; }, 1s);
    EXPECT_THAT(scan.ports(), testing::IsEmpty()) << "what was unplugged is not shown";
    PortMap named_ports(named({{4, "/dev/gone"}}));
    QtPortScan named_scan(
        named_ports, [](const std::string &) { return port_absent; }, 1s);
    EXPECT_EQ(named_scan.ports().at(0).refusal, absent) << "but missed where the user named it";
}

TEST(Ports, AScanDoesNotWaitForOneThatIsSilent) {
    static_assert(QtPortScan::longest < 2s);
    const auto asked = std::make_shared<std::atomic<int>>(0);
    const auto answers = std::make_shared<QSemaphore>();
    const auto silent = std::make_shared<std::atomic<bool>>(true);
    const auto try_it = [asked, answers, silent](const std::string &device) {
        if (device == "/dev/silent" && ++*asked != 0 && *silent)
            answers->acquire();
        return device == "/dev/busy" ? port_busy : os::Refusal{};
    };
    PortMap ports(named({{3, "/dev/silent"}, {4, "/dev/busy"}, {5, "/dev/free"}}));
    const auto scan = std::make_unique<QtPortScan>(ports, try_it, 100ms);
    for (int round = 0; round < 2; ++round) {
        std::vector<std::string> said;
        for (const PortInfo &port : scan->ports())
            said.push_back(port.in_short);
        EXPECT_THAT(said, ElementsAre("antwortet nicht", "von einem anderen Programm belegt", ""));
    }
    EXPECT_EQ(*asked, 1) << "one that is silent is not asked again";
    *silent = false;
    answers->release();
    EXPECT_TRUE(wait_for([&] { return scan->ports()[0].refusal.empty(); })) << "until it has answered";
    *silent = true;
    EXPECT_EQ(scan->ports()[0].in_short, "antwortet nicht") << "what it said then says nothing now";
    answers->release();
}

TEST(Ports, NamedDevicesAreTheOnlyRealOnes) {
    CommonOptions options = named({{7, "/dev/ttyS7"}, {3, "/dev/ttyS0"}});
    options.simulator = true;
    PortMap ports(options, [] { return std::vector<PresentPort>{{"/dev/ttyUSB0", ""}}; });
    EXPECT_EQ(ports.find(7)->device, "/dev/ttyS7");
    EXPECT_FALSE(ports.find(3)->simulated) << "a named device goes before a simulated one";
    EXPECT_TRUE(ports.find(1)->simulated);
    EXPECT_EQ(ports.info(1).description, "Simuliertes Telvox-A Analog");
    EXPECT_EQ(ports.find(8), nullptr);
}

TEST(Ports, RealOnesFollowTheSimulatedOnes) {
    CommonOptions options;
    options.simulator = true;
    PortMap ports(options, [] { return std::vector<PresentPort>{{"/dev/ttyUSB0", ""}}; });
    const int number = ports.number_of("/dev/ttyUSB0");
    EXPECT_GT(number, 0);
    EXPECT_EQ(simulator::device_on_port(number), nullptr);
}

TEST(Simulated, DeviceIsOpenedByOneAndAnswers) {
    CommonOptions options;
    options.simulator = true;
    PortMap ports(options, [] { return std::vector<PresentPort>{}; });
    QtSerialPort port(ports);
    QtSerialPort other(ports);
    std::string received;
    port.comm_event = [&](CommEvent) { received += port.Input(); };
    port.CommPort(3);
    other.CommPort(3);
    port.Settings({.baud = 2400, .parity = 'e', .data_bits = 8, .stop_bits = 1});
    ASSERT_EQ(port.PortOpen(true), "");
    EXPECT_EQ(other.PortOpen(true), busy);
    port.Output("AT**TIME?\r");
    EXPECT_EQ(received, "");
    EXPECT_TRUE(wait_for([&] { return received.find("TIME:") != std::string::npos; }));
    port.PortOpen(false);
    EXPECT_EQ(other.PortOpen(true), "");
}

} // namespace
} // namespace telvox::test
