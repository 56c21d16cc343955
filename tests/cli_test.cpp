// Calls of the command line: what is understood, what the form refuses, and by which name.

#include "cli/call.hpp"
#include "cli/operator.hpp"
#include "cli/tracing_port.hpp"
#include "rig/rig.hpp"

#include <QCoreApplication>
#include <QProcess>
#include <gmock/gmock.h>

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <sstream>
#include <unistd.h>

namespace telvox::test {
namespace {

using cli::Call;
using cli::Operator;
using cli::parse_call;
using testing::HasSubstr;
using testing::IsEmpty;

/// A call's words; a dot stands for a blank inside a word.
std::vector<std::string> words(const std::string &call) {
    std::vector<std::string> all;
    std::istringstream stream(call);
    for (std::string word; stream >> word; all.push_back(word))
        std::replace(word.begin(), word.end(), '.', ' ');
    return all;
}

/// The program with free ports 3 and 6, worked by calls.
struct FilledDesk {
    std::string refusal(const std::string &call) {
        try {
            Operator(rig.program, ports).work(parse_call(words(call)));
            return {};
        } catch (const UsageError &error) {
            return error.what();
        }
    }

    Rig rig;
    FrmModem &form = rig.program.desk.frmModem;
    PortMap ports{CommonOptions{.ports = {{3, "/dev/a"}, {6, "/dev/b"}}}};
};

TEST(CliCall, RefusesWhatItDoesNotUnderstand) {
    const struct {
        const char *call, *because;
    } cases[] = {
        {"", "Auftrag fehlt"},
        {"--typ gsm", "Auftrag fehlt"},
        {"tanzen", "Unbekannter Auftrag \"tanzen\""},
        {"alarmtest alarm-aus", "\"alarm-aus\""},
        {"alarmtest --foo", "\"--foo\""},
        {"alarmtest -x", "\"-x\""},
        {"alarmtest --typ", "--typ: Wert fehlt"},
        {"alarmtest --typ --amt 0", "--typ: Wert fehlt"},
        {"alarmtest --typ gsm --typ gsm", "--typ ist doppelt"},
        {"alarmtest --typ=gsm --typ isdn", "--typ ist doppelt"},
        {"alarmtest --mitschnitt=1", "nimmt keinen Wert"},
        {"alarmtest --simulator --simulator", "doppelt"},
        {"alarmtest --port 3", "--port erwartet"},
        {"alarmtest --port 0=/dev/x", "--port erwartet"},
        {"alarmtest --port 16=/dev/x", "--port erwartet"},
        {"alarmtest --port 3x=/dev/x", "--port erwartet"},
        {"alarmtest --port 99999999999=/dev/x", "--port erwartet"},
        {"alarmtest --port 3=", "--port erwartet"},
        {"alarmtest --port 3=/dev/x --port 3=/dev/y", "schon vergeben"},
        {"alarmtest --port 3=/dev/x --port 4=/dev/x", "schon vergeben"},
        {"alarmtest --datenordner /nonexistent", "kein Ordner"},
        {"pin", "--pin fehlt"},
        {"pin --pin 1 --msn 2", "--msn gehört nur zu msn"},
        {"anschlussart", "--anschlussart fehlt"},
    };
    for (const auto &[call, because] : cases) {
        try {
            static_cast<void>(parse_call(words(call)));
            ADD_FAILURE() << call << " was taken";
        } catch (const UsageError &error) {
            EXPECT_THAT(error.what(), HasSubstr(because)) << call;
        }
    }
    EXPECT_EQ(std::string(UsageError("a\nb\x1B[2J").what()), "a?b?[2J") << "one harmless line";
}

TEST(CliCall, TakesValuesInBothSpellings) {
    const Call call = parse_call(words("parametrieren --alarmtext=--Achtung= --typ gsm --port=3=/dev/x=y"));
    EXPECT_EQ(call.values.at("--alarmtext"), "--Achtung=");
    EXPECT_EQ(call.values.at("--typ"), "gsm");
    EXPECT_EQ(call.common.ports.at(3), "/dev/x=y");
    EXPECT_TRUE(parse_call(words("--help")).help);
}

TEST(CliCall, RefusesByNameWhatTheFormDoesNotTake) {
    const struct {
        const char *call, *because;
    } cases[] = {
        {"alarmtest --typ telex", "--typ: \"telex\" gibt es nicht (analog, isdn, gsm, gprs, ethernet)"},
        {"alarmtest --empfaenger abc",
         "--empfaenger: \"abc\" wird von tboRufnummer_Empfaenger nicht angenommen"},
        {"alarmtest --empfaenger +49", "tboRufnummer_Empfaenger nicht angenommen"},
        {"alarmtest --typ gsm --alarmtext "
         "12345678901234567890123456789012345678901234567890123456789012345678901",
         "tboAlarmmeldung nicht angenommen"},
        {"alarmtest --typ gsm --amt 0", "chkAmt steht bei dieser Auswahl nicht zur Verfügung"},
        {"alarmtest --typ gsm --passwort x", "chkPasswort steht"},
        {"alarmtest --typ isdn --nachricht fax", "optFAX steht"},
        {"alarmtest --nachricht fax --service-center 1", "tboService_Center steht"},
        {"alarmtest --rufnummer-modem 1", "tboRufnummer_Modem steht"},
        {"alarmtest --modemanschluss 6", "cobModem_Port steht"},
        {"alarmtest --verbindung fern --schnittstelle 3", "cobSchnittstelle steht"},
        {"alarmtest --typ ethernet", "cbuTest steht"},
        {"parametrieren --typ gprs --verbindung fern", "cbuParametrieren steht"},
        {"msn --msn 1", "mnuMSN_festlegen steht"},
        {"msn --typ isdn --msn 12a", "tboMSN nicht angenommen"},
        {"imei --typ gsm --verbindung fern", "mnuStatus_abfragen steht"},
        {"anschlussart --typ isdn --anschlussart s0", "punkt-zu-punkt, mehrgeraete"},
        {"alarmtest --com-direkt 2400,,8,1", "--com-direkt"},
        {"alarmtest --schnittstelle 16", "--schnittstelle: \"16\""},
        {"alarmtest --schnittstelle COM.0", "--schnittstelle: \"COM 0\""},
    };
    for (const auto &[call, because] : cases) {
        FilledDesk desk;
        desk.rig.free_ports = {3, 6};
        EXPECT_THAT(desk.refusal(call), HasSubstr(because)) << call;
        EXPECT_FALSE(desk.rig.program.busy()) << call;
        EXPECT_THAT(desk.rig.journal, Not(testing::Contains(HasSubstr("open")))) << call;
    }
}

TEST(CliCall, FillsTheFormAndPressesTheButton) {
    FilledDesk desk;
    desk.rig.free_ports = {3, 6};
    EXPECT_EQ(desk.refusal("parametrieren --typ analog --verbindung fern --modemanschluss COM.6 --amt 0 "
                           "--rufnummer-modem 0541 --empfaenger 0171 --passwort geheim --alarmtext Öl.läuft "
                           "--com-fern 2400,e,8,1"),
              "");
    EXPECT_TRUE(desk.rig.program.busy());
    EXPECT_EQ(desk.form.tboPasswort.text, "geheim");
    EXPECT_EQ(desk.form.tboAmt.text, "0");
    EXPECT_EQ(desk.form.tboAlarmmeldung.text, "Öl läuft");
    EXPECT_EQ(desk.rig.port.CommPort(), 6);
    EXPECT_EQ(desk.rig.port.format, (SerialFormat{2400, 'e', 8, 1}));
}

TEST(CliCall, KeepsTheWayThatTheVariantWouldReset) {
    FilledDesk mobile;
    EXPECT_EQ(mobile.refusal("alarm-aus --typ gsm --verbindung fern --rufnummer-modem 1 --modemanschluss 3"),
              "");
    EXPECT_TRUE(mobile.form.optFernverbindung.value);
    EXPECT_TRUE(mobile.rig.program.busy());

    FilledDesk isdn; // over the modem its button is usable only if the way was chosen before the variant
    EXPECT_EQ(isdn.refusal("alarmtest --typ isdn --verbindung fern --rufnummer-modem 1 --modemanschluss 3"),
              "");
    EXPECT_TRUE(isdn.rig.program.busy());
}

TEST(CliCall, GoesThroughTheMenuToADialogsButton) {
    FilledDesk desk;
    EXPECT_EQ(desk.refusal("anschlussart --typ isdn --anschlussart punkt-zu-punkt --schnittstelle 3"), "");
    EXPECT_TRUE(desk.rig.program.busy());
    EXPECT_EQ(desk.rig.program.desk.session.byteISDN_Anschlussart, 1);
}

TEST(CliCall, ReportsAPortThatCannotBeOpenedAsTheWindowWould) {
    FilledDesk desk;
    desk.rig.open_failure = "not there";
    EXPECT_EQ(desk.refusal("alarmtest --schnittstelle COM5"), "");
    EXPECT_EQ(desk.rig.program.outcome(), Outcome::failed);
    ASSERT_EQ(desk.rig.boxes.size(), 1u);
    EXPECT_EQ(desk.rig.boxes[0].text, "COM 5 konnte nicht geöffnet werden.\rnot there");
}

TEST(CliCall, NamesADeviceByItsPath) {
    FilledDesk desk;
    EXPECT_THAT(desk.refusal("alarmtest --schnittstelle /dev/not-there"), HasSubstr("vorhandenes Gerät"));
    EXPECT_EQ(desk.refusal("alarmtest --schnittstelle /dev/null"), "");
    EXPECT_EQ(desk.rig.port.number, 1) << "the lowest that is free";
}

TEST(CliCall, LeavesTheChecksToTheForm) {
    FilledDesk desk;
    EXPECT_EQ(desk.refusal("parametrieren --typ gsm --schnittstelle 3"), "");
    EXPECT_EQ(desk.rig.program.outcome(), Outcome::refused);
    ASSERT_EQ(desk.rig.boxes.size(), 1u);
    EXPECT_THAT(desk.rig.boxes[0].text, HasSubstr("Service-Center Nummer"));
}

TEST(CliTrace, ShowsTheDialogueLineByLineAndPassesItOn) {
    Rig rig;
    std::vector<std::string> lines;
    cli::TracingPort traced(rig.port, [&](const std::string &line) { lines.push_back(line); });
    traced.Output("AT**MSG1=\"\xD6l\"\r");
    rig.port.pending = "TIME: 2000\r\n\x1B[2J\x9D par";
    EXPECT_EQ(traced.Input(), "TIME: 2000\r\n\x1B[2J\x9D par");
    traced.Output("+++");
    traced.Output("\r");
    rig.port.pending = std::string(450, 'n');
    traced.Input();
    traced.PortOpen(false);
    EXPECT_THAT(lines, testing::ElementsAre("-> AT**MSG1=\"Öl\"", "<- TIME: 2000", "<- \\x1B[2J\\x9D par",
                                            "-> +++", "-> \\x0D", "<- " + std::string(200, 'n'),
                                            "<- " + std::string(200, 'n'), "<- " + std::string(50, 'n')));
}

/// The built program itself.
class CliProgram : public testing::Test {
  protected:
    void start(const std::string &call) {
        QStringList arguments;
        for (const std::string &word : words(call))
            arguments << QString::fromStdString(word);
        process.start(TELVOX_CLI, arguments);
        ASSERT_TRUE(process.waitForStarted());
    }
    int result() {
        EXPECT_TRUE(process.waitForFinished(20000));
        out = process.readAllStandardOutput().toStdString();
        err = process.readAllStandardError().toStdString();
        return process.exitCode();
    }
    /// A device that never says anything.
    std::string mute_device() {
        master = ::posix_openpt(O_RDWR | O_NOCTTY);
        ::grantpt(master);
        ::unlockpt(master);
        slave =
            ::open(::ptsname(master), O_RDWR | O_NOCTTY); // the line stands also while nobody has opened it
        return ::ptsname(master);
    }
    ~CliProgram() override {
        ::close(slave);
        ::close(master);
    }

    QProcess process;
    std::string out, err;
    int master = -1;
    int slave = -1;
};

TEST_F(CliProgram, PrintsWhatAQueryFoundOut) {
    start("imei --simulator --typ gsm --schnittstelle 3");
    EXPECT_EQ(result(), 0);
    EXPECT_THAT(out, testing::MatchesRegex("[0-9]{15}\n"));
    EXPECT_EQ(err, "Frage IMEI ab\nBereit\n");
}

TEST_F(CliProgram, TellsAFailureFromARefusal) {
    start("alarm-aus --typ gsm --schnittstelle " + mute_device());
    EXPECT_EQ(result(), 1);
    EXPECT_THAT(out, HasSubstr("Kommunikationsfehler: 33."));
    EXPECT_THAT(out, Not(HasSubstr("\r")));
    start("parametrieren --simulator --schnittstelle 1");
    EXPECT_EQ(result(), 2);
    EXPECT_THAT(out, HasSubstr("Rufnummer des Empfängers"));
    start("parametrieren --empfaenger x");
    EXPECT_EQ(result(), 2);
    EXPECT_EQ(out, "");
    EXPECT_EQ(std::count(err.begin(), err.end(), '\n'), 1);
    start("alarm-aus --schnittstelle /dev/no-such-device");
    EXPECT_EQ(result(), 2);
    start("alarm-aus --port 4=/dev/no-such-device --schnittstelle 4");
    EXPECT_EQ(result(), 1);
    EXPECT_THAT(out, HasSubstr("konnte nicht geöffnet werden.\nDie Schnittstelle ist nicht vorhanden.\n"));
}

TEST_F(CliProgram, AnInterruptEndsInOrder) {
    start("parametrieren --typ gsm --empfaenger 1 --service-center 1 --alarmtext x --schnittstelle " +
          mute_device());
    pollfd line{.fd = master, .events = POLLIN, .revents = 0};
    ASSERT_EQ(::poll(&line, 1, 10000), 1) << "the job has sent something";
    ::kill(static_cast<pid_t>(process.processId()), SIGINT);
    EXPECT_EQ(result(), 130);
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
}

} // namespace
} // namespace telvox::test

int main(int argc, char **argv) {
    testing::InitGoogleMock(&argc, argv);
    QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
