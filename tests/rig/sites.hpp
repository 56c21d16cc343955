#pragma once

#include "dialogues/families.hpp"
#include "rig/bench.hpp"
#include "simulator/cable.hpp"
#include "simulator/world.hpp"

#include <gtest/gtest.h>
#include <memory>
#include <span>

namespace telvox::test {

using simulator::World;

/// A device of a variant at the end of its cable or of a call.
struct Site {
    const char *name;
    OptionButton FrmModem::*type;
    const Family &family;
    bool remote;
    std::shared_ptr<simulator::Unit> (*unit)(const World &);
};

template <auto Member> std::shared_ptr<simulator::Unit> of_world(const World &world) { return world.*Member; }
template <char Digit> std::shared_ptr<simulator::Unit> called(const World &world) {
    return world.called.at(Digit);
}

inline const Site sites[] = {
    {"Analog", &FrmModem::optAnalog, analog_family, false, of_world<&World::analog>},
    {"Analog", &FrmModem::optAnalog, analog_family, true, called<'1'>},
    {"ISDN", &FrmModem::optISDN, isdn_family, false, of_world<&World::isdn>},
    {"ISDN", &FrmModem::optISDN, isdn_family, true, called<'2'>},
    {"GSM", &FrmModem::optGSM, gsm_family, false, of_world<&World::gsm>},
    {"GSM_older", &FrmModem::optGSM, gsm_family, false, called<'3'>},
    {"GSM_older", &FrmModem::optGSM, gsm_family, true, called<'3'>},
    {"GPRS", &FrmModem::optGPRS, gprs_family, false, of_world<&World::gprs>},
    {"GPRS", &FrmModem::optGPRS, gprs_family, true, called<'4'>},
    {"Ethernet", &FrmModem::optEthernet, ethernet_family, false, of_world<&World::ethernet>},
};
inline const auto with_alarm_test = std::span(sites).first(7);

/// What a number that ends in 1 leads to, or the port.
inline std::unique_ptr<simulator::Device> line_to(std::shared_ptr<simulator::Unit> unit, bool remote) {
    if (remote)
        return std::make_unique<simulator::LocalModem>(simulator::Subscribers{{'1', std::move(unit)}});
    return std::make_unique<simulator::Cable>(std::move(unit));
}

/// A GPRS device at the end of its cable, or of a call.
struct GprsSite {
    explicit GprsSite(bool remote) : device(line_to(unit, remote)), bench(std::make_unique<Bench>(*device)) {
        bench->fill_in(bench->f.optGPRS, remote, "0541121");
    }

    /// Runs one job from its button, questions answered with Ja; the box that it ended with.
    std::string run(Button &button) {
        Rig &rig = bench->rig;
        rig.program.click(button);
        while (!rig.answers.empty())
            rig.answer(true);
        bench->run(milliseconds{300'000});
        EXPECT_FALSE(rig.program.busy() || rig.port.is_open);
        EXPECT_FALSE(device->carrier(rig.now)) << "the line was left up";
        return rig.boxes.empty() ? "" : rig.boxes.back().text;
    }

    std::shared_ptr<simulator::Gprs> unit = std::make_shared<simulator::Gprs>();
    std::unique_ptr<simulator::Device> device;
    std::unique_ptr<Bench> bench;
};

} // namespace telvox::test
