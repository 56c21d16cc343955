// The network ports on Qt against the real thing: programs of the system, a socket on the loopback, and, in a
// network namespace of its own, a device that no address leads to but a static entry. Real time, so every
// wait is polled with a limit.

#include "net/ping.hpp"
#include "ports/network_ports.hpp"
#include "ports/qt_ports.hpp"

#include <QCoreApplication>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>
#include <gmock/gmock.h>

#include <optional>

namespace telvox::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr const char *in_namespace = "TELVOX_TEST_IN_NAMESPACE";

bool within(milliseconds limit, const std::function<bool()> &holds) {
    return QTest::qWaitFor(holds, static_cast<int>(limit.count()));
}

struct Shell {
    std::unique_ptr<ReportingProcesses> processes = make_qt_processes();
    std::optional<ProcessEnd> end;
    int ends = 0;

    Shell() {
        processes->ended = [this](const ProcessEnd &how) {
            end = how;
            ++ends;
        };
    }
    const ProcessEnd &run(const ShellCommand &command, milliseconds limit = 10s) {
        end.reset();
        processes->run(command, limit);
        EXPECT_FALSE(end) << "nothing is reported from inside the call";
        EXPECT_TRUE(within(15s, [&] { return end.has_value(); }));
        return *end;
    }
};

TEST(QtProcesses, RunTheRealPing) {
    Shell shell;
    const ProcessEnd &end = shell.run({"ping", {"-n", "-O", "-c", "2", "-W", "2", "127.0.0.1"}});
    EXPECT_EQ(end.cause + std::to_string(end.exit_status), "0");
    EXPECT_TRUE(evaluate_ping(end.output, PingRule::echo_of_address, "127.0.0.1").answered) << end.output;
    EXPECT_FALSE(evaluate_ping(end.output, PingRule::echo_of_address, "127.0.0.2").answered);
}

TEST(QtProcesses, TellHowAProgramCameOut) {
    Shell shell;
    EXPECT_EQ(shell.run({"echo", {"a;b && c", "$HOME", "\"d\""}}).output, "a;b && c $HOME \"d\"\n")
        << "no shell reads the arguments";
    EXPECT_EQ(shell.run({"false", {}}).exit_status, 1);
    EXPECT_THAT(shell.run({"ls", {"/nonexistent"}}).output, HasSubstr("/nonexistent"))
        << "errors are told too";
    EXPECT_THAT(shell.run({"kein-solches-programm", {}}).cause, HasSubstr("fehlt auf diesem Rechner"));
    const ProcessEnd flood = shell.run({"yes", {}}, 300ms);
    EXPECT_TRUE(flood.killed);
    EXPECT_EQ(flood.output.size(), 65536u);

    const int before = shell.ends;
    shell.processes->run({"sleep", {"60"}}, 60s);
    shell.processes->run({"true", {}}, 10s); // takes the place of the one that runs
    ASSERT_TRUE(within(10s, [&] { return shell.ends > before; }));
    EXPECT_FALSE(shell.end->killed);
    shell.processes->run({"sleep", {"60"}}, 60s);
    shell.processes->kill();
    EXPECT_FALSE(within(200ms, [&] { return shell.ends > before + 1; }));
}

TEST(QtTcpClient, SpeaksOverARealSocket) {
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    const auto client = make_qt_tcp_client();
    std::string heard;
    client->arrived = [&](std::string_view bytes) { heard += bytes; };
    client->send("lost");
    client->connect("127.0.0.1", server.serverPort());
    ASSERT_TRUE(within(5s, [&] { return server.hasPendingConnections(); }));
    QTcpSocket &peer = *server.nextPendingConnection();
    peer.write(std::string("User\0name\xFF", 10).data(), 10);
    ASSERT_TRUE(within(5s, [&] { return heard.size() == 10; }));
    client->send("tovri\r");
    ASSERT_TRUE(within(5s, [&] { return peer.bytesAvailable() == 6; }));
    EXPECT_EQ(peer.readAll(), "tovri\r");

    client->close();
    EXPECT_TRUE(within(5s, [&] { return peer.state() == QTcpSocket::UnconnectedState; })) << "at once";
    client->send("lost");
    const quint16 port = server.serverPort();
    server.close();
    client->connect("127.0.0.1", port); // refused
    client->connect("999.1.1.1", 23);   // no address
    EXPECT_FALSE(within(200ms, [&] { return heard.size() > 10; }));
}

/// The program on its real ports.
struct RealProgram {
    struct Boxes final : MessageBoxes {
        void show(const Message &message, Answered) override { texts.push_back(message.text); }
        std::vector<std::string> texts;
    };
    QTemporaryDir folder;
    Boxes boxes;
    QtPorts ports;
    Telvox program{ports.for_program(boxes), {folder.path().toStdString(), {}}};
    FrmIPoEthernet &form = program.desk.frmIPoEthernet;

    explicit RealProgram(const CommonOptions &options = {}) : ports(options) {
        ports.connect(program);
        program.choose(program.desk.frmModem.optEthernet);
        program.click(program.desk.frmModem.mnuIP_over_Ethernet);
    }
    std::string press_and_wait() {
        program.click(form.cbuEthernet_IP_aendern);
        EXPECT_TRUE(within(30s, [&] { return !program.busy(); }));
        return boxes.texts.empty() ? "" : boxes.texts.back();
    }
    std::string give_first(const char *address, const char *mac) {
        program.choose(form.optIP_Erstkonfiguration);
        program.enter(form.tboNeue_IP, address);
        program.enter(form.tboMAC_Adresse2, mac);
        return press_and_wait();
    }
    std::string change(const char *from, const char *to) {
        program.choose(form.optIP_Aenderung);
        program.enter(form.tboAlte_IP, from);
        program.enter(form.tboNeue_IP, to);
        return press_and_wait();
    }
};

TEST(SimulatedNetwork, HasAModuleAndAFactoryNewOne) {
    RealProgram real({.simulator = true});
    EXPECT_EQ(real.give_first("192.168.0.77", "00-1C-04"), "IP Vergabe erfolgreich");
    EXPECT_EQ(real.ports.map->world().factory_new->address(), "192.168.0.77");
    EXPECT_EQ(real.change("192.168.0.100", "192.168.0.101"), "Neue IP eingestellt!");
    EXPECT_EQ(real.ports.map->world().ethernet->memory.settings["IP"], "192.168.0.101");
}

bool run(const QString &program, const QStringList &arguments, QString *output = nullptr) {
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    const bool ended = process.waitForFinished(60'000);
    if (output)
        *output = process.readAll();
    return ended && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

/// A namespace with a device in another one behind a pair of interfaces. The device answers no question who
/// has its address, as one does that has none.
struct DeviceInNamespace {
    DeviceInNamespace() {
        device.start("unshare", {"-n", "sleep", "120"});
        device.waitForStarted();
        const QString pid = QString::number(device.processId());
        // The namespace is there as soon as its program runs.
        within(5s, [&] {
            return !QFileInfo("/proc/" + pid + "/ns/net").symLinkTarget().isEmpty() &&
                   QFileInfo("/proc/" + pid + "/ns/net").symLinkTarget() !=
                       QFileInfo("/proc/self/ns/net").symLinkTarget();
        });
        const QString script =
            "set -e; ip link set lo up; ip link add veth0 type veth peer name veth1 netns %1; "
            "ip addr add 10.9.0.1/24 dev veth0; ip link set veth0 up; "
            "nsenter -t %1 -n sh -ec '"
            "ip link set veth1 address 00:05:b6:00:1c:04; ip addr add 10.9.0.2/24 dev veth1; "
            "echo 8 >/proc/sys/net/ipv4/conf/veth1/arp_ignore; ip link set veth1 up'";
        ready = run("sh", {"-c", script.arg(pid)}, &problem);
    }
    ~DeviceInNamespace() {
        device.kill();
        device.waitForFinished();
    }
    QProcess device;
    bool ready = false;
    QString problem;
};

/// Runs the tests of this name again in a network namespace of their own; whether this is that run. `why`
/// says why there is none.
bool in_own_namespace(const QString &tests, std::string &why) {
    if (qEnvironmentVariableIsSet(in_namespace))
        return true;
    const QStringList unshare = ::geteuid() == 0 ? QStringList{"-n"} : QStringList{"-rn"};
    if (!run("unshare",
             unshare + QStringList{"ip", "link", "add", "veth0", "type", "veth", "peer", "name", "veth1"})) {
        why = "no right to a network namespace or to interfaces in it";
        return false;
    }
    qputenv(in_namespace, "1");
    for (const char *of_this_run : {"GTEST_TOTAL_SHARDS", "GTEST_SHARD_INDEX"})
        qunsetenv(of_this_run);
    QString output;
    EXPECT_TRUE(
        run("unshare",
            unshare + QStringList{"--", QCoreApplication::applicationFilePath(), "--gtest_filter=" + tests},
            &output))
        << output.toStdString();
    EXPECT_THAT(output.toStdString(), HasSubstr("[  PASSED  ] 1 test."));
    qunsetenv(in_namespace);
    return false;
}

TEST(Namespace, ADeviceIsReachedByItsMacAddressAlone) {
    if (std::string why; !in_own_namespace("Namespace.ADevice*", why)) {
        if (!why.empty())
            GTEST_SKIP() << why;
        return;
    }
    const DeviceInNamespace device;
    ASSERT_TRUE(device.ready) << device.problem.toStdString();
    RealProgram real;
    const std::string failed = "IP Vergabe fehlgeschlagen\rMomentane Geräte IP: 0.0.0.0 ?";
    for (const char *address :
         {"10.9.0.1", "127.0.0.1", "10.9.0.255", "0.0.0.0", "10.8.0.1", "999.999.999.999"})
        EXPECT_EQ(real.give_first(address, "00-1C-04"), failed) << address << real.form.tboShell.text;
    EXPECT_EQ(real.give_first("10.9.0.2", "00-1C-05"), failed) << "nobody has that MAC address";
    EXPECT_EQ(real.give_first("10.9.0.2", "00-1C-04"), "IP Vergabe erfolgreich") << real.form.tboShell.text;
    QString entries;
    run("ip", {"neigh", "show", "10.9.0.2"}, &entries);
    EXPECT_THAT(entries.toStdString(), HasSubstr("lladdr 00:05:b6:00:1c:04 PERMANENT"));
    EXPECT_TRUE(QFileInfo::exists(real.folder.filePath("Shell.txt")));
}

TEST(Namespace, AModuleIsToldItsAddressOverARealConnection) {
    if (std::string why; !in_own_namespace("Namespace.AModule*", why)) {
        if (!why.empty())
            GTEST_SKIP() << why;
        return;
    }
    ASSERT_TRUE(run("ip", {"link", "set", "lo", "up"}));
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost, 23));
    QByteArray heard;
    QByteArrayList answers{"\xFF\xFB\x01Username: ", "Password: ", "AT> ", "OK\r\nAT> ", "ERROR"};
    QObject::connect(&server, &QTcpServer::newConnection, [&] {
        QTcpSocket *peer = server.nextPendingConnection();
        peer->write(answers.takeFirst());
        QObject::connect(peer, &QTcpSocket::readyRead, [&heard, &answers, peer] {
            const QByteArray bytes = peer->readAll();
            heard += bytes;
            for (int lines = static_cast<int>(bytes.count('\r')); lines > 0 && !answers.isEmpty(); --lines)
                peer->write(answers.takeFirst());
        });
    });
    RealProgram real;
    EXPECT_EQ(real.change("127.0.0.1", "192.168.0.101"), "Neue IP eingestellt!") << real.form.tboShell.text;
    EXPECT_EQ(heard, "\xFF\xFE\x01tovri\rtovri\r#IP=192.168.0.101\r#RESET\r");
    EXPECT_THAT(real.form.tboShell.text, HasSubstr("Username: Password: AT> OK\nAT> ERROR"));
}

} // namespace
} // namespace telvox::test
