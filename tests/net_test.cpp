// The network dialogues: what the system's programs print is understood and what they get is clean, and the
// whole program ends well against simulated modules whatever they do wrong.

#include "rig/rig.hpp"

#include "core/ip_address.hpp"
#include "dialogues/families.hpp"
#include "net/shell_commands.hpp"
#include "simulator/world.hpp"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

namespace telvox::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

TEST(Address, IsCheckedByItsFormAndAgainBeforeAProgramGetsIt) {
    struct Case {
        std::string text;
        bool form;
        const char *plain; ///< "" : no program gets it
    };
    const Case cases[] = {{"192.168.0.100", true, "192.168.0.100"},
                          {"0.0.0.0", true, ""},
                          {"192.168.0.256", true, ""},
                          {"300.1.999.1", true, ""},
                          {"192.168.001.010", true, "192.168.1.10"}, // else the system reads octal numbers
                          {"", false, ""},
                          {"11.2.3.", false, ""},
                          {"1.2.3.4.", false, ""},
                          {"1234567", false, ""},
                          {"11.2.3.", false, ""},
                          {".1.2.345", false, ""},
                          {"1..2.34", false, ""},
                          {"1.2.3.4.5", false, ""},
                          {"1921.168.0.1", true, ""},
                          {"1.2.3.4;ls", true, ""},
                          {"1.2.3.4\n-f", true, ""},
                          {"-f.1.2.3", true, ""},
                          {"100.100.100.1000", true, ""},
                          {"1.2.3." + std::string(10'000, '4'), true, ""}};
    for (const Case &c : cases) {
        EXPECT_EQ(func_IP_pruefen(c.text), c.form) << c.text;
        EXPECT_EQ(plain_address(c.text).value_or(""), c.plain) << c.text;
        EXPECT_EQ(valid_address(c.text), *c.plain || c.text == "0.0.0.0") << c.text; // no gateway is one
    }
}

TEST(Ping, IsUnderstoodOnBothSystemsInBothLanguages) {
    struct Case {
        const char *name;
        std::string output;
        bool any; ///< counts as an answer of whatever kind
        bool echo;
        std::vector<std::string> lines = {};
    };
    const Case cases[] = {
        {"Windows, German",
         "\r\nPing wird ausgeführt für 192.168.0.100 mit 32 Bytes Daten:\r\n"
         "Antwort von 192.168.0.100: Bytes=32 Zeit<1ms TTL=64\r\n"
         "Zeitüberschreitung der Anforderung.\r\n"
         "\r\nPing-Statistik für 192.168.0.100:\r\n    Pakete: Gesendet = 4, Empfangen = 1, Verloren = 3\r\n"
         "    (75% Verlust),\r\nCa. Zeitangaben in Millisek.:\r\n"
         "    Minimum = 0ms, Maximum = 0ms, Mittelwert = 0ms\r\n",
         true,
         true,
         {"Antwort von 192.168.0.100: Bytes=32 Zeit<1ms TTL=64", "Zeitüberschreitung der Anforderung."}},
        {"Windows, English",
         "\r\nPinging 192.168.0.100 with 32 bytes of data:\r\n"
         "Reply from 192.168.0.100: bytes=32 time=2ms TTL=255\r\nRequest timed out.\r\n"
         "\r\nPing statistics for 192.168.0.100:\r\n    Packets: Sent = 4, Received = 1, Lost = 3 (75% "
         "loss),\r\n"
         "Approximate round trip times in milli-seconds:\r\n"
         "    Minimum = 2ms, Maximum = 2ms, Average = 2ms\r\n",
         true,
         true,
         {"Reply from 192.168.0.100: bytes=32 time=2ms TTL=255", "Request timed out."}},
        {"Windows, German, out of the net itself: its own address answers",
         "\r\nPing wird ausgeführt für 192.168.0.100 mit 32 Bytes Daten:\r\n"
         "Antwort von 192.168.0.2: Zielhost nicht erreichbar.\r\n"
         "\r\nPing-Statistik für 192.168.0.100:\r\n    Pakete: Gesendet = 4, Empfangen = 4, Verloren = 0\r\n"
         "    (0% Verlust),\r\n",
         true,
         false,
         {"Antwort von 192.168.0.2: Zielhost nicht erreichbar."}},
        {"Windows, German, without a network",
         "PING: Fehler bei der Übertragung. Allgemeiner Fehler.\r\n",
         false,
         false,
         {"PING: Fehler bei der Übertragung. Allgemeiner Fehler."}},
        {"Linux, English",
         "PING 192.168.0.100 (192.168.0.100) 56(84) bytes of data.\nno answer yet for icmp_seq=1\n"
         "64 bytes from 192.168.0.100: icmp_seq=2 ttl=64 time=0.321 ms\n"
         "\n--- 192.168.0.100 ping statistics ---\n4 packets transmitted, 1 received, 75% packet loss\n",
         true,
         true,
         {"no answer yet for icmp_seq=1", "64 bytes from 192.168.0.100: icmp_seq=2 ttl=64 time=0.321 ms"}},
        {"Linux, German",
         "PING 192.168.0.100 (192.168.0.100) 56(84) Bytes an Daten.\nnoch keine Antwort für icmp_seq=1\n"
         "64 Bytes von 192.168.0.100: icmp_seq=2 ttl=64 Zeit=0.045 ms\n",
         true,
         true,
         {"noch keine Antwort für icmp_seq=1",
          "64 Bytes von 192.168.0.100: icmp_seq=2 ttl=64 Zeit=0.045 ms"}},
        {"with a name", "64 bytes from module.lan (192.168.0.100): icmp_seq=1 ttl=64 time=1 ms\n", true,
         true},
        {"nobody there, Windows",
         "Zeit\x81"
         "berschreitung der Anforderung.\r\n",
         false,
         false,
         {"Zeit\x81"
          "berschreitung der Anforderung."}},
        {"nobody there, Linux",
         "PING 192.168.0.100 (192.168.0.100) 56(84) bytes of data.\n"
         "From 192.168.0.2 icmp_seq=1 Destination Host Unreachable\n",
         false,
         false,
         {"PING 192.168.0.100 (192.168.0.100) 56(84) bytes of data.",
          "From 192.168.0.2 icmp_seq=1 Destination Host Unreachable"}},
        {"on a loop, Windows", "Reply from 192.168.0.100: TTL expired in transit.\r\n", true, false},
        {"somebody else answers", "64 bytes from 127.0.0.1: icmp_seq=1 ttl=64 time=0.1 ms\n", true, false},
        {"a longer address", "Reply from 192.168.0.1001: bytes=32 time=2ms TTL=255\r\n", true, false},
        {"an address that ends alike", "Reply from 2.192.168.0.100: bytes=32 TTL=255\r\n", true, false},
        {"nothing", "", false, false}};
    for (const Case &c : cases) {
        const auto any = evaluate_ping(c.output, PingRule::any_answer, "192.168.0.100");
        const auto echo = evaluate_ping(c.output, PingRule::echo_of_address, "192.168.0.100");
        EXPECT_EQ(any.answered, c.any) << c.name;
        EXPECT_EQ(echo.answered, c.echo) << c.name;
        EXPECT_TRUE(c.lines.empty() || echo.lines == c.lines) << c.name;
    }
}

TEST(Route, NamesTheInterfaceOrWhyThereIsNone) {
    struct Case {
        const char *output, *device, *problem;
    };
    const Case cases[] = {
        {"10.9.0.2 dev veth0 src 10.9.0.1 uid 0 \n    cache \n", "veth0", ""},
        {"local 10.9.0.1 dev lo src 10.9.0.1 uid 0 \n", "lo", "Das ist eine Adresse dieses Rechners."},
        {"8.8.8.8 via 10.9.0.254 dev eth0 src 10.9.0.1\n", "eth0",
         "Die Adresse gehört zu keinem Netz, an das dieser Rechner angeschlossen ist."},
        {"broadcast 10.9.0.255 dev veth0 src 10.9.0.1\n", "veth0",
         "Diese Adresse kann kein einzelnes Gerät haben."},
        {"10.9.0.2 dev a;reboot\n", "a;reboot", "Diese Adresse kann kein einzelnes Gerät haben."},
        {"10.9.0.2 dev -x\n", "-x", "Diese Adresse kann kein einzelnes Gerät haben."},
        {"", "", "Diese Adresse kann kein einzelnes Gerät haben."}};
    for (const Case &c : cases) {
        const Route route = parse_route(c.output);
        EXPECT_EQ(route.device, c.device) << c.output;
        EXPECT_EQ(route.problem, c.problem) << c.output;
    }
}

TEST(Telnet, NegotiationIsTakenOutAndRefusedOnce) {
    const std::string stream = "A\xFF\xFB\x01"             // offers an option
                               "B\xFF\xFD\x18"             // asks for one
                               "\xFF\xFD\x18"              // again
                               "\xFF\xFA\x18\x01X\xFF\xF0" // its parameters
                               "\xFF\xFC\x05\xFF\xF1"      // takes one back; does nothing
                               "C\xFF\xFF";                // the byte itself
    for (const std::size_t piece : {std::size_t{1}, stream.size()}) {
        TelnetFilter filter;
        std::string text, refusals;
        for (std::size_t at = 0; at < stream.size(); at += piece)
            text += filter.text(stream.substr(at, piece), refusals);
        EXPECT_EQ(text, "ABC\xFF") << piece;
        EXPECT_EQ(refusals, "\xFF\xFE\x01\xFF\xFC\x18") << piece;
    }
}

void begin_gateway(Telvox &program) {
    FrmGateway &form = program.desk.frmGateway;
    program.choose(program.desk.frmModem.optEthernet);
    program.click(program.desk.frmModem.mnuGateway);
    program.enter(form.tboIP, "192.168.0.100");
    program.enter(form.tboGateway, "192.168.0.7");
    program.enter(form.tboNetzmaske, "255.0.0.0");
    program.click(form.cbuEthernet_GW_Konfigurieren);
}
void begin_address(Telvox &program) {
    FrmIPoEthernet &form = program.desk.frmIPoEthernet;
    program.choose(program.desk.frmModem.optEthernet);
    program.click(program.desk.frmModem.mnuIP_over_Ethernet);
    program.enter(form.tboAlte_IP, "192.168.0.100");
    program.enter(form.tboNeue_IP, "192.168.0.101");
    program.click(form.cbuEthernet_IP_aendern);
}

/// The program and the simulated network on one turned clock.
class NetworkBench {
  public:
    NetworkBench() {
        rig.on_connect = [this](const std::string &address, int port) {
            connection_ = world.network.connect(address, port, rig.now);
        };
        rig.on_send = [this](std::string_view bytes) { connection_->receive(bytes, rig.now); };
        rig.on_run = [this](const ShellCommand &command) { command_ = command; };
    }

    /// Until the action has ended.
    void run() {
        const milliseconds end = rig.now + milliseconds{30'000};
        while (rig.program.busy() && rig.now < end) {
            rig.turn_by(milliseconds{1});
            if (command_)
                rig.program.process_ended(answer(*std::exchange(command_, std::nullopt)));
            else if (const std::string bytes = connection_ ? connection_->transmit(rig.now) : "";
                     !bytes.empty())
                rig.program.Winsock_DataArrival(bytes);
        }
    }

    Rig rig;
    Desk &desk = rig.program.desk;
    simulator::World world;

  private:
    ProcessEnd answer(const ShellCommand &command) {
        if (command.program == "ping") {
            const bool there = world.network.ping(command.arguments.back(), rig.now).has_value();
            return {.output = there ? "64 bytes from " + command.arguments.back() + ": ttl=64\n" : ""};
        }
        if (command.arguments.front() == "route")
            return {.output = command.arguments.back() + " dev eth0 src 192.168.0.1"};
        EXPECT_TRUE(world.network.bind(command.arguments.at(2), command.arguments.at(4)));
        return {};
    }

    std::unique_ptr<simulator::Connection> connection_;
    std::optional<ShellCommand> command_;
};

TEST(NetworkDialogue, EndsInOneBoxWhateverTheModuleDoes) {
    using Faults = simulator::TelnetFaults;
    struct Case {
        Faults faults;
        bool gateway_done, address_done;
    };
    const Case cases[] = {
        {{}, true, true},
        {{.one_byte_packets = true, .negotiates = true}, true, true},
        {{.floods = true}, true, true},
        {{.refuses_connection = true}, false, false},
        {{.refuses_login = true}, false, false},
        {{.never_ok = true}, false, false},
        {{.error_at = "Username"}, false, false},
        {{.error_at = "Password"}, false, false},
        {{.error_at = "#GW="}, false, true},
        {{.error_at = "#NM="}, false, true},
        {{.error_at = "#IP="}, true, false},
        {{.one_byte_packets = true, .error_at = "#IP="}, true, false},
        {{.error_at = "#RESET"}, true, true}, // the command is out, and no answer to it is awaited
        {{.closes_at = "connect"}, false, false},
        {{.closes_at = "Password"}, false, false},
        {{.closes_at = "#NM="}, false, true},
        {{.closes_at = "#IP="}, true, false},
        {{.closes_at = "#RESET"}, true, true},
        {{.mute_at = "connect"}, false, false},
        {{.mute_at = "#GW="}, false, true},
        {{.mute_at = "#IP="}, true, false},
        {{.mute_at = "#RESET"}, true, true},
    };
    int number = 0;
    for (const Case &c : cases) {
        for (const bool gateway : {true, false}) {
            NetworkBench bench;
            bench.world.ethernet->faults = c.faults;
            gateway ? begin_gateway(bench.rig.program) : begin_address(bench.rig.program);
            bench.run();
            const bool done = gateway ? c.gateway_done : c.address_done;
            const std::string box = gateway ? (done ? "Gateway und Netzmaske erfolgreich eingestellt!"
                                                    : "Konfiguration fehlgeschlagen.")
                                            : (done ? "Neue IP eingestellt!" : "IP Vergabe fehlgeschlagen.");
            const std::string where = "case " + std::to_string(number) + (gateway ? " gateway" : " address");
            ASSERT_EQ(bench.rig.boxes.size(), 1u) << where;
            EXPECT_EQ(bench.rig.boxes[0].text, box) << where;
            EXPECT_EQ(bench.rig.outcome(), done ? Outcome::succeeded : Outcome::failed) << where;
            EXPECT_TRUE(bench.desk.frmGateway.cbuEthernet_GW_Konfigurieren.enabled &&
                        bench.desk.frmIPoEthernet.cbuEthernet_IP_aendern.enabled)
                << where;
            EXPECT_FALSE(bench.rig.timer2.on) << where;
            auto &told = bench.world.ethernet->memory.settings;
            EXPECT_TRUE(!done || (gateway ? told["GW"] == "192.168.0.7" && told["NM"] == "255.0.0.0"
                                          : told["IP"] == "192.168.0.101"))
                << where;
        }
        ++number;
    }
}

/// A data folder of its own that goes with the test.
struct Folder {
    Folder() { std::filesystem::create_directories(path); }
    ~Folder() { std::filesystem::remove_all(path); }
    std::filesystem::path path = std::filesystem::temp_directory_path() / "telvox_net_test";
};

TEST(NetworkDialogue, PingsOutputLiesInTheDataFolder) {
    const Folder folder;
    const auto file = folder.path / "Shell.txt";
    Rig rig({folder.path, {}});
    Desk &desk = rig.program.desk;
    rig.program.choose(desk.frmModem.optEthernet);
    rig.program.click(desk.frmModem.mnuGateway);
    rig.program.enter(desk.frmGateway.tboIP, "192.168.0.100");
    const auto check = [&](const std::string &output) {
        rig.program.click(desk.frmGateway.cbuVerbindung_pruefen);
        rig.program.process_ended({.output = output});
        return rig.boxes.back().text;
    };
    std::ofstream(file) << "Antwort von gestern\n";
    EXPECT_THAT(check("nobody\n"), HasSubstr("fehlgeschlagen")) << "what an older ping left does not count";
    {
        std::ifstream written(file, std::ios::binary); // closed before the file is moved: Windows insists
        EXPECT_EQ(std::string(std::istreambuf_iterator<char>(written), {}), "nobody\n");
    }
    std::filesystem::rename(file, folder.path / "other");
    std::error_code no_links; // some systems allow none
    std::filesystem::create_symlink(folder.path / "other", file, no_links);
    check("64 bytes from 192.168.0.100\n");
    EXPECT_EQ(std::filesystem::file_size(folder.path / "other"), 7u) << "a link is replaced, not followed";
    std::filesystem::remove(file);
    std::filesystem::create_directories(file / "in the way");
    EXPECT_EQ(check("Reply from 192.168.0.100\n"), "Verbindungsaufbau erfolgreich!");
}

TEST(NetworkDialogue, TheLogIsPlainTextOfLimitedSizeAndLeavingEndsEverything) {
    Rig rig;
    Desk &desk = rig.program.desk;
    struct : Observer {
        void logged(std::string_view text) override { heard += text; }
        std::string heard;
    } listener;
    desk.observers.add(listener);
    begin_gateway(rig.program);
    rig.program.process_ended({.output = "64 bytes from 192.168.0.100: ttl=64\n"});
    rig.program.Winsock_DataArrival("\x1B[2J\xFC\a\xE2\x82\xAC\r\n\x7F");
    EXPECT_THAT(desk.frmGateway.tboShell.text, EndsWith("ttl=64\n[2Jü€\n"));
    EXPECT_EQ(listener.heard, desk.frmGateway.tboShell.text);
    for (int i = 0; i < 100; ++i)
        rig.program.Winsock_DataArrival(std::string(5000, 'x') + "ü");
    EXPECT_LE(desk.frmGateway.tboShell.text.size(), 65536u);
    EXPECT_THAT(desk.frmGateway.tboShell.text, EndsWith("xü"));

    rig.program.click(desk.frmModem.cbuBeenden);
    EXPECT_TRUE(rig.program.busy()) << "it asks first";
    rig.answer(true);
    EXPECT_THAT(rig.journal.back(), EndsWith("net close"));
    EXPECT_FALSE(rig.timer2.on || rig.program.busy() || desk.frmModem.open);
}

TEST(NetworkDialogue, TheUserCanEndIt) {
    Rig rig;
    Desk &desk = rig.program.desk;
    begin_address(rig.program);
    rig.program.click(desk.frmIPoEthernet.cbuEthernet_IP_aendern); // locked
    rig.program.cancel();
    EXPECT_THAT(rig.journal, ElementsAre(HasSubstr("run ping"), EndsWith("kill"),
                                         EndsWith("box Der Vorgang wurde abgebrochen.")));
    rig.program.click(desk.frmIPoEthernet.cbuEthernet_IP_aendern);
    rig.program.process_ended({.output = "64 bytes from 192.168.0.100: ttl=64\n"});
    rig.program.Winsock_DataArrival("AT");
    rig.program.cancel();
    EXPECT_THAT(rig.boxes.back().text, HasSubstr("möglicherweise nur teilweise konfiguriert"));
    EXPECT_TRUE(desk.frmIPoEthernet.cbuEthernet_IP_aendern.enabled);
}

} // namespace
} // namespace telvox::test
