// More than one query of the GSM status window from one press: all in a row, and the signal's again and
// again.

#include "operation/journal.hpp"
#include "operation/status_queries.hpp"
#include "operation/work_log.hpp"
#include "rig/bench.hpp"
#include "simulator/cable.hpp"
#include "simulator/gsm.hpp"

#include <gmock/gmock.h>

namespace telvox::test {
namespace {

using testing::HasSubstr;

class Queries : public testing::Test {
  protected:
    Queries() {
        bench.rig.program.choose(bench.f.optGSM);
        bench.rig.choose_cable_port(3);
        program.click(bench.f.mnuStatus_abfragen);
        bench.rig.on_output = [this, on = bench.rig.on_output](std::string_view bytes) {
            sent.push_back(std::to_string(bench.rig.now.count()) + " " + std::string(bytes));
            on(bytes);
        };
    }
    /// Lets so much time pass.
    void run(milliseconds span) {
        for (const milliseconds end = bench.rig.now + span; bench.rig.now < end;) {
            const milliseconds before = bench.rig.now;
            bench.run(milliseconds{10});
            bench.rig.turn_to(before + milliseconds{10});
            if (pause.on && bench.rig.now >= pause.due)
                queries.tick();
        }
    }

    struct Pause final : Timer {
        explicit Pause(const Rig &of) : rig(of) {}
        void Interval(milliseconds period) override { due = rig.now + period; }
        void Enabled(bool value) override { on = value; }
        [[nodiscard]] milliseconds now() const override { return rig.now; }
        const Rig &rig;
        milliseconds due{0};
        bool on = false;
    };

    std::shared_ptr<simulator::Gsm> device = std::make_shared<simulator::Gsm>(simulator::Generation::newer);
    simulator::Cable cable{device};
    Bench bench{cable};
    Telvox &program = bench.rig.program;
    FrmGSM_Status &form = program.desk.frmGSM_Status;
    Pause pause{bench.rig};
    operation::WorkLog log{""};
    operation::Journal journal{program,
                               [this](DoneJob job) { static_cast<void>(log.add({std::move(job)}, false)); }};
    operation::StatusQueries queries{program, pause};
    std::vector<std::string> sent;
};

TEST_F(Queries, AllFourInARowSendWhatEachSends) {
    const auto commands = [this] {
        std::string all;
        for (const std::string &line : std::exchange(sent, {}))
            all += line.substr(line.find(' '));
        return all;
    };
    for (Button *one : {&form.cbuPIN_Status, &form.cbuReg_zustand, &form.cbuSignalstaerke, &form.cbuIMEI}) {
        program.click(*one);
        run(milliseconds{20'000});
    }
    const std::string singly = commands(), imei = form.tboIMEI.text;
    form.reset();
    program.click(form.cbuAlles);
    int last = 0;
    for (int i = 0; program.busy() && i < 6000; ++i) {
        run(milliseconds{10});
        EXPECT_TRUE(!program.busy() || (program.progress().step >= last && !form.cbuIMEI.usable()));
        last = program.progress().step;
    }
    EXPECT_EQ(commands(), singly);
    EXPECT_EQ(form.tboIMEI.text, imei);
    EXPECT_TRUE(form.tboStatus.text == "PIN korrekt" && form.signal_known && form.cbuAlles.usable());
    EXPECT_FALSE(bench.rig.port.is_open);

    device->silent = true;
    program.click(form.cbuAlles);
    run(milliseconds{60'000});
    EXPECT_EQ(bench.rig.boxes.size(), 1u) << "and none of the others is asked";
    EXPECT_FALSE(program.busy());
}

TEST_F(Queries, TheSignalIsAskedAgainAndAgainUntilStoppedInAnyWay) {
    const std::function<void()> ways[] = {
        [this] { program.set(form.chkLaufend, false); },
        [this] { program.click(bench.f.cbuAbbrechen); },
        [this] { bench.rig.open_failure = "Die Schnittstelle ist nicht vorhanden."; },
    };
    for (const auto &stop : ways)
        for (const milliseconds at : {milliseconds{50}, milliseconds{2000}}) { // while asked, and between
            form.reset();
            device->signal = 21;
            program.set(form.chkLaufend, true);
            run(milliseconds{3010});
            device->signal = 9;
            run(milliseconds{5990});
            EXPECT_EQ(form.lblAntenne.caption, "9 von 31, −95 dBm");
            EXPECT_EQ(form.lblAntenne_Bester.caption, "Bester Wert: 21 von 31, −71 dBm");
            ASSERT_EQ(sent.size(), 3u);
            EXPECT_EQ(std::stoi(sent[2]) - std::stoi(sent[0]), 6000);
            EXPECT_TRUE(program.busy() && !form.cbuIMEI.usable() && bench.f.cbuAbbrechen.visible);
            run(at);
            stop();
            run(milliseconds{60'000});
            EXPECT_LE(sent.size(), 4u);
            EXPECT_FALSE(program.busy() || form.chkLaufend.value || bench.rig.port.is_open);
            EXPECT_TRUE(form.cbuIMEI.usable() && bench.f.cbuErkennen.usable());
            EXPECT_EQ(bench.rig.boxes.size(), bench.rig.open_failure.empty() ? 0u : 1u);
            bench.rig.open_failure.clear();
            bench.rig.boxes.clear();
            sent.clear();
        }
    EXPECT_EQ(log.jobs().size(), 8u) << "of each time one, and the two that could not go on";
}

} // namespace
} // namespace telvox::test
