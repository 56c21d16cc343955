// The engines on tables that no device has, and the record of what went over the line.

#include "dialogues/families.hpp"
#include "rig/bench.hpp"
#include "simulator/analog.hpp"
#include "simulator/local_modem.hpp"

#include <gmock/gmock.h>

namespace telvox::test {
namespace {

using testing::HasSubstr, testing::Not;

TEST(Sequencer, GoesOnWithWhatAJobWasStartedWithWhateverIsFilledInMeanwhile) {
    const auto configure = [](bool disturbed) {
        simulator::LocalModem modem{{{'1', std::make_shared<simulator::Analog>()}}};
        Bench bench(modem);
        Rig &rig = bench.rig;
        Desk &desk = rig.program.desk;
        FrmModem &f = bench.f;
        bench.fill_in(f.optAnalog, true, "1");
        desk.session.strSMS_Protokoll = "M3";
        rig.program.click(f.cbuParametrieren);
        EXPECT_TRUE(rig.program.busy());
        if (disturbed) { // what no click can do while the inputs are locked
            f.optGPRS.choose();
            f.optDirektverbindung.choose();
            f.optFAX.choose();
            f.chkAmt.set(true);
            for (TextBox *box : {&f.tboAmt, &f.tboRufnummer_Modem, &f.tboRufnummer_Empfaenger,
                                 &f.tboService_Center, &f.tboAlarmmeldung, &f.tboPasswort})
                box->text = "9";
            desk.session.strSMS_Protokoll = "M1";
            f.cobModem_Port.text = f.cobSchnittstelle.text = "COM 4";
        }
        for (int step = 0; rig.program.busy() && rig.now < milliseconds{300'000};) {
            bench.run(milliseconds{100});
            const Progress progress = rig.program.progress();
            if (!rig.program.busy() || progress.hangs_up)
                continue;
            EXPECT_TRUE(progress.step >= step && progress.steps == 3 + 9) << "of call and configuration";
            step = progress.step;
        }
        return rig.journal;
    };
    const Journal expected = configure(false);
    EXPECT_THAT(expected, testing::Contains(HasSubstr("box Telvox-A erfolgreich konfiguriert.")));
    EXPECT_EQ(configure(true), expected);
}

/// The Analog configuration over the cable, up to behind the alarm text.
struct AnalogConfiguration {
    explicit AnalogConfiguration(const char *text) {
        FrmModem &f = rig.program.desk.frmModem;
        rig.choose_cable_port(3);
        for (TextBox *box : {&f.tboRufnummer_Empfaenger, &f.tboService_Center})
            rig.program.enter(*box, "0171");
        rig.program.enter(f.tboAlarmmeldung, text);
        rig.program.click(f.cbuParametrieren);
        rig.turn_by(milliseconds{100});
        EXPECT_THAT(rig.journal.back(), HasSubstr("-> AT*V"));
        rig.arrive("NEW ALARM TEXT: ");
    }
    void answer_the_check() {
        rig.turn_by(milliseconds{7000});
        rig.arrive("OK");
        ASSERT_TRUE(rig.run_until_idle(milliseconds{60'000}));
    }
    Rig rig;
};

TEST(Sequencer, SaysWhetherACancelledJobLeavesHalfAConfiguration) {
    for (const char *text : {"Pumpe?", "ATI", "AT*V"}) {
        AnalogConfiguration job(text);
        job.rig.turn_by(milliseconds{1100});
        EXPECT_THAT(job.rig.journal.back(), HasSubstr(text));
        job.rig.program.cancel();
        EXPECT_EQ(job.rig.boxes.back().text, cancelled(true)) << text;
    }
    AnalogConfiguration job("x");
    job.rig.program.cancel();
    EXPECT_EQ(job.rig.boxes.back().text, cancelled(false));
}

TEST(Sequencer, TellsARejectionForItsOwnJobOnly) {
    AnalogConfiguration job("x");
    job.rig.turn_by(milliseconds{1200});
    job.rig.arrive("\r\nERROR\r\n");
    job.answer_the_check();
    EXPECT_THAT(job.rig.boxes.back().text,
                testing::EndsWith("nicht angenommen:\rÜbertragung des Alarmtextes"));
    job.rig.program.click(job.rig.program.desk.frmModem.cbuParametrieren);
    job.rig.turn_by(milliseconds{100});
    job.rig.arrive("NEW ALARM TEXT: ");
    job.answer_the_check();
    EXPECT_THAT(job.rig.boxes.back().text, Not(HasSubstr("nicht angenommen")));
}

/// A family whose jobs lead nowhere: no device table may have them, but an answer could make one of any.
const Family &lost_family(const JobContext &) {
    static constexpr auto circle =
        script(Step{.send = "A", .wait = milliseconds{2000}}, Step{.send = "B", .next = 1});
    static constexpr Step stall[] = {{.number = 1, .send = "A"}};
    static constexpr Job jobs[] = {{"circle", &JobState::byteParametrier_Counter, circle},
                                   {"stall", &JobState::byteAlarmtest_Counter, stall}};
    static constexpr Family family{"", jobs, {}};
    return family;
}

TEST(Sequencer, EndsAJobThatCirclesOrStalls) {
    Rig rig;
    Desk &desk = rig.program.desk;
    rig.choose_cable_port(3);
    Link link(rig.port);
    std::vector<JobEnd> ends;
    Sequencer sequencer({.desk = desk,
                         .panel = desk,
                         .jobs = desk.jobs,
                         .session = desk.session,
                         .values = desk.job_values,
                         .findings = desk.findings,
                         .link = link,
                         .timer = rig.timer,
                         .outbox = desk.outbox,
                         .families = lost_family,
                         .reports = device_reports,
                         .started = [](const Button &) {},
                         .ended = [&](JobEnd end) { ends.push_back(std::move(end)); }});
    const auto run = [&](CounterOf counter) {
        EXPECT_TRUE(sequencer.start({.counter = counter}, desk.frmModem.cbuTest));
        const milliseconds start = rig.now;
        while (sequencer.busy() && rig.now - start < milliseconds{100'000}) {
            rig.now = rig.timer.due;
            rig.timer.due += rig.timer.period;
            sequencer.Timer1_Timer();
        }
        EXPECT_FALSE(rig.port.is_open || rig.timer.on);
        EXPECT_EQ(desk.outbox.take().at(0).message.text,
                  counter == &JobState::byteParametrier_Counter
                      ? "Das Telvox-A antwortet nicht wie erwartet."
                      : "Diese Funktion steht für das gewählte Telvox-A nicht zur Verfügung.");
        return (rig.now - start).count();
    };
    EXPECT_EQ(run(&JobState::byteParametrier_Counter), 100 + 10 * 2000)
        << "five times the waits of the table";
    EXPECT_EQ(run(&JobState::byteAlarmtest_Counter), 200);
    ASSERT_EQ(ends.size(), 2u) << "each end is told once";
    EXPECT_EQ(ends[0].by, &desk.frmModem.cbuTest);
    EXPECT_EQ(ends[0].outcome, Outcome::failed);
    EXPECT_EQ(ends[0].said.at(0).text, "Das Telvox-A antwortet nicht wie erwartet.");
}

TEST(Record, ShowsTheDialogueAsItWentAndKeepsSecrets) {
    Rig rig;
    Recorder record(rig.port,
                    Mask(
                        [] {
                            return std::vector<std::string>{"BRÜNEX", "1234"};
                        },
                        secret_labels()),
                    [&] { return rig.now; });
    std::vector<std::string> lines;
    record.added = [&](const RecordLine &line) { lines.push_back(text_of(line)); };
    const auto receive = [&](const std::string &bytes) {
        rig.port.pending = bytes;
        EXPECT_EQ(record.Input(), bytes);
    };
    record.Output("AT**MSG1=\"\xD6l\\\"\r");
    receive("TIME: 2000\r\n\x1B[2J\x9D par");
    rig.now = milliseconds{1200};
    record.Output("+++");
    record.Output("\r");
    receive(std::string(250, 'n'));
    record.Output("AT**PIN=99\r");
    receive("AT**PIN=99\r\nPPPPW: geh\r\nPPPUSER: 1234x\r\nIPTKEYF:\r\nIPTKEYC: 12");
    record.Output("AT**PPPPW?\r");
    receive("34\r\nOK\r\n");
    for (const char *typed : {"B", "R", "\xDC", "N", "E"}) {
        record.Output(typed);
        receive(typed);
    }
    record.Output("X");
    record.Output("\r");
    receive("X\r\nBUSY\r\n");
    receive("PPPPW: ");
    record.input("click", "cbuX", {}); // the user does something before the value is there
    receive("geheim\r\nIPTK");
    record.input("click", "cbuX", {});
    receive("EYC: noch eins\r\n");
    EXPECT_THAT(lines,
                testing::ElementsAre(
                    "0 | -> AT**MSG1=\"Öl\\\\\"\\r", "0 <- TIME: 2000\\r\\n", "0 <- \\x1B[2J\\x9D par",
                    "1200 | -> +++", "1200 | -> \\r", "1200 <- " + std::string(200, 'n'),
                    "1200 <- " + std::string(50, 'n'), "1200 | -> AT**PIN=***\\r",
                    "1200 <- AT**PIN=***\\r\\n", "1200 <- PPPPW: ***\\r\\n", "1200 <- PPPUSER: ***x\\r\\n",
                    "1200 <- IPTKEYF:\\r\\n", "1200 <- IPTKEYC: ***", "1200 | -> AT**PPPPW?\\r",
                    "1200 <- ***", "1200 <- OK\\r\\n", "1200 | -> ***", "1200 <- ***", "1200 | -> \\r",
                    "1200 <- ***", "1200 <- BUSY\\r\\n", "1200 <- PPPPW: ", "1200 click cbuX", "1200 <- ***",
                    "1200 <- IPTK", "1200 click cbuX", "1200 <- EYC: ***\\r\\n"));
    for (std::size_t i = 0; i < 2 * Recorder::capacity; ++i)
        record.Output("x");
    EXPECT_EQ(record.lines().size(), Recorder::capacity);
    EXPECT_EQ(record.gone(), Recorder::capacity + lines.size() - 2 * Recorder::capacity);
    EXPECT_THAT(record.transcript(), testing::StartsWith("# Der Anfang fehlt"))
        << "or somebody would play it";
}

} // namespace
} // namespace telvox::test
