// Walks the step tables and reply rows of every variant: a job that could stall, repeat or lose its way is a
// fault of a table, found here before a device finds it.

#include "dialogues/families.hpp"
#include "dialogues/parsers.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace telvox::test {
namespace {

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

/// Of the codes in the number lists only those go out that the devices know.
TEST(Tables, SendKnownProtocolsOnly) {
    const struct {
        const Family &family;
        CounterOf counter;
        std::string JobValues::*code;
        const char *given, *sent;
    } cases[] = {
        {analog_family, &JobState::byteParametrier_Counter, &JobValues::strSMS_Protokoll, "M0", "AT*M0"},
        {analog_family, &JobState::byteParametrier_Counter, &JobValues::strSMS_Protokoll, "M7", "AT*M6"},
        {analog_family, &JobState::byteParametrier_Counter, &JobValues::strSMS_Protokoll, "X3", "AT*M6"},
        {isdn_family, &JobState::byteParametrier_Counter, &JobValues::strSMS_Protokoll_ISDN, "M6", "AT*M6"},
        {isdn_family, &JobState::byteParametrier_Counter, &JobValues::strSMS_Protokoll_ISDN, "M/", "AT*M1"},
        {isdn_family, &JobState::byteISDN_Fern_Para_Counter, &JobValues::strSMS_Protokoll_ISDN_fern,
         "aldest=12", "aldest=1"},
        {isdn_family, &JobState::byteISDN_Fern_Para_Counter, &JobValues::strSMS_Protokoll_ISDN_fern,
         "aldest=4", "aldest=1"},
    };
    for (const auto &[family, counter, code, given, sent] : cases) {
        JobState jobs;
        Session session;
        Findings findings;
        JobValues values{.by_sms = true};
        values.*code = given;
        const auto steps = job_of(family, counter)->steps;
        const auto step = std::find_if(steps.begin(), steps.end(), [](const Step &s) {
            return s.status.given() && std::string_view("Protokoll wird eingestellt") == s.status.fixed();
        });
        ASSERT_NE(step, steps.end());
        EXPECT_EQ(step->send({jobs, session, values, findings}), sent) << given;
    }
}

} // namespace
} // namespace telvox::test
