// What is told of jobs afterwards: the history through everything that can happen to its file, and the
// record.

#include "core/files/files.hpp"
#include "core/usage_error.hpp"
#include "operation/history_pane.hpp"
#include "operation/journal.hpp"
#include "operation/record_pane.hpp"
#include "rig/bench.hpp"
#include "rig/player.hpp"
#include "simulator/cable.hpp"
#include "simulator/gsm.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <random>

namespace telvox::test {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

struct Folder {
    Folder() { fs::create_directories(path); }
    ~Folder() { fs::remove_all(path); }
    fs::path path =
        fs::temp_directory_path() / ("telvox_record_test" + std::to_string(std::random_device()()));
};

HistoryLine line(const std::string &message) {
    return {.time = "2026-11-23 14:05:09", .port = "COM 3", .job = "PIN", .message = message};
}

TEST(History, KeepsItsLinesWhateverBecomesOfItsFile) {
    const Folder folder;
    const fs::path file = folder.path / "neu" / "verlauf.csv";
    History history(file);
    const auto messages = [&] {
        std::vector<std::string> all;
        for (const HistoryLine &of : History(file).lines())
            all.push_back(of.message);
        return all;
    };
    const auto write = [&](const std::string &bytes) { std::ofstream(file, std::ios::binary) << bytes; };
    const auto bytes = [&] { return read_file(file, 1 << 24).bytes; };
    EXPECT_THAT(messages(), IsEmpty());
    EXPECT_EQ(history.append({line("=1+1;\"ü\""), line("zwei\rZeilen")}), "");
    EXPECT_THAT(messages(), ElementsAre("=1+1;\"ü\"", "zwei Zeilen"));
    EXPECT_THAT(bytes(), HasSubstr("\"'=1+1;")) << "no spreadsheet computes it";

    const std::string whole = bytes();
    for (std::size_t cut = 0; cut < whole.size(); ++cut) { // the power went off
        write(whole.substr(0, cut));
        ASSERT_EQ(History(file).append({line("neu")}), "") << cut;
        ASSERT_EQ(messages().back(), "neu") << cut;
        ASSERT_EQ(bytes().find("neu\r\n"), bytes().size() - 5) << cut;
    }
    write("name;wert\r\n1;2\r\n");
    EXPECT_THAT(history.append({line("später")}),
                HasSubstr("ist keine, die dieses Programm geschrieben hat"));
    EXPECT_EQ(bytes(), "name;wert\r\n1;2\r\n");
    EXPECT_THROW(messages(), UsageError);
    {
        AppendFile other;
        write(whole);
        ASSERT_EQ(other.open(file, ""), 0);
        EXPECT_THAT(history.append({line("gesperrt")}),
                    HasSubstr("verlauf.csv\" ließ sich nicht schreiben."));
    }
    EXPECT_EQ(history.append({line("frei")}), "");
    EXPECT_THAT(messages(), ElementsAre("=1+1;\"ü\"", "zwei Zeilen", "später", "gesperrt", "frei"));
    fs::remove(file);
    fs::create_directories(file);
    EXPECT_NE(history.append({line("ein Ordner")}), "");
}

TEST(History, LosesItsOldestLinesWhenThereAreTooMany) {
    const Folder folder;
    History history(folder.path / "verlauf.csv");
    std::vector<HistoryLine> lines;
    for (std::size_t i = 0; i < History::most_lines; ++i)
        lines.push_back(line(std::to_string(i)));
    std::ofstream(history.file(), std::ios::binary) << history_table(lines);
    EXPECT_EQ(history.append({line("neu")}), "");
    lines = history.lines();
    EXPECT_LE(lines.size(), History::most_lines);
    EXPECT_GT(lines.size(), History::most_lines / 2);
    EXPECT_EQ(lines.back().message, "neu");
    EXPECT_EQ(lines.end()[-2].message, std::to_string(History::most_lines - 1));

    lines.assign(History::most_lines - 1, line(std::string(900, 'x')));
    std::ofstream(history.file(), std::ios::binary) << history_table(lines).substr(0, 6'000'000);
    EXPECT_EQ(history.append({line("neu")}), "");
    EXPECT_LT(fs::file_size(history.file()), 4u << 20);
    EXPECT_EQ(history.lines().back().message, "neu");
}

/// Puts the pages into a string, one after the other, when the test says so.
struct Printed final : RecordPrinter {
    void print(const std::string &path, RecordPages given, Progress heard, Ended over) override {
        to = path;
        pages = std::move(given);
        progress = std::move(heard);
        ended = std::move(over);
    }
    void cancel() override { cancelled = true; }
    std::string all() const {
        std::string text;
        for (std::size_t i = 0; i < pages.count; ++i)
            text += pages.page(i);
        return text;
    }
    std::string to;
    RecordPages pages;
    Progress progress;
    Ended ended;
    bool cancelled = false;
};

class Recorded : public testing::Test {
  protected:
    Recorded() {
        history.make_record = [this](const HistoryLine &of) { record.open(&of); };
        program.choose(main.optGSM);
        bench.rig.choose_cable_port(3);
        program.enter(main.tboRufnummer_Empfaenger, "0171");
        program.enter(main.tboService_Center, "+49171");
        program.enter(main.tboAlarmmeldung, "Pumpe Süd <3>");
    }
    void press(Button &button) {
        program.click(button);
        bench.run(milliseconds{300'000});
    }
    /// Saves what the dialog offers under this caption's beginning; the record's text.
    std::string save(const std::string &subject) {
        program.click(main.mnuNachweis);
        return save_open(subject);
    }
    std::string save_open(const std::string &subject) {
        FrmNachweis &form = program.desk.frmNachweis;
        for (const std::string &item : form.cobUmfang.items)
            if (item.starts_with(subject))
                program.select(form.cobUmfang, item);
        EXPECT_THAT(form.cobUmfang.text, testing::StartsWith(subject));
        program.click(form.cbuNachweis_speichern);
        bench.rig.asked_files.back().answered({.path = "n.pdf"});
        printed.progress(1);
        const std::string all = printed.all();
        printed.ended("");
        EXPECT_THAT(form.lblNachweis.caption, HasSubstr("n.pdf"));
        program.click(form.cbuNachweis_schliessen);
        return all;
    }

    Folder folder;
    std::shared_ptr<simulator::Gsm> device = std::make_shared<simulator::Gsm>(simulator::Generation::newer);
    simulator::Cable cable{device};
    Bench bench{cable};
    Telvox &program = bench.rig.program;
    FrmModem &main = bench.f;
    operation::WorkLog log{folder.path};
    std::string failure;
    operation::Journal journal{program,
                               [this](DoneJob job) {
                                   if (const std::string why = log.add({std::move(job)}, true); !why.empty())
                                       failure = why;
                               },
                               [] { return std::time_t{0}; }};
    Printed printed;
    operation::HistoryPane history{program, log};
    operation::RecordPane record{program, log, printed, [] { return std::time_t{0}; }};
};

TEST_F(Recorded, SaysWhatWasSentAndAnsweredAndNothingElse) {
    program.click(main.mnuNachweis);
    EXPECT_THAT(bench.rig.boxes.back().text, HasSubstr("noch kein Vorgang"));
    program.click(main.cbuParametrieren);
    program.enter(main.tboRufnummer_Modem, "999"); // locked or not: the job has its copy
    program.desk.frmModem.tboAlarmmeldung.text = "zu spät";
    bench.run(milliseconds{300'000});
    std::string text = save("Letztes Gerät: Telvox-A GSM, COM 3 (1 Vorgang)");
    EXPECT_THAT(text, AllOf(HasSubstr("Pumpe Sud &lt;3&gt;"), HasSubstr("+49171"), HasSubstr("COM 3"),
                            HasSubstr("unter diesen Aufträgen nicht gesendet"), Not(HasSubstr("IMEI")),
                            Not(HasSubstr("zu spät"))));

    program.click(main.mnuStatus_abfragen);
    press(program.desk.frmGSM_Status.cbuIMEI);
    press(program.desk.frmGSM_Status.cbuSignalstaerke);
    program.close(program.desk.frmGSM_Status);
    press(main.cbuTest);
    text = save("Letztes Gerät");
    EXPECT_EQ(printed.pages.count, 1U) << "one device";
    EXPECT_THAT(text, AllOf(HasSubstr(program.desk.frmGSM_Status.tboIMEI.text + " (vom Gerät"),
                            HasSubstr("dBm ("), HasSubstr(">gesendet 01.01.1970")));

    // The device is written to anew, and does not answer: what it has got nobody knows.
    program.click(main.mnuPin_festlegen);
    program.enter(program.desk.frmPin.tboPin, "4321");
    press(program.desk.frmPin.cbuPin_Eingabe);
    EXPECT_THAT(save("Letztes Gerät"), AllOf(HasSubstr(">gesetzt<"), Not(HasSubstr("4321"))));
    program.enter(main.tboAlarmmeldung, "anderer Text");
    device->silent = true;
    press(main.cbuParametrieren);
    text = save("Alle Geräte");
    EXPECT_THAT(text, AllOf(HasSubstr("fehlgeschlagen"), HasSubstr("Kommunikationsfehler"),
                            Not(HasSubstr("anderer Text"))));
    EXPECT_EQ(printed.pages.count, 2U) << "a page of its own begins";

    EXPECT_THAT(log.history().lines(), SizeIs(6));
    EXPECT_THAT(read_file(log.history().file(), 1 << 20).bytes, Not(HasSubstr("4321")));
}

TEST_F(Recorded, AJobAndAnActionOnTheNetworkBesideItAreALineEach) {
    for (const bool job_ends_first : {false, true}) {
        program.click(main.cbuParametrieren);
        FrmGateway &gateway = program.desk.frmGateway;
        gateway.load();
        program.enter(gateway.tboIP, "10.0.0.9");
        program.click(gateway.cbuVerbindung_pruefen);
        if (job_ends_first)
            bench.run(milliseconds{300'000});
        program.process_ended({.output = "64 bytes from 10.0.0.9: icmp_seq=1 ttl=64\n"});
        bench.run(milliseconds{300'000});
        const HistoryLine last = log.history().lines().back(), before = *(log.history().lines().end() - 2);
        const HistoryLine &job = job_ends_first ? before : last, &ping = job_ends_first ? last : before;
        EXPECT_EQ(job.job + job.port + job.message,
                  "Modem konfigurierenCOM 3Das Telvox-A wurde erfolgreich parametriert.");
        EXPECT_EQ(ping.port + ping.message, "Netzwerk, 10.0.0.9Verbindungsaufbau erfolgreich!");
        bench.rig.turn_by(milliseconds{10'000});
    }
    EXPECT_THAT(log.history().lines(), SizeIs(4));
}

TEST_F(Recorded, TheHistoryIsFilteredSavedAndTold) {
    const Folder other;
    press(main.cbuParametrieren);
    device->silent = true;
    press(main.cbuParametrieren);
    FrmVerlauf &form = program.desk.frmVerlauf;
    program.click(main.mnuVerlauf);
    EXPECT_EQ(form.tblVerlauf.rows, 2U);
    EXPECT_EQ(form.tblVerlauf.cell(0, 5), "fehlgeschlagen") << "the newest first";
    program.enter(form.tboFilter, "KONFIG com erfolg");
    EXPECT_EQ(form.lblAnzahl.caption, "1 von 2 Vorgänge");
    program.click(form.cbuVerlauf_speichern);
    bench.rig.asked_files.back().answered({.path = text_of(other.path / "v.csv")});
    EXPECT_THAT(History(other.path / "v.csv").lines(), SizeIs(1));
    program.click(form.cbuVerlauf_Nachweis);
    EXPECT_THAT(save_open("Verlauf: Modem konfigurieren"), HasSubstr("+49171"))
        << "of this session all is known";
    program.enter(form.tboFilter, "gibt es nicht");
    EXPECT_FALSE(form.cbuVerlauf_Nachweis.enabled);

    fs::remove_all(folder.path);
    std::ofstream(folder.path) << "no folder";
    press(main.cbuParametrieren);
    EXPECT_THAT(failure, HasSubstr("ließ sich nicht schreiben"));
    failure.clear();
    press(main.cbuParametrieren);
    EXPECT_EQ(failure, "") << "told once";
}

TEST_F(Recorded, ARecordThatIsGivenUpOrFailsLeavesTheDialogUsable) {
    press(main.cbuParametrieren);
    program.click(main.mnuNachweis);
    FrmNachweis &form = program.desk.frmNachweis;
    program.enter(form.tboVon, "Jörg");
    for (const bool fails : {false, true}) {
        program.click(form.cbuNachweis_speichern);
        bench.rig.asked_files.back().answered({.path = "n.pdf"});
        EXPECT_FALSE(form.cbuNachweis_speichern.enabled);
        EXPECT_THAT(printed.all(), HasSubstr("Jörg"));
        fails ? printed.ended("Kein Platz.") : program.close(form);
        EXPECT_EQ(printed.cancelled, true);
        EXPECT_TRUE(form.open && form.cbuNachweis_speichern.enabled);
    }
    EXPECT_THAT(bench.rig.boxes.back().text, HasSubstr("Kein Platz."));
    program.close(form);
    EXPECT_FALSE(form.open);
    program.click(main.mnuNachweis);
    EXPECT_EQ(form.tboVon.text, "Jörg") << "remembered";
}

TEST(ServiceRecord, NothingInATextIsTakenForHtmlOrTurnsTheRest) {
    DoneJob job{.line = line("<b>&\"\x01\xE2\x80\xAE gedreht \xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D")};
    const std::string page = record_page(RecordFrame{}, {.name = "<script>", .note = {}, .jobs = {job}});
    EXPECT_THAT(page, AllOf(HasSubstr("&lt;b&gt;&amp;&quot;?? gedreht"), HasSubstr("&#x2068;"),
                            HasSubstr("&lt;script&gt;"), Not(HasSubstr("\xE2\x80\xAE"))));
}

} // namespace
} // namespace telvox::test
