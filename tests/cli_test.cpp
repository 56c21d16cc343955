// Calls of the command line: what is understood, what the form refuses, and by which name.

#include "cli/call.hpp"
#include "cli/output.hpp"
#include "core/files/files.hpp"
#include "core/text.hpp"
#include "operation/operator.hpp"
#include "ports/qt_port_scan.hpp"
#include "rig/cli_program.hpp"
#include "rig/rig.hpp"

#include <QTemporaryDir>
#include <gmock/gmock.h>

#include <csignal>
#include <cstdlib>
#include <sstream>

namespace telvox::test {
namespace {

using cli::Call;
using cli::parse_call;
using operation::Operator;
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

/// The sentence that a function refuses with; empty: it does not.
template <class Function> std::string refusal_of(Function &&function) {
    try {
        function();
        return {};
    } catch (const UsageError &error) {
        return error.what();
    }
}

/// The program with free ports 3 and 6, worked by calls.
struct FilledDesk {
    std::string refusal(const std::string &call) {
        return refusal_of([&] { at_the_form.work(parse_call(words(call))); });
    }

    Rig rig{{"/dev/null/none", {SHARE}}};
    FrmModem &form = rig.program.desk.frmModem;
    PortMap ports{CommonOptions{.ports = {{3, "/dev/a"}, {6, "/dev/b"}}}};
    QtPortScan scan{ports};
    Operator at_the_form{rig.program, scan};
};

TEST(CliOutput, PrintsNothingThatSteersATerminal) {
    char *printed = nullptr;
    std::size_t size = 0;
    cli::Output output(::open_memstream(&printed, &size));
    output.line("a\rb\tü\x1B[2J\xC2\x9B\x9B\x7F\n");
    EXPECT_EQ(output.end(), "");
    EXPECT_STREQ(printed, "a\nb\tü?[2J???\n\n");
    std::free(printed);
}

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
        {"alarmtest --simulator-fall nix", "gibt es nicht"},
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
        {"liste", "liste: DATEI fehlt"},
        {"liste a b", "Unbekannte Angabe \"b\""},
        {"liste a --teil 5/4", "--teil erwartet eine Angabe wie 2/4"},
        {"liste a --teil 1/2x", "--teil erwartet"},
        {"pin --pin 1 --teil 1/2", "--teil gehört nur zu liste"},
        {"pin --pin 1 --json", "--json gehört nur zu liste"},
        {"liste a --speichern", "--speichern gehört nicht zu liste"},
        {"liste a --laufend", "--laufend gehört nur zu signal"},
        {"pin a", "Unbekannte Angabe \"a\""},
        {"pin --pin 1 --msn 2", "--msn gehört nur zu msn"},
        {"anschlussart", "--anschlussart fehlt"},
        {"netz-ip --neue-ip 1.2.3.4", "--momentane-ip fehlt"},
        {"alarmtest --alarmtext A\xE0\x80\xA2", "--alarmtext: kein gültiger Text (UTF-8)"},
        {"alarmtest --alarmtext=\xFF", "--alarmtext: kein gültiger Text (UTF-8)"},
        {"alarmtest \xFF", "Angabe 2: kein gültiger Text"},
    };
    for (const auto &[call, because] : cases)
        EXPECT_THAT(refusal_of([&, &all = call] { static_cast<void>(parse_call(words(all))); }),
                    HasSubstr(because))
            << call;
    EXPECT_EQ(std::string(UsageError("a\nb\x1B[2J").what()), "a?b?[2J") << "one harmless line";
}

TEST(CliCall, TakesValuesInBothSpellings) {
    const Call call = parse_call(words("parametrieren --alarmtext=--Achtung= --typ gsm --port=3=/dev/x=y"));
    EXPECT_EQ(call.values.at("alarmtext").value, "--Achtung=");
    EXPECT_EQ(call.values.at("typ").value, "gsm");
    EXPECT_EQ(call.common.ports.at(3), "/dev/x=y");
    EXPECT_TRUE(parse_call(words("--help")).help);
}

TEST(CliCall, RefusesByNameWhatTheFormDoesNotTake) {
    const struct {
        std::string call;
        const char *because;
    } cases[] = {
        {"gprs-schreiben --apn " + std::string(255, 'a'), "--apn: nicht möglich, daraus würde"},
        {"alarmtest --typ telex", "--typ: \"telex\" gibt es nicht (analog, isdn, gsm, gprs, ethernet)"},
        {"alarmtest --empfaenger abc", "--empfaenger: nur Ziffern"},
        {"alarmtest --empfaenger +49", "--empfaenger: nur Ziffern; + als 00 eingeben"},
        {"alarmtest --service-center 01/2", "--service-center: nur Ziffern und +"},
        {"alarmtest --typ gsm --alarmtext "
         "12345678901234567890123456789012345678901234567890123456789012345678901",
         "--alarmtext: mehr als 70 Zeichen"},
        {"alarmtest --typ gsm --amt 0", "--amt gibt es nicht mit --typ gsm --verbindung direkt"},
        {"alarmtest --typ gsm --passwort x", "--passwort gibt es nicht"},
        {"alarmtest --typ isdn --nachricht fax", "--nachricht gibt es nicht mit --typ isdn"},
        {"alarmtest --nachricht fax --service-center 1",
         "--service-center gibt es nicht mit --typ analog --verbindung direkt --nachricht fax"},
        {"alarmtest --rufnummer-modem 1",
         "--rufnummer-modem: gehört zum Modem; --verbindung auf fern setzen"},
        {"alarmtest --modemanschluss 6", "--modemanschluss: gehört zum Modem"},
        {"alarmtest --verbindung fern --schnittstelle 3", "--schnittstelle: gehört zum Kabel"},
        {"netz-pruefen --ip 1.2.3.4 --verbindung fern --modemanschluss 6",
         "--modemanschluss gibt es nicht mit --typ ethernet"},
        {"alarmtest --typ ethernet", "alarmtest gibt es nicht mit --typ ethernet"},
        {"parametrieren --typ gprs --verbindung fern", "parametrieren gibt es nicht mit --typ gprs"},
        {"msn --typ gsm --msn 1", "--typ: msn gibt es nur mit typ isdn"},
        {"pin --pin 1", "pin gibt es nur mit typ gsm oder gprs"},
        {"msn --msn 12a", "--msn: nur Ziffern und *"},
        {"imei --typ gsm --verbindung fern", "imei gibt es nicht mit --typ gsm --verbindung fern"},
        {"anschlussart --anschlussart s0", "punkt-zu-punkt, mehrgeraete"},
        {"alarmtest --com-direkt 2400,,8,1", "--com-direkt"},
        {"schnittstelle-aendern --neu 9600,n,8,1", "--schnittstelle fehlt"},
        {"schnittstelle-aendern --schnittstelle 3 --neu 57600,n,8,1", "--neu: \"57600,n,8,1\" steht in den"},
        {"schnittstelle-aendern --schnittstelle 3 --com-direkt 57600,n,8,1 --neu 300,n,8,1",
         "--com-direkt: \"57600,n,8,1\" steht in den Einstellungen nicht zur Wahl"},
        {"einstellungen --speichern --com-direkt 57600,n,8,1", "--com-direkt: \"57600,n,8,1\" steht"},
        {"netz-erstvergabe --neue-ip 1 --mac 00:1c", "--mac: nur Ziffern, A bis F und -"},
        {"alarmtest --anbieter unbekannt", "--anbieter: kein Eintrag der Liste enthält \"unbekannt\""},
        {"alarmtest --netz o2", "--netz gibt es nicht mit --typ analog"},
        {"alarmtest --typ gsm --netz +49", "--netz: mehrere Einträge enthalten \"+49\": Telekom D1 +49"},
        {"alarmtest --port 7", "--port erwartet N=GERÄT; ein TCP-Port gehört nur zu ethernet-ip"},
        {"gprs-schreiben --keep-alive 256", "--keep-alive: nicht möglich, daraus würde \"255\""},
        {"gprs-schreiben --ziel-ip 1,2", "--ziel-ip: nur Ziffern und ."},
        {"gprs-schreiben --telemetrie ein", "--telemetrie gehört nur zu ipt-schreiben"},
        {"ipt-schreiben --telemetrie an", "--telemetrie: \"an\" gibt es nicht (ein, aus)"},
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
    EXPECT_EQ(desk.refusal("parametrieren --typ analog --verbindung Fern --modemanschluss com6 --amt 0 "
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

/// ISDN's test is usable over the modem only if the way was chosen before the variant.
TEST(CliCall, KeepsTheWayThatTheVariantWouldReset) {
    for (const char *job : {"alarm-aus --typ gsm", "alarmtest --typ isdn"}) {
        FilledDesk desk;
        EXPECT_EQ(
            desk.refusal(std::string(job) + " --verbindung fern --rufnummer-modem 1 --modemanschluss 3"), "");
        EXPECT_TRUE(desk.form.optFernverbindung.value && desk.rig.program.busy());
    }
}

TEST(CliCall, NamesADeviceByItsPath) {
    FilledDesk desk;
    EXPECT_THAT(desk.refusal("alarmtest --schnittstelle /dev/not-there"), HasSubstr("vorhandenes Gerät"));
    EXPECT_EQ(desk.refusal("alarmtest --schnittstelle /dev/null"), "");
    EXPECT_EQ(desk.rig.port.number, 1) << "the lowest that is free";
    EXPECT_EQ(desk.at_the_form.by_path("COM 1 ist nicht COM 11"), "/dev/null ist nicht COM 11");
}

TEST(CliCall, TakesANumberWithItsProtocolsFromTheLists) {
    FilledDesk mobile, fixed;
    EXPECT_EQ(mobile.refusal("alarmtest --typ gsm --netz vodafone --schnittstelle 3"), "");
    EXPECT_EQ(mobile.form.tboService_Center.text, "+491722270333");
    EXPECT_EQ(fixed.refusal("alarmtest --typ isdn --anbieter Festnetz --schnittstelle 3"), "");
    EXPECT_EQ(fixed.form.tboService_Center.text, "0193010");
    EXPECT_EQ(fixed.rig.program.desk.session.strSMS_Protokoll_ISDN, "M1");
}

TEST(CliCall, LeavesTheChecksToTheForm) {
    FilledDesk desk;
    EXPECT_EQ(desk.refusal("parametrieren --typ gsm --schnittstelle 3"), "");
    EXPECT_EQ(desk.rig.outcome(), Outcome::refused);
    ASSERT_EQ(desk.rig.boxes.size(), 1u);
    EXPECT_THAT(desk.rig.boxes[0].text, HasSubstr("Service-Center Nummer"));
    EXPECT_EQ(desk.at_the_form.named_by_check(parse_call({"parametrieren"})), "service-center");
}

TEST(CliCall, TakesValuesFromLines) {
    const auto filled = [](const std::string &call, const std::string &lines) {
        Call complete = parse_call(words(call));
        std::istringstream input(lines);
        cli::complete_call(complete, input);
        return complete;
    };
    const Call call = filled("pin --typ gprs --aus - --schnittstelle 4",
                             "\xEF\xBB\xBF# Gerät 7\r\n\r\ntyp=gsm\r\npin=-\r\nalarmtext= a=b \n");
    EXPECT_EQ(call.find("typ")->value, "gprs") << "the option wins";
    EXPECT_EQ(call.find("pin")->value, "-");
    EXPECT_EQ(call.find("pin")->from.text(), "Standardeingabe, Zeile 4: pin");
    EXPECT_EQ(call.find("alarmtext")->value, " a=b ");
    EXPECT_EQ(filled("pin --typ gsm --pin -", "1234\r\n5678").find("pin")->value, "1234");
    EXPECT_EQ(filled("alarmtest --alarmtext -", "").find("alarmtext")->value, "-") << "no secret";

    const struct {
        const char *call;
        std::string lines;
        const char *because;
    } cases[] = {
        {"pin --pin -", "", "--pin: die Standardeingabe ist zu Ende"},
        {"pin --pin -", "\xC3\n", "--pin: kein gültiger Text"},
        {"pin --aus -", "typ=gsm\n", "--pin fehlt"},
        {"pin --aus -", "pin=1\napn=x\n", "Standardeingabe, Zeile 2: \"apn\" ist keine Angabe von pin"},
        {"pin --aus -", "pin=1\npin=1", "Zeile 2: pin ist doppelt"},
        {"pin --aus -", "pin\n", "hat nicht die Form name=wert"},
        {"pin --aus -", std::string("pin=\0", 5), "ist kein Text"},
        {"pin --aus -", std::string(70000, 'x'), "größer als 64 KB"},
        {"pin --aus /etc", "", "\"/etc\" ist keine Datei."},
        {"pin --aus /x\x1B[2J\xC2\x9B", "", "\"/x?[2J?\" gibt es nicht"},
        {"pin --aus /nonexistent", "", "\"/nonexistent\" gibt es nicht"},
    };
    for (const auto &[words, lines, because] : cases)
        EXPECT_THAT(refusal_of([&, &of = words, &in = lines] { static_cast<void>(filled(of, in)); }),
                    HasSubstr(because));
}

TEST(CliCall, WhatAJobPrintsIsWhatItTakes) {
    const std::string key(64, '7');
    const struct {
        const char *reads, *writes;
        std::string lines;
    } cases[] = {
        {"gprs-lesen", "gprs-schreiben",
         "apn=\nppp=keine\nbenutzer=\nkennwort=\nziel-ip=\nziel-port=\ndomain=\ndomain-port=\nnummer1=\n"
         "nummer2=\ncallback1=kein\ncallback2=kein\nstandleitung=aus\nkeep-alive=0"},
        {"gprs-lesen", "gprs-schreiben",
         "apn=Netz: x.y (z) \nppp=keine\nbenutzer=ich "
         "\nkennwort=-\nziel-ip=1.2.3.4\nziel-port=1\ndomain=a.b\n"
         "domain-port=65535\nnummer1=+49\nnummer2=0171\ncallback1=ip\ncallback2=domain\nstandleitung=ip\n"
         "keep-alive=255"},
        {"ipt-lesen", "ipt-schreiben",
         "telemetrie=aus\nbenutzer=u\nkennwort=ä=ö\nverschleierung=aus\nschluessel-fest=" + key +
             "\nschluessel-challenge=" + key},
        {"ipt-lesen", "ipt-schreiben",
         "telemetrie=ein\nbenutzer=\nkennwort=\nverschleierung=ein\nschluessel-fest=1\nschluessel-"
         "challenge="},
    };
    for (const auto &[reads, writes, lines] : cases) {
        FilledDesk desk;
        Call call = parse_call({writes, "--schnittstelle", "3", "--aus", "-"});
        std::istringstream input(lines);
        cli::complete_call(call, input);
        desk.at_the_form.work(call);
        EXPECT_EQ(cli::find_job(reads)->result(desk.rig.program.desk), lines);
    }
    // Filling a field switches on what it needs, unless the call says otherwise.
    FilledDesk desk;
    EXPECT_EQ(desk.refusal("ipt-schreiben --schnittstelle 3 --schluessel-fest " + key), "");
    EXPECT_TRUE(desk.rig.program.desk.frmIPT.optScrambled.value);
    EXPECT_TRUE(desk.rig.program.desk.frmIPT.chkIPT_Betrieb.value);
}

TEST(CliCall, HelpsWithEveryJobInLinesThatFit) {
    for (const cli::JobCommand &job : cli::job_commands())
        for (const std::string &help : {cli::help_text(&job), cli::help_text(nullptr)}) {
            EXPECT_THAT(help, HasSubstr(job.name));
            for (const cli::Option &option : job.options)
                EXPECT_THAT(help, HasSubstr(option.name)) << job.name;
            std::istringstream lines(help);
            for (std::string line; std::getline(lines, line);)
                EXPECT_LE(length(line), 80u) << line;
        }
}

class CliCalls : public CliProgram {
  protected:
    void start(const std::string &call) { start_program(words(call)); }
};

TEST_F(CliCalls, PrintsWhatAQueryFoundOut) {
    start("imei --simulator --typ gsm --schnittstelle 3");
    EXPECT_EQ(result(), 0);
    EXPECT_THAT(out, testing::MatchesRegex("[0-9]{15}\n"));
    EXPECT_EQ(err, "Frage IMEI ab\nBereit\n");
    start("erkennen --simulator --schnittstelle 3");
    EXPECT_EQ(result(), 0);
    EXPECT_EQ(out, "typ=gsm\ncom-direkt=2400,e,8,1\n");
}

TEST_F(CliCalls, AnswersQuestionsWithNoAndTellsARejection) {
    const std::string call = "pin --typ gsm --pin= --schnittstelle " + mute_device();
    start(call);
    EXPECT_EQ(result(), 2);
    EXPECT_THAT(err, HasSubstr("Die PIN wird gelöscht. Fortfahren?\n(Nein; --trotzdem bedeutet Ja)"));
    EXPECT_FALSE(devices[0]->heard()) << "nothing is sent";
    start(call + " --trotzdem");
    EXPECT_TRUE(devices[0]->takes("AT**TIME?\r"));
    ::kill(static_cast<pid_t>(process.processId()), SIGINT);
    EXPECT_EQ(result(), 130);
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(out, "Der Vorgang wurde abgebrochen.\n");
    start("alarm-aus --typ gsm --schnittstelle " + mute_device());
    ASSERT_TRUE(devices[1]->takes("AT**TIME?\r"));
    devices[1]->says("TIME: 1\r\n");
    ASSERT_TRUE(devices[1]->takes("AT**SCN=\r"));
    devices[1]->says("\r\nERROR\r\n");
    EXPECT_EQ(result(), 3);
    EXPECT_THAT(out, HasSubstr("Das Telvox-A hat nicht angenommen:"));
}

TEST_F(CliCalls, TellsAFailureFromARefusal) {
    start("alarm-aus --typ gsm --schnittstelle " + mute_device());
    EXPECT_EQ(result(), 1);
    EXPECT_THAT(out, HasSubstr("Kommunikationsfehler: 33."));
    EXPECT_THAT(out, Not(HasSubstr("\r")));
    start("parametrieren --simulator --schnittstelle 1");
    EXPECT_EQ(result(), 2);
    EXPECT_THAT(out, HasSubstr("Rufnummer des Empfängers"));
    EXPECT_THAT(err, HasSubstr("--empfaenger"));
    start("parametrieren --empfaenger x");
    EXPECT_EQ(result(), 2);
    EXPECT_EQ(out, "");
    EXPECT_EQ(std::count(err.begin(), err.end(), '\n'), 1);
    start("alarm-aus --schnittstelle /dev/no-such-device");
    EXPECT_EQ(result(), 2);
    start("alarm-aus --port 4=/dev/no-such-device --schnittstelle 4");
    EXPECT_EQ(result(), 1);
    EXPECT_EQ(out, "COM 4 konnte nicht geöffnet werden.\nDie Schnittstelle ist nicht vorhanden.\n");
    const QTemporaryDir own;
    start("alarm-aus --schnittstelle /etc --datenordner " + own.path().toStdString());
    EXPECT_EQ(result(), 1);
    EXPECT_EQ(out, "/etc konnte nicht geöffnet werden.\nDas ist ein Ordner, keine serielle Schnittstelle.\n");
    EXPECT_THAT(whole_file(path_of(own.filePath("verlauf.csv").toStdString()), 1024),
                HasSubstr("\"/etc konnte nicht geöffnet werden."));
    process.setStandardOutputFile("/dev/full");
    start("--version");
    EXPECT_EQ(result(), 1);
    EXPECT_THAT(err, HasSubstr("Der Datenträger ist voll."));
}

TEST_F(CliCalls, AChangedInterfaceIsKept) {
    const QTemporaryDir folder;
    start("schnittstelle-aendern --simulator --typ analog --schnittstelle 1 --neu 9600,n,8,1 --datenordner " +
          folder.path().toStdString());
    EXPECT_EQ(result(), 0) << err;
    EXPECT_THAT(whole_file(path_of(folder.filePath("Com.ini").toStdString()), 1024),
                HasSubstr("Direktverbindung\r\nBaudrate, 9600\r\n"));
}

} // namespace
} // namespace telvox::test
