// Lists on the command line: the built program, simulated devices and devices with faults, and what stands in
// the result file afterwards.

#include "core/files/files.hpp"
#include "core/lists/result_file.hpp"
#include "operation/list_order.hpp"
#include "rig/cli_program.hpp"
#include "rig/served_devices.hpp"
#include "simulator/gsm.hpp"

#include <gmock/gmock.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace telvox::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

class ListCommand : public CliProgram {
  protected:
    void SetUp() override { fs::create_directories(folder); }
    void TearDown() override { fs::remove_all(folder); }

    void write(const std::string &table) { std::ofstream(list) << table; }
    int run(const std::vector<std::string> &options = {}) {
        begin(options);
        return result();
    }
    void begin(const std::vector<std::string> &options = {}) {
        std::vector<std::string> words{"liste", list, "--simulator", "--geraet-pruefen=" + check};
        words.insert(words.end(), options.begin(), options.end());
        start_program(words);
    }
    [[nodiscard]] std::vector<std::string> lines_of_output() const {
        std::vector<std::string> all;
        std::istringstream stream(out);
        for (std::string line; std::getline(stream, line);)
            all.push_back(line);
        return all;
    }
    /// How each row stands in the result file.
    [[nodiscard]] std::vector<std::string> results() const {
        const DeviceList all_rows = operation::read_list(list);
        const ResultFile file(result_path(list), all_rows);
        std::vector<std::string> all;
        for (std::size_t i = 0; i < all_rows.rows.size(); ++i)
            all.emplace_back(file.last(i) ? word_of(file.last(i)->outcome) : "offen");
        return all;
    }

    const fs::path folder = fs::temp_directory_path() / ("telvox_list_" + std::to_string(::getpid()));
    const std::string list = folder / "pumpen.csv";
    std::string check = "aus"; ///< which device it is; most of these do not answer that
};

TEST_F(ListCommand, DoesDevicesOfAllVariantsWithFaultsInBetween) {
    const std::string mute = mute_device();
    write("name;typ;schnittstelle;auftrag;ip;verbindung;modemanschluss;rufnummer-modem;passwort\n"
          "A;analog;1;alarm-aus;;;;;\n"
          "B;isdn;2;alarm-aus;;;;;\n"
          "C;gsm;3;alarm-aus;;;;;\n"
          ";gsm;3;imei;;;;;\n"
          "D;gprs;4;imei;;;;;\n"
          "E;ethernet;5;ethernet-ip;192.168.0.9;;;;\n"
          "F;ethernet;;netz-pruefen;192.168.0.100;;;;\n"
          "fehlt;gsm;9;alarm-aus;;;;;\n"
          "stumm;gsm;" +
          mute +
          ";alarm-aus;;;;;\n"
          "fern;analog;;alarm-aus;;fern;6;2;falsch\n");
    EXPECT_EQ(run(), 1);
    EXPECT_EQ(err, "");
    const auto lines = lines_of_output();
    EXPECT_THAT(
        lines,
        UnorderedElementsAre(
            "Zeile 2, A, COM 1 (simuliert): erfolgreich", "Zeile 3, B, COM 2 (simuliert): erfolgreich",
            "Zeile 4, C, COM 3 (simuliert): erfolgreich",
            testing::MatchesRegex("Zeile 5, COM 3 .simuliert.: erfolgreich: [0-9]+"),
            testing::MatchesRegex("Zeile 6, D, COM 4 .simuliert.: erfolgreich: [0-9]+"),
            "Zeile 7, E, COM 5 (simuliert): erfolgreich", "Zeile 8, F, Netzwerk (simuliert): erfolgreich",
            "Zeile 9, fehlt, COM 9: fehlgeschlagen: COM 9 konnte nicht geöffnet werden. Die Schnittstelle "
            "ist nicht "
            "vorhanden.",
            HasSubstr("Zeile 10, stumm, " + mute +
                      ": fehlgeschlagen: Fehler bei der Parametrierung. Kommunikationsfehler: 33."),
            HasSubstr("Zeile 11, fern, COM 6 (simuliert): fehlgeschlagen: Das Telvox-A antwortet nicht."),
            "10 Zeilen: 7 erfolgreich, 3 fehlgeschlagen. Ergebnisse: " + result_path(list).string()));
    const auto at = [&](const char *text) {
        return std::find_if(lines.begin(), lines.end(),
                            [&](const auto &line) { return line.starts_with(text); });
    };
    EXPECT_LT(at("Zeile 4,"), at("Zeile 5,")) << "one after the other at one port";
    EXPECT_THAT(results(), ElementsAre("erfolgreich", "erfolgreich", "erfolgreich", "erfolgreich",
                                       "erfolgreich", "erfolgreich", "erfolgreich", "fehlgeschlagen",
                                       "fehlgeschlagen", "fehlgeschlagen"));
}

TEST_F(ListCommand, GoesOnWhereItStopped) {
    write("name;schnittstelle\nA;3\nB;4\nC;99\n");
    {
        ResultFile file(result_path(list), operation::read_list(list));
        ASSERT_EQ(file.append({{0, {.outcome = RowOutcome::objected, .time = "gestern"}},
                               {1, {.outcome = RowOutcome::failed}},
                               {2, {.outcome = RowOutcome::skipped, .time = "heute"}}}),
                  "");
        start_program({"liste", list, "--simulator"});
        EXPECT_EQ(result(), 2) << "somebody else works at the list";
        EXPECT_THAT(err, HasSubstr("Die Datei wird von einem anderen Programm benutzt."));
    }
    const std::ofstream profile(folder / "p.txt");
    std::ofstream(folder / "p.txt") << "typ=gprs\n";
    EXPECT_EQ(run({"--aus", folder / "p.txt"}), 2) << "the job of B is not complete";
    write("name;schnittstelle;auftrag\nA;3;\nB;4;imei\nC;99;\n");
    EXPECT_EQ(run({"--aus", folder / "p.txt"}), 3) << err;
    EXPECT_THAT(
        lines_of_output(),
        ElementsAre("Zeile 2, A: schon erledigt (mit Ablehnungen, gestern)",
                    "Zeile 4, C: schon erledigt (übersprungen, heute)",
                    testing::StartsWith("Zeile 3, B, COM 4 (simuliert): erfolgreich: "),
                    testing::StartsWith("3 Zeilen: 1 erfolgreich, 1 mit Ablehnungen, 1 übersprungen.")));
    EXPECT_EQ(run(), 3);
    EXPECT_THAT(out, Not(HasSubstr("Zeile 3, B, COM 4")));
}

TEST_F(ListCommand, ALostPortEndsItsRowAndAnInterruptAllThatRun) {
    const std::string lost = mute_device(), first = mute_device(), second = mute_device();
    write("name;typ;schnittstelle;auftrag\nA;gsm;" + lost + ";alarm-aus\nB;gsm;" + first +
          ";alarm-aus\nC;gsm;" + second + ";imei\nD;gsm;" + second + ";alarm-aus\n");
    begin();
    for (const auto &device : devices)
        ASSERT_TRUE(device->hears());
    devices[0]->unplug();
    ASSERT_TRUE(process.waitForReadyRead(10000));
    const std::string so_far = process.readAllStandardOutput().toStdString();
    EXPECT_THAT(so_far, HasSubstr("Zeile 2, A, " + lost + ": fehlgeschlagen: "));
    ::kill(static_cast<pid_t>(process.processId()), SIGINT);
    EXPECT_EQ(result(), 130);
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_THAT(
        lines_of_output(),
        UnorderedElementsAre("Zeile 3, B, " + first + ": abgebrochen: Der Vorgang wurde abgebrochen.",
                             "Zeile 4, C, " + second + ": abgebrochen: Der Vorgang wurde abgebrochen.",
                             HasSubstr("4 Zeilen: 1 fehlgeschlagen, 2 abgebrochen, 1 offen.")));
    EXPECT_THAT(results(), ElementsAre("fehlgeschlagen", "abgebrochen", "abgebrochen", "offen"));
}

TEST_F(ListCommand, NothingMoreStartsOnceAResultCannotBeWritten) {
    const std::string one = mute_device();
    write("typ;schnittstelle;auftrag\ngsm;" + one + ";alarm-aus\ngsm;" + one + ";imei\ngsm;" + one +
          ";signal\n");
    begin();
    ASSERT_TRUE(devices[0]->hears());
    fs::remove(result_path(list));
    devices[0]->unplug();
    EXPECT_EQ(result(), 1);
    EXPECT_EQ(
        err,
        "telvox-cli: Das Ergebnis ließ sich nicht aufschreiben. Die Datei wurde gelöscht oder ersetzt.\n");
    EXPECT_THAT(out, HasSubstr("3 Zeilen: 1 fehlgeschlagen, 2 offen."));
}

TEST_F(ListCommand, AnUnpluggedAdapterEndsOneOfEightJobs) {
    std::vector<std::shared_ptr<simulator::Unit>> units;
    for (int i = 0; i < 8; ++i) {
        units.push_back(std::make_shared<simulator::Gsm>(simulator::Generation::newer));
        units.back()->memory.service_number = "0900";
    }
    constexpr std::size_t unplugged = 3;
    units[unplugged]->silent = true; // its job still waits then
    {
        ServedDevices served(units);
        std::string table = "typ;schnittstelle;auftrag\n";
        for (std::size_t i = 0; i < units.size(); ++i)
            table += "gsm;" + served.path(i) + ";alarm-aus\n";
        write(table);
        begin();
        ASSERT_TRUE(served.all_hear());
        served.unplug(unplugged);
        EXPECT_EQ(result(), 1);
        EXPECT_THAT(out, HasSubstr("Zeile 5, " + served.path(unplugged) +
                                   ": fehlgeschlagen: Die Verbindung zur Schnittstelle "));
    }
    const auto rows = results();
    for (std::size_t i = 0; i < units.size(); ++i) {
        EXPECT_EQ(rows[i], i == unplugged ? "fehlgeschlagen" : "erfolgreich");
        EXPECT_EQ(units[i]->memory.service_number, i == unplugged ? "0900" : "");
    }
}

TEST_F(ListCommand, KnowsWhichDeviceHangsOnEachCable) {
    check = "ein";
    std::vector<std::shared_ptr<simulator::Unit>> units;
    for (int i = 1; i <= 8; ++i) {
        auto unit = std::make_shared<simulator::Gsm>(simulator::Generation::newer);
        unit->imei = "00101000000000" + std::to_string(i == 8 ? 1 : i);
        unit->memory.service_number = "0900";
        units.push_back(unit);
    }
    units[4]->silent = true;
    const auto table = [&](const ServedDevices &served) {
        std::string text = "name;typ;auftrag;imei;schnittstelle\n";
        for (std::size_t i = 0; i < units.size(); ++i)
            text += "P" + std::to_string(i + 1) + ";gsm;alarm-aus;" + (i == 2 ? "001010000000009;" : ";") +
                    served.path(i) + "\n";
        write(text);
    };
    {
        const ServedDevices served(units);
        table(served);
        EXPECT_EQ(run(), 1);
        EXPECT_THAT(out,
                    HasSubstr("fehlgeschlagen: Am Kabel hängt ein anderes Gerät: IMEI 001010000000003 statt "
                              "001010000000009."));
        EXPECT_THAT(out, HasSubstr("fehlgeschlagen: Dieses Gerät war schon Zeile "));
        EXPECT_THAT(out, HasSubstr("8 Zeilen: 5 erfolgreich, 3 fehlgeschlagen."));
        EXPECT_EQ(units[2]->memory.service_number, "0900");
        EXPECT_NE(units[0]->memory.service_number, units[7]->memory.service_number) << "one of the two";
        units[4]->silent = false;
        static_cast<simulator::Gsm &>(*units[2]).imei = "001010000000009";
        EXPECT_EQ(run({"--trotzdem"}), 0);
        EXPECT_THAT(out, HasSubstr("8 Zeilen: 8 erfolgreich."));
    }
    for (const auto &unit : units)
        EXPECT_EQ(unit->memory.service_number, "");
}

TEST_F(ListCommand, ComparesDevicesAndTellsWhatDiffers) {
    write("name;typ;schnittstelle;auftrag;apn\nA;gprs;4;gprs-vergleichen;x\nB;gsm;3;imei;\n");
    EXPECT_EQ(run({"--datenordner", folder}), 4);
    EXPECT_THAT(
        out,
        HasSubstr("A, COM 4 (simuliert): abweichend: Anders eingestellt: 1 von 1. APN: soll x, ist leer"));
    EXPECT_THAT(results(), ElementsAre("abweichend", "erfolgreich"));
    EXPECT_THAT(read_file(folder / "verlauf.csv", 1 << 20).bytes, HasSubstr("Vergleichen;abweichend;"));
    start_program(
        {"gprs-vergleichen", "--simulator", "--schnittstelle", "4", "--apn", "x", "--keep-alive", "0"});
    EXPECT_EQ(result(), 4);
    EXPECT_EQ(out, "Anders eingestellt: 1 von 2.\nAPN: soll x, ist leer (anders)\nKeep Alive Timer: 0\n");
}

TEST_F(ListCommand, ARowThatWasKilledIsNotDoneAgainUnasked) {
    const std::string device = mute_device();
    // Without parity: a pseudo-terminal that a killed program has left takes it only once.
    write("name;typ;com-direkt;schnittstelle;auftrag\nA;gsm;\"2400,n,8,1\";" + device +
          ";alarmtest\nB;gsm;\"2400,n,8,1\";" + device + ";imei\n");
    begin();
    ASSERT_TRUE(devices[0]->takes("AT**TIME?\r"));
    process.kill();
    process.waitForFinished();
    EXPECT_THAT(results(), ElementsAre("begonnen, Ausgang unbekannt", "offen"));
    begin();
    ASSERT_TRUE(devices[0]->takes("AT**IMEI?\r"));
    devices[0]->says("IMEI: 123456789012345\r\n");
    EXPECT_EQ(result(), 1);
    EXPECT_THAT(out, HasSubstr("Zeile 2, A: begonnen, Ausgang unbekannt (noch einmal nur mit --wiederholen"));
    begin({"--wiederholen"});
    EXPECT_TRUE(devices[0]->takes("AT**TIME?\r"));
    ::kill(static_cast<pid_t>(process.processId()), SIGINT);
    EXPECT_EQ(result(), 130);
}

TEST_F(ListCommand, SharesOfItAreDoneApartAndPutTogether) {
    write("name;typ;schnittstelle;auftrag\nA \"1\";gsm;3;imei\nB;gprs;4;imei\nC;gsm;3;alarm-aus\n");
    const auto file = [&](const char *share) {
        return folder / ("pumpen-ergebnis-" + std::string(share) + ".csv");
    };
    EXPECT_EQ(run({"--teil", "1/2", "--json"}), 0) << err;
    const auto lines = lines_of_output();
    EXPECT_EQ(
        lines.front().find(R"({"ereignis": "begonnen", "zeile": "2", "name": "A \"1\"", "auftrag": "imei")"),
        0U)
        << lines.front();
    EXPECT_THAT(out, HasSubstr("{\"ereignis\": \"schritt\", \"zeile\": \"4\""));
    EXPECT_THAT(out, HasSubstr("\"ergebnis\": \"erfolgreich\", \"meldung\": \""));
    EXPECT_THAT(lines.back(), HasSubstr("\"zeilen\": \"2\", \"meldung\": \"2 erfolgreich\""));
    EXPECT_EQ(run({"--teil", "2/2"}), 0);
    EXPECT_THAT(lines_of_output().back(), testing::StartsWith("1 Zeile: 1 erfolgreich. Ergebnisse: "));
    std::ofstream(result_path(list), std::ios::binary)
        << std::ifstream(file("1von2"), std::ios::binary).rdbuf()
        << std::ifstream(file("2von2"), std::ios::binary).rdbuf();
    EXPECT_THAT(results(), ElementsAre("erfolgreich", "erfolgreich", "erfolgreich"));
}

TEST_F(ListCommand, ADeviceThatRejectsSomethingIsTold) {
    write("typ;schnittstelle;auftrag\ngsm;" + mute_device() + ";alarm-aus\n");
    begin();
    ASSERT_TRUE(devices[0]->takes("AT**TIME?\r"));
    devices[0]->says("TIME: 1\r\n");
    ASSERT_TRUE(devices[0]->takes("AT**SCN=\r"));
    devices[0]->says("\r\nERROR\r\n");
    EXPECT_EQ(result(), 3);
    EXPECT_THAT(out, HasSubstr(": mit Ablehnungen: "));
    EXPECT_THAT(results(), ElementsAre("mit Ablehnungen"));
}

TEST_F(ListCommand, NothingIsSentOfAListThatIsRefused) {
    const std::string device = mute_device();
    const std::string link = folder / "verknüpft";
    fs::create_symlink(device, link);
    const std::string head = "typ;schnittstelle;auftrag;empfaenger\ngsm;" + device + ";alarm-aus;\n";
    const struct {
        std::string table, because;
        std::vector<std::string> options = {};
    } cases[] = {
        {head + "gsm;1;imei;\ngsm;2;imei;\ngsm;3;imei;\ngsm;4;imei;\ngsm;5;imei;12a\n",
         "telvox-cli: pumpen.csv, Zeile 7, Spalte empfaenger: nur Ziffern\n"},
        {head + "gsm;" + link + ";alarm-aus;\n",
         "pumpen.csv, Zeile 3: an " + link +
             " hängt schon das Gerät von Zeile 2 (nacheinander nur mit --trotzdem)\n"},
        {head + "gsm;7;alarm-aus;\n", "hängt schon das Gerät von Zeile 2", {"--port", "7=" + link}},
        {head + "gsm;7;parametrieren;\n", "pumpen.csv, Zeile 3, Spalte service-center: "},
        {head, "--apn gehört nur zu gprs-schreiben", {"--apn", "x"}},
        {head, "pumpen.csv, Zeile 2: --passwort gibt es nicht mit", {"--passwort", "x"}},
    };
    for (const auto &[table, because, options] : cases) {
        write(table);
        EXPECT_EQ(run(options), 2);
        EXPECT_THAT(err, HasSubstr(because));
        EXPECT_EQ(out, "");
        EXPECT_FALSE(fs::exists(result_path(list))) << because;
    }
    write(head);
    fs::create_directories(result_path(list));
    EXPECT_EQ(run(), 2);
    EXPECT_THAT(err, HasSubstr("pumpen-ergebnis.csv\" lässt sich nicht schreiben."));
    EXPECT_FALSE(devices[0]->heard());
}

/// At all ports at the same time, and what is printed another call takes.
TEST_F(CliProgram, TellsWhatHangsAtEachPort) {
    const ServedDevices served({std::make_shared<simulator::Gsm>(simulator::Generation::newer),
                                std::make_shared<simulator::Gsm>(simulator::Generation::older)});
    const std::string first = served.path(0), second = served.path(1);
    const std::vector<std::string> ports{"--port", "1=" + first, "--port=2=" + second,
                                         "--port=3=/dev/null/none"};
    start_program({"erkennen", ports[0], ports[1], ports[2], ports[3]});
    EXPECT_EQ(result(), 0);
    const auto block = [](const std::string &port) {
        return "schnittstelle=" + port + "\ntyp=gsm\ncom-direkt=2400,e,8,1\n";
    };
    EXPECT_EQ(out, block(first) + "\n" + block(second));
    EXPECT_THAT(err, HasSubstr("/dev/null/none: "));
    start_program({"erkennen", "--json", ports[0], ports[1]});
    EXPECT_EQ(result(), 0);
    EXPECT_EQ(out,
              R"({"schnittstelle": ")" + first + R"(", "typ": "gsm", "com-direkt": "2400,e,8,1"})" + "\n");
    start_program({"erkennen", "--port=3=/dev/null/none"});
    EXPECT_EQ(result(), 1);
}

TEST_F(CliProgram, MeasuresTheSignalUntilItIsInterrupted) {
    start_program({"signal", "--laufend", "--typ=gsm", "--simulator", "--schnittstelle=3"});
    for (int lines = 0; lines < 2 && process.waitForReadyRead(10'000);) {
        const std::string more = process.readAllStandardOutput().toStdString();
        lines += static_cast<int>(std::count(more.begin(), more.end(), '\n'));
        EXPECT_THAT(more,
                    testing::AnyOf("", HasSubstr("17 von 31, −79 dBm, Bester Wert: 17 von 31, −79 dBm\n")));
    }
    ::kill(static_cast<pid_t>(process.processId()), SIGINT);
    EXPECT_EQ(result(), 0);
    process.setStandardOutputFile("/dev/full");
    start_program({"signal", "--laufend", "--typ=gsm", "--simulator", "--schnittstelle=3"});
    EXPECT_EQ(result(), 1) << "nobody gets what it measures";
}

} // namespace
} // namespace telvox::test
