// The whole program against the simulated devices on a turned clock: what a technician can try without
// hardware ends well, and the device then holds what was entered.

#include "rig/rig.hpp"

#include "simulator/analog.hpp"
#include "simulator/cable.hpp"
#include "simulator/gsm.hpp"
#include "simulator/isdn.hpp"
#include "simulator/local_modem.hpp"

#include <gmock/gmock.h>

namespace telvox::test {
namespace {

using simulator::Generation;
using testing::HasSubstr;

/// The program, a line, and a simulated device at its far end.
class Bench {
  public:
    explicit Bench(simulator::Device &device) : device_(device) {
        rig.on_output = [this](std::string_view bytes) { device_.receive(bytes, rig.now); };
        rig.on_format = [this](const SerialFormat &format) { device_.format(format, rig.now); };
        rig.on_open = [this](bool on) { device_.open(on, rig.now); };
        rig.on_dtr = [this](bool on) { device_.dtr(on, rig.now); };
    }

    /// Turns the clock, the device's events and the program's ticks in the order of their times, until the
    /// session is idle or the limit is reached.
    void run(milliseconds limit, milliseconds intervene_at = {},
             const std::function<void()> &intervene = {}) {
        bool carrier = device_.carrier(rig.now);
        bool intervened = !intervene;
        const milliseconds end = rig.now + limit;
        while (rig.program.busy() && rig.now < end) {
            milliseconds next = std::min(end, rig.timer.on ? rig.timer.due : end);
            next = std::min(next, device_.next().value_or(end));
            if (!intervened && intervene_at <= next) {
                next = intervene_at;
                intervened = true;
                rig.turn_to(next);
                intervene();
            }
            rig.turn_to(next);
            rig.arrive(device_.transmit(rig.now));
            if (const bool now = device_.carrier(rig.now); now != carrier) {
                carrier = now;
                if (rig.port.watches)
                    rig.program.comSeriell_OnComm(now ? CommEvent::carrier_rise : CommEvent::carrier_fall);
            }
        }
    }

    void fill_in(OptionButton &type, bool remote, const char *number) {
        rig.program.choose(f.optAnalog);
        rig.program.choose(remote ? f.optFernverbindung : f.optDirektverbindung);
        rig.program.choose(type);
        if (remote && !f.optFernverbindung.value)
            rig.program.choose(f.optFernverbindung);
        rig.choose_cable_port(3);
        rig.choose_modem_port(3);
        rig.program.enter(f.tboRufnummer_Modem, number);
        rig.program.enter(f.tboRufnummer_Empfaenger, "01711234567");
        rig.program.enter(f.tboService_Center, "0900");
        rig.program.enter(f.tboAlarmmeldung, "Öl läuft über");
        rig.boxes.clear();
    }

    Rig rig;
    FrmModem &f = rig.program.desk.frmModem;

  private:
    simulator::Device &device_;
};

struct Site {
    const char *name;
    OptionButton FrmModem::*type;
    bool remote;
    std::shared_ptr<simulator::Unit> (*unit)();
};

const Site sites[] = {
    {"Analog_cable", &FrmModem::optAnalog, false,
     []() -> std::shared_ptr<simulator::Unit> { return std::make_shared<simulator::Analog>(); }},
    {"Analog_remote", &FrmModem::optAnalog, true,
     []() -> std::shared_ptr<simulator::Unit> { return std::make_shared<simulator::Analog>(); }},
    {"ISDN_cable", &FrmModem::optISDN, false,
     []() -> std::shared_ptr<simulator::Unit> { return std::make_shared<simulator::Isdn>(); }},
    {"ISDN_remote", &FrmModem::optISDN, true,
     []() -> std::shared_ptr<simulator::Unit> { return std::make_shared<simulator::Isdn>(); }},
    {"GSM_newer_cable", &FrmModem::optGSM, false,
     []() -> std::shared_ptr<simulator::Unit> {
         return std::make_shared<simulator::Gsm>(Generation::newer);
     }},
    {"GSM_older_cable", &FrmModem::optGSM, false,
     []() -> std::shared_ptr<simulator::Unit> {
         return std::make_shared<simulator::Gsm>(Generation::older);
     }},
    {"GSM_older_remote", &FrmModem::optGSM, true,
     []() -> std::shared_ptr<simulator::Unit> {
         return std::make_shared<simulator::Gsm>(Generation::older);
     }},
};

class SimulatedSite : public testing::TestWithParam<Site> {
  protected:
    /// Runs one job from its button; the one box that it ended with.
    std::string run(Button FrmModem::*button) {
        bench.fill_in(bench.f.*GetParam().type, GetParam().remote, "0541121");
        bench.rig.program.click(bench.f.*button);
        bench.run(milliseconds{300'000});
        EXPECT_FALSE(bench.rig.program.busy() || bench.rig.port.is_open);
        EXPECT_FALSE(device->carrier(bench.rig.now)) << "the line was left up";
        EXPECT_EQ(bench.rig.boxes.size(), 1u);
        return bench.rig.boxes.empty() ? "" : bench.rig.boxes[0].text;
    }

    std::shared_ptr<simulator::Unit> unit = GetParam().unit();
    std::unique_ptr<simulator::Device> device =
        GetParam().remote ? std::unique_ptr<simulator::Device>(
                                std::make_unique<simulator::LocalModem>(simulator::Subscribers{{'1', unit}}))
                          : std::make_unique<simulator::Cable>(unit);
    Bench bench{*device};
};

TEST_P(SimulatedSite, IsConfiguredTestedAndSwitchedOff) {
    EXPECT_THAT(run(&FrmModem::cbuParametrieren), HasSubstr("erfolgreich"));
    EXPECT_EQ(unit->memory.recipient, "01711234567");
    EXPECT_EQ(unit->memory.text, "Ol lauft uber");
    EXPECT_FALSE(unit->memory.service_number.empty());
    EXPECT_EQ(unit->memory.alarms, 0);

    EXPECT_THAT(run(&FrmModem::cbuTest), HasSubstr("Befehl zum absetzen der Alarmmeldung wurde gesendet."));
    EXPECT_GE(unit->memory.alarms, 1);

    EXPECT_EQ(run(&FrmModem::cbuAlarm_aus), "Die Alarmfunktion wurde deaktiviert.");
    EXPECT_EQ(unit->memory.service_number, "");
}

INSTANTIATE_TEST_SUITE_P(All, SimulatedSite, testing::ValuesIn(sites),
                         [](const auto &site) { return site.param.name; });

TEST(SimulatedLine, ThatBreaksInMidJobEndsItInOneBox) {
    simulator::LocalModem modem{{{'1', std::make_shared<simulator::Analog>()}}};
    Bench bench(modem);
    bench.fill_in(bench.f.optAnalog, true, "1");
    bench.rig.program.click(bench.f.cbuParametrieren);
    bench.run(milliseconds{300'000}, milliseconds{18'000}, [&] { modem.drop_carrier(bench.rig.now); });
    EXPECT_FALSE(bench.rig.program.busy() || bench.rig.port.is_open);
    ASSERT_EQ(bench.rig.boxes.size(), 1u);
    EXPECT_THAT(bench.rig.boxes[0].text, HasSubstr("unterbrochen"));
}

TEST(SimulatedLine, WithAWrongPasswordOrEchoIsHungUp) {
    for (const bool echo : {false, true}) {
        simulator::LocalModem modem{{{'1', std::make_shared<simulator::Analog>()}}};
        modem.echo = echo;
        Bench bench(modem);
        bench.fill_in(bench.f.optAnalog, true, "1");
        if (!echo) {
            bench.rig.program.set(bench.f.chkPasswort, true);
            bench.rig.program.enter(bench.f.tboPasswort, "falsch");
        }
        bench.rig.program.click(bench.f.cbuParametrieren);
        bench.run(milliseconds{300'000});
        EXPECT_FALSE(modem.carrier(bench.rig.now) || bench.rig.port.is_open);
        ASSERT_EQ(bench.rig.boxes.size(), 1u);
        EXPECT_THAT(bench.rig.boxes[0].text, HasSubstr(echo ? "erfolgreich" : "Passwort nicht korrekt"));
    }
}

} // namespace
} // namespace telvox::test
