// The device at the cable is seen to leave before the list's next row is done, on a turned clock.

#include "rig/listed.hpp"
#include "simulator/analog.hpp"

#include <gmock/gmock.h>

namespace telvox::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

class Watched : public Listed {
  protected:
    Watched() {
        pane.with(watch);
        cable.carry_to(std::make_shared<simulator::Analog>());
        main.chkListe_pruefen.value = true;
    }

    /// Beside the program's own.
    struct Port final : SerialPort {
        explicit Port(const Rig &owner) : rig(owner) {}
        void CommPort(int value) override { number = value; }
        [[nodiscard]] int CommPort() const override { return number; }
        void Settings(const SerialFormat &value) override { format = format_text(value); }
        std::string PortOpen(bool open) override {
            is_open = open && refusal.empty();
            return open ? refusal : "";
        }
        [[nodiscard]] bool PortOpen() const override { return is_open; }
        void DTREnable(bool) override {}
        void Output(std::string_view bytes) override { asked.emplace_back(bytes); }
        std::string Input() override { return present ? "33600\r\nOK\r\n" : ""; }
        bool drain(milliseconds) override { return true; }
        void watch_carrier(bool) override {}

        const Rig &rig;
        int number = 0;
        std::string format, refusal;
        std::vector<std::string> asked;
        bool is_open = false, present = true;
    } port{bench.rig};
    struct : Timer {
        void Interval(milliseconds value) override { period = value; }
        void Enabled(bool value) override { on = value; }
        [[nodiscard]] milliseconds now() const override { return time; }
        milliseconds period{}, time{};
        bool on = false;
    } timer;
    operation::CableWatch watch{port, timer};

    /// The next question, and what became of it.
    void look() {
        for (int tick = 0; tick < 2 && timer.on; ++tick) {
            timer.time += timer.period;
            watch.tick();
        }
    }
    /// Does the first of two rows.
    void begin(const std::string &job, const std::string &next = "analog") {
        std::filesystem::remove(folder / "l-ergebnis.csv");
        std::string rows = "name;typ;auftrag;schnittstelle;empfaenger;service-center;alarmtext\n";
        for (const std::string &type : {std::string("analog"), next})
            rows += "A;" + type + ";" + job + ";3;1;2;x\n";
        open(rows);
        run();
        ASSERT_THAT(main.StatusBar.text, HasSubstr("Gerät 2 von 2"));
    }
    [[nodiscard]] bool asks() {
        run();
        return !bench.rig.boxes.empty() && bench.rig.boxes.back().asks;
    }
};

TEST_F(Watched, ADeviceThatHasGoneAndComeBackIsNotAskedAbout) {
    begin("parametrieren");
    EXPECT_FALSE(port.is_open) << "the port is the user's between two questions";
    look();
    EXPECT_THAT(port.asked, ElementsAre("ATI0\r"));
    EXPECT_EQ(port.number, 3);
    EXPECT_EQ(port.format, "2400,e,8,1");
    EXPECT_EQ(main.StatusBar.text, "Gerät 2 von 2: A (Zeile 2, A: erfolgreich) – Gerät wechseln");
    port.present = false;
    look();
    EXPECT_THAT(main.StatusBar.text, EndsWith(" – Gerät abgesteckt"));
    port.present = true;
    look();
    EXPECT_THAT(main.StatusBar.text, EndsWith(" – wieder ein Gerät am Kabel"));
    EXPECT_FALSE(timer.on);
    EXPECT_FALSE(port.is_open);
    EXPECT_FALSE(asks());
    EXPECT_THAT(column(outcome), ElementsAre("erfolgreich", "erfolgreich"));
    EXPECT_FALSE(timer.on) << "no row is left that could be done twice";
}

TEST_F(Watched, OneEnterTooManyAsksAndWhoWantsThePortGetsIt) {
    begin("alarm-aus");
    look();
    timer.time += timer.period;
    watch.tick();
    EXPECT_TRUE(port.is_open);
    EXPECT_TRUE(asks()) << "it is there still";
    EXPECT_TRUE(port.is_open) << "nothing else wants it yet";
    bench.rig.answer(true);
    EXPECT_FALSE(port.is_open);
    EXPECT_FALSE(timer.on);
    bench.run(milliseconds{60'000});
    EXPECT_EQ(column(outcome)[1], "erfolgreich");

    const std::function<void()> others[] = {[&] { program.focus(main.cobSchnittstelle); },
                                            [&] { program.set(main.chkListe_pruefen, false); },
                                            [&] { program.click(main.cbuListe_schliessen); },
                                            [&] {
                                                port.refusal = "belegt";
                                                look();
                                            },
                                            [&] {
                                                for (int i = 0; timer.on && i < 1000; ++i) // nobody comes
                                                    look();
                                                EXPECT_GT(port.asked.size(), 50u);
                                            }};
    for (const auto &other : others) {
        program.click(main.cbuListe_schliessen);
        main.chkListe_pruefen.value = true;
        port.refusal.clear();
        begin("alarm-aus");
        port.present = false;
        look();
        ASSERT_THAT(main.StatusBar.text, EndsWith("abgesteckt"));
        other();
        EXPECT_FALSE(timer.on);
        EXPECT_EQ(main.StatusBar.text.find("abgesteckt"), std::string::npos);
        port.present = true;
    }
}

/// A modem that dials for its alarm gives up at any character; and where the next row's device tells who it
/// is, nobody need look.
TEST_F(Watched, NobodyAsksADeviceThatMayDialOrForNothing) {
    begin("alarmtest");
    EXPECT_FALSE(timer.on);
    EXPECT_TRUE(asks());
    bench.rig.answer(false);
    program.click(main.cbuListe_schliessen);
    begin("alarm-aus", "gsm");
    EXPECT_FALSE(timer.on);
}

} // namespace
} // namespace telvox::test
