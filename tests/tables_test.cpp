// Walks the step tables and reply rows of every variant: a job that could stall, repeat or lose its way is a
// fault of a table, found here before a device finds it. And the reports of awaited replies, one by one.

#include "rig/rig.hpp"

#include "dialogues/families.hpp"
#include "dialogues/parsers.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <set>

namespace telvox::test {
namespace {

using testing::HasSubstr;

/// Those of all variants, and of the search for a device.
const Family *const families[] = {&analog_family, &isdn_family,     &gsm_family,
                                  &gprs_family,   &ethernet_family, &recognition_family};

bool has_step(const Job &job, Counter number) {
    return std::any_of(job.steps.begin(), job.steps.end(), [=](const Step &s) { return s.number == number; });
}

const Job *job_of(const Family &family, CounterOf counter) {
    const auto job = std::find_if(family.jobs.begin(), family.jobs.end(),
                                  [=](const Job &j) { return j.counter == counter; });
    return job != family.jobs.end() ? &*job : nullptr;
}

/// The steps that can be reached from step 1: by the steps themselves, by a reply row that moves the counter.
std::set<Counter> reachable(const Family &family, const Job &job) {
    std::set<Counter> reached{1};
    for (const Reply &row : family.replies)
        if (row.counter == job.counter)
            reached.insert(row.becomes);
    for (std::size_t before = 0; before != reached.size();) {
        before = reached.size();
        for (const Step &step : job.steps)
            if (reached.contains(step.number))
                for (const Counter to : {step.next, step.otherwise})
                    if (to != 0)
                        reached.insert(to);
    }
    return reached;
}

/// A reply row that leads on from a step that waits.
bool answers(const Reply &row, const Job &job, const Step &step) {
    return row.counter == job.counter && (row.awaited == step.awaits || row.clears == step.awaits);
}

TEST(Tables, LeadEveryJobToAnEnd) {
    for (const Family *one : families) {
        const Family &family = *one;
        EXPECT_LE(family.replies.size(), 64u) << "more rows than the receiver's marks";
        for (const Job &job : family.jobs) {
            const std::string where = std::string(job.name) + ", step ";
            EXPECT_EQ(job_of(family, job.counter), &job) << where << "a second table for the counter";
            EXPECT_NE(std::find(job_counters.begin(), job_counters.end(), job.counter), job_counters.end())
                << where;
            const std::set<Counter> reached = reachable(family, job);
            bool ends = false;
            for (std::size_t i = 0; i < job.steps.size(); ++i) {
                const Step &step = job.steps[i];
                const std::string at = where + std::to_string(step.number);
                EXPECT_TRUE(reached.contains(step.number)) << at << " is never reached";
                for (const Counter to : {step.next, step.otherwise})
                    EXPECT_TRUE(to == 0 || has_step(job, to)) << at << " goes nowhere";
                EXPECT_TRUE(step.otherwise != 0 || step.awaits || step.reads != 0 || step.end != End::no)
                    << at << " waits for nothing";
                EXPECT_TRUE(step.otherwise != step.number || step.times) << at << " repeats itself for ever";
                EXPECT_NE(step.next, step.answered() ? step.number : Counter{0xFF}) << at;
                EXPECT_FALSE(step.awaits && step.reads != 0) << at << " is reported in two ways";
                EXPECT_FALSE((step.awaits || step.answered()) && step.end != End::no) << at;
                const bool last_of_number =
                    i + 1 == job.steps.size() || job.steps[i + 1].number != step.number;
                EXPECT_EQ(step.when == nullptr, last_of_number)
                    << at << " leaves a case without a row, or hides one";
                const Counter before = i > 0 ? job.steps[i - 1].number : Counter{0};
                EXPECT_TRUE(step.number == before || step.number == before + 1) << at << " is out of order";
                ends |= step.end != End::no || !step.starts.empty();
            }
            EXPECT_TRUE(ends) << where << "no end";
        }
        for (const Reply &row : family.replies) {
            const Job *job = row.counter ? job_of(family, row.counter) : nullptr;
            EXPECT_TRUE(!job || has_step(*job, row.becomes)) << row.contains;
        }
    }
}

TEST(Tables, AnswerAndReportEveryStepThatWaits) {
    for (const Family *one : families) {
        const Family &family = *one;
        for (const Job &job : family.jobs) {
            for (const Step &step : job.steps) {
                const std::string where = std::string(job.name) + ", step " + std::to_string(step.number);
                for (const Move &move : step.starts)
                    EXPECT_TRUE(job_of(family, move.counter)) << where << " starts what there is not";
                if (!step.awaits && step.reads == 0)
                    continue;
                EXPECT_TRUE(step.answered() ||
                            std::any_of(family.replies.begin(), family.replies.end(),
                                        [&](const Reply &row) { return answers(row, job, step); }))
                    << "no reply for " << where;
                EXPECT_TRUE(step.reads != 0 || step.goes_on ||
                            std::any_of(device_reports.rows.begin(), device_reports.rows.end(),
                                        [&](const ReportRow &row) { return row.flag == step.awaits; }))
                    << "no report for " << where;
            }
        }
    }
}

TEST(Tables, NumberStepsByTheirPlaces) {
    constexpr auto always = [](const JobContext &) { return true; };
    constexpr auto original =
        script(Step{.awaits = &JobState::boolKommunikations_Fehler31, .answers = {{{"a"}}}},
               Step{.when = always, .send = "B"}, Step{.send = "C"}, Step{.send = "D", .end = End::drop});
    EXPECT_TRUE(original[0].next == 2 && original[0].otherwise == 0) << "it waits";
    EXPECT_TRUE(original[1].number == 2 && original[1].next == 3 && original[2].number == 2);
    constexpr auto other = with(original, 3, Step{.send = "E", .goes_on = true});
    EXPECT_TRUE(other[3].number == 3 && other[3].otherwise == 4 && other.size() == original.size());
}

TEST(Parsers, TakeALabelledLineOnlyWhenItIsComplete) {
    struct Case {
        const char *answer;
        const char *label;
        const char *text; ///< none: not complete
        std::size_t position = 1;
    };
    constexpr Case cases[] = {
        {"KEEP: 5\r\nOK", "KEEP:", "5"},
        {"\r\nOK\r\nKEEP: 5\r\nOK\r\n", "KEEP:", "5", 7},
        {"PPPPW: OK\r\nOK", "PPPPW:", "OK"},
        {"PPPPW: \r\nOK", "PPPPW:", ""},
        {"PPPPW:\r\nOK", "PPPPW:", ""},
        {"PPPPW:  a b \r\nOK", "PPPPW:", " a b "},
        {"CLIP 1: 7\r\nCLIP 2: 8\r\nOK", "CLIP 2:", "8", 12},
        {"PPPPW: OK\r\nO", "PPPPW:", nullptr},
        {"OK\r\nPPPPW: x\r", "PPPPW:", nullptr},
        {"PPPPW: OK", "PPPPW:", nullptr},
        {"PPPUSER: x\r\nOK", "PPPPW:", nullptr},
        {"PPPUSER: PPPPW: x\r\nOK", "PPPPW:", nullptr},
        {"PPPUSER: PPPPW: x\r\nPPPPW: y\r\nOK", "PPPPW:", "y", 20},
        {"", "PPPPW:", nullptr},
    };
    for (const Case &c : cases) {
        const auto line = dialogues::labelled(c.answer, c.label);
        ASSERT_EQ(line.has_value(), c.text != nullptr) << c.answer;
        if (line) {
            EXPECT_TRUE(line->text() == c.text && line->position == c.position) << c.answer;
        }
    }
    const auto codes = dialogues::labelled("CALLBACK: 2,3\r\nOK", "CALLBACK:");
    EXPECT_TRUE(codes->code(10) == '2' && codes->code(12) == '3' && codes->code(13) == '\0');
}

TEST(ErrorReports, SayWhatFailedAndWhatBecomesOfTheLine) {
    constexpr const char *check =
        "\rBitte Prüfen Sie die Leitungsverbindung und stellen Sie sicher, dass das Gerät "
        "mit Spannung versorgt wird.";
    struct Case {
        FlagOf flag;
        LineEnd line;
        const char *text;
        bool check_direct;
        bool check_remote;
    };
    constexpr const char *nobody = "Es konnte keine Verbindung zum Telvox-A hergestellt werden.";
    const Case cases[] = {
        {&JobState::boolKommunikations_Fehler31, LineEnd::by_mode,
         "Fehler bei der Parametrierung. Kommunikationsfehler: 31.", true, false},
        {&JobState::boolKommunikations_Fehler32, LineEnd::by_mode,
         "Fehler bei der Parametrierung. Kommunikationsfehler: 32.", false, false},
        {&JobState::boolKommunikations_Fehler61, LineEnd::by_mode, nobody, true, true},
        {&JobState::boolKommunikations_Fehler72, LineEnd::by_mode, nobody, true, true},
        {&JobState::boolKommunikations_Fehler73, LineEnd::by_mode, "Kommunikationsfehler: 73.", true, true},
        {&JobState::boolKommunikations_Fehler75, LineEnd::by_mode, "Kommunikationsfehler: 74.", true, true},
        {&JobState::boolKommunikations_Fehler77, LineEnd::drop,
         "Kommunikationsfehler: 77.\rUmstellung fehlgeschlagen", false, false},
    };
    Session session;
    JobValues values;
    Findings findings;
    JobState all;
    for (auto c = std::rbegin(cases); c != std::rend(cases); ++c) {
        all.*c->flag = true; // the later ones are armed too: the first in order is reported
        for (const bool remote : {false, true}) {
            values.remote = remote;
            const auto report = due_report(device_reports, {all, session, values, findings});
            ASSERT_TRUE(report);
            EXPECT_EQ(report->text,
                      std::string(c->text) + ((remote ? c->check_remote : c->check_direct) ? check : ""));
            EXPECT_EQ(report->line, c->line);
        }
    }
    JobState reading;
    reading.byteGPRS_Leseschritt = 12;
    values = {.type = ModemType::GPRS};
    const auto report = due_report(device_reports, {reading, session, values, findings});
    EXPECT_EQ(report.value().text, std::string("Lesefehler: 712") + check);
    EXPECT_EQ(session.byteISDN_Anschlussart, 12);
    reading = {};
    EXPECT_FALSE(due_report(device_reports, {reading, session, values, findings}));
}

/// Every job of every variant against a line that is full of noise, also in the middle of a call: it ends by
/// itself, in at most one box, the port closed.
TEST(Noise, NeverHangsAJobOrLeavesThePortOpen) {
    struct Start {
        OptionButton FrmModem::*type;
        std::vector<void (*)(Telvox &)> presses;
    };
    constexpr auto configure = [](Telvox &p) { p.click(p.desk.frmModem.cbuParametrieren); };
    constexpr auto alarm_test = [](Telvox &p) { p.click(p.desk.frmModem.cbuTest); };
    constexpr auto alarm_off = [](Telvox &p) { p.click(p.desk.frmModem.cbuAlarm_aus); };
    const Start starts[] = {
        {&FrmModem::optAnalog, {configure, alarm_test, alarm_off}},
        {&FrmModem::optISDN,
         {configure, alarm_test, alarm_off,
          [](Telvox &p) {
              p.enter(p.desk.frmMSN.tboMSN, "1");
              p.click(p.desk.frmMSN.cbuMSN_einstellen);
          },
          [](Telvox &p) { p.click(p.desk.frmAnschlussart.cmdAnschlussart_einstellen); }}},
        {&FrmModem::optGSM,
         {configure, alarm_test, alarm_off,
          [](Telvox &p) {
              p.enter(p.desk.frmPin.tboPin, "1");
              p.click(p.desk.frmPin.cbuPin_Eingabe);
          },
          [](Telvox &p) { p.click(p.desk.frmGSM_Status.cbuPIN_Status); },
          [](Telvox &p) { p.click(p.desk.frmGSM_Status.cbuReg_zustand); },
          [](Telvox &p) { p.click(p.desk.frmGSM_Status.cbuSignalstaerke); },
          [](Telvox &p) { p.click(p.desk.frmGSM_Status.cbuIMEI); }}},
        {&FrmModem::optGPRS,
         {alarm_off, configure, [](Telvox &p) { p.click(p.desk.frmGPRS.cbuGPRS_schreiben); },
          [](Telvox &p) { p.click(p.desk.frmGPRS.cbuGPRS_lesen); },
          [](Telvox &p) { p.click(p.desk.frmIPT.cbuIPT_schreiben); },
          [](Telvox &p) { p.click(p.desk.frmIPT.cbuIPT_lesen); },
          [](Telvox &p) { p.click(p.desk.frmGSM_Status.cbuPIN_Status); },
          [](Telvox &p) { p.click(p.desk.frmGSM_Status.cbuIMEI); }}},
        {&FrmModem::optEthernet,
         {[](Telvox &p) {
              p.enter(p.desk.frmEthernet.tboIP, "1.2.3.4");
              p.click(p.desk.frmEthernet.cbuEthernet_Konfigurieren);
          },
          [](Telvox &p) { p.click(p.desk.frmGateway.cbuEthernet_GW_Kabel); }}},
    };
    for (const Start &start : starts) {
        for (const bool remote : {false, true}) {
            for (const auto press : start.presses) {
                Rig rig;
                FrmModem &f = rig.program.desk.frmModem;
                if (remote)
                    rig.program.choose(f.optFernverbindung);
                rig.program.choose(f.*start.type);
                if (remote && start.type == &FrmModem::optGSM)
                    rig.program.choose(f.optFernverbindung);
                f.cobSchnittstelle.text = f.cobModem_Port.text = "COM 3";
                rig.program.enter(f.tboRufnummer_Modem, "1");
                rig.program.enter(f.tboRufnummer_Empfaenger, "1");
                rig.program.enter(f.tboService_Center, "1");
                rig.program.enter(f.tboAlarmmeldung, "x");
                for (Form *form : rig.program.desk.forms)
                    form->load();
                press(rig.program);
                while (!rig.answers.empty())
                    rig.answer(true);
                rig.boxes.clear();
                if (remote && start.type == &FrmModem::optGPRS && !rig.program.busy())
                    continue; // what it does not offer over the modem
                ASSERT_TRUE(rig.program.busy());
                // A minute of bytes at full line speed, 4 every millisecond, without any reply in them but
                // those that set a call up.
                unsigned state = 1;
                for (int ms = 0; ms < 60000 && rig.program.busy(); ++ms) {
                    rig.turn_by(milliseconds{1});
                    char bytes[4];
                    for (char &byte : bytes)
                        byte = static_cast<char>('a' + ((state = state * 1103515245u + 12345u) >> 16) % 16);
                    rig.arrive({bytes, 4});
                    if (ms == 2000 && rig.port.watches)
                        rig.program.comSeriell_OnComm(CommEvent::carrier_rise);
                    if (ms % 10000 == 5000 && remote)
                        rig.arrive("password: ONLINE REMOTE CONFIGURATION MODE >#OK");
                }
                EXPECT_TRUE(rig.run_until_idle(milliseconds{120000}));
                EXPECT_LE(rig.boxes.size(), 1u);
                EXPECT_TRUE(rig.boxes.size() == 1 || rig.outcome() == Outcome::succeeded);
                EXPECT_FALSE(rig.port.is_open);
                EXPECT_FALSE(rig.timer.on);
            }
        }
    }
}

} // namespace
} // namespace telvox::test
