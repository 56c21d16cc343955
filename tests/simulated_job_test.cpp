// The whole program against the simulated devices on a turned clock: what a technician can try without
// hardware ends well, and the device then holds what was entered.

#include "rig/player.hpp"
#include "rig/sites.hpp"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <sstream>
#include <unistd.h>

namespace telvox::test {
namespace {

namespace fs = std::filesystem;
using simulator::Generation;
using testing::HasSubstr;

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

    std::shared_ptr<simulator::Unit> unit = GetParam().unit(World{});
    std::unique_ptr<simulator::Device> device = line_to(unit, GetParam().remote);
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

    // The protocol of all of it, also after it was cleared, is a transcript; only what it hides cannot be
    // played.
    const fs::path file =
        fs::temp_directory_path() / ("telvox_protokoll_" + std::to_string(::getpid()) + ".txt");
    bench.f.fraProtokoll.visible = true;
    for (Button *button : {&bench.f.cbuProtokoll_leeren, &bench.f.cbuProtokoll_speichern})
        bench.rig.program.click(*button);
    ASSERT_EQ(bench.rig.asked_files.size(), 1u);
    bench.rig.asked_files[0].answered({.path = file.string()});
    std::stringstream record, no_presets;
    record << std::ifstream(file).rdbuf();
    fs::remove(file);
    ASSERT_THAT(record.str(), HasSubstr("-> AT"));
    if (record.str().find(Mask::hidden) == std::string::npos) {
        EXPECT_EQ(play(Presets(no_presets).read(record), Playing::whole), "");
    }
}

INSTANTIATE_TEST_SUITE_P(All, SimulatedSite,
                         testing::ValuesIn(with_alarm_test.begin(), with_alarm_test.end()),
                         [](const auto &site) {
                             return std::string(site.param.name) + (site.param.remote ? "_remote" : "_cable");
                         });

TEST(SimulatedLine, IsDownWithinFourSecondsOfTheUsersWord) {
    for (const auto &[number, type] : {std::pair{"1", &FrmModem::optAnalog},
                                       {"2", &FrmModem::optISDN},
                                       {"3", &FrmModem::optGSM},
                                       {"4", &FrmModem::optGPRS}})
        for (milliseconds at{50}; at < milliseconds{8000}; at += milliseconds{150}) {
            simulator::World world;
            simulator::LocalModem modem(world.called);
            Bench bench(modem);
            bench.fill_in(bench.f.*type, true, number);
            bench.rig.program.click(bench.f.cbuAlarm_aus);
            bench.run(at, at, [&] {
                bench.rig.program.cancel();
                bench.rig.program.cancel();
            });
            bench.run(milliseconds{4000});
            EXPECT_FALSE(bench.rig.program.busy() || bench.rig.port.is_open) << number << " " << at.count();
            EXPECT_FALSE(modem.carrier(bench.rig.now)) << number << " " << at.count();
            EXPECT_EQ(bench.rig.boxes.size(), 1u) << number << " " << at.count();
        }
}

TEST(SimulatedGprs, StoresItsAlarmAndIsSwitchedOff) {
    struct Case {
        bool remote;
        bool connected; ///< in a data connection, in which nobody gets through to it by telephone
    };
    for (const auto [remote, connected] : {Case{false, false}, Case{false, true}, Case{true, false}}) {
        GprsSite site(remote);
        if (connected)
            site.unit->go_online();
        const simulator::Memory &memory = site.unit->memory;
        EXPECT_EQ(site.run(site.bench->f.cbuAlarm_aus), "Die Alarmfunktion wurde deaktiviert.");
        EXPECT_EQ(site.run(site.bench->f.cbuParametrieren), "Das Telvox-A wurde erfolgreich parametriert.");
        EXPECT_TRUE(memory.input_armed && memory.message_stored && memory.saved && !site.unit->connected());
        EXPECT_EQ(memory.recipient + "|" + memory.text + "|" + memory.service_number,
                  "01711234567|Ol lauft uber|0900");
        if (remote) // over the modem the alarm can be switched off only before another job
            continue;
        EXPECT_EQ(site.run(site.bench->f.cbuAlarm_aus), "Die Alarmfunktion wurde deaktiviert.");
        EXPECT_FALSE(memory.input_armed);
    }
}

TEST(SimulatedGprs, GetsBackByWritingWhatWasReadFromIt) {
    using Settings = std::map<std::string, std::string, std::less<>>;
    const std::string key(128, '7'), name(63, 'n');
    const Settings filled = {{"GPRSAPN", "internet.example"},
                             {"PPPUSER", "K\xF6\x80 OK\""},
                             {"PPPPW", "OK"},
                             {"PPPAUTH", "1"},
                             {"AUTOIP", "203.0.113.10"},
                             {"AUTOPORTIP", "65535"},
                             {"AUTOURL", std::string(253, 'd')},
                             {"AUTOPORTURL", "1"},
                             {"CLIP", "1"},
                             {"CLIP1", "+4917112345670000000"},
                             {"CLIP2", "0171"},
                             {"CLIP3", ""},
                             {"Callback", "3,2,3"},
                             {"LL", "2"},
                             {"KEEP", "255"},
                             {"IPT", "3"},
                             {"IPTUSER", name},
                             {"IPTPW", " a b "},
                             {"IPTCONREQ", "1"},
                             {"IPTWATCHDOG", "0"},
                             {"IPTKEYF", key},
                             {"IPTKEYC", key}};
    Settings empty;
    for (const auto &[setting, value] : filled)
        empty[setting] = "";
    empty["CLIP"] = empty["PPPAUTH"] = empty["LL"] = empty["KEEP"] = empty["IPT"] = empty["IPTWATCHDOG"] =
        "0";
    empty["IPTCONREQ"] = "1";
    empty["Callback"] = "0,0,3";

    for (const Settings &settings : {filled, empty}) {
        GprsSite site(false);
        Desk &desk = site.bench->rig.program.desk;
        const Settings factory = site.unit->memory.settings;
        site.unit->memory.settings = settings;
        for (MenuEntry *entry : {&desk.frmModem.mnuGPRS_konfig, &desk.frmModem.mnuIPT_konfig})
            site.bench->rig.program.click(*entry);
        for (Button *read : {&desk.frmGPRS.cbuGPRS_lesen, &desk.frmIPT.cbuIPT_lesen})
            EXPECT_EQ(site.run(*read), "Das Telvox-A wurde erfolgreich ausgelesen.");
        site.unit->memory.settings = factory;
        for (Button *write : {&desk.frmGPRS.cbuGPRS_schreiben, &desk.frmIPT.cbuIPT_schreiben})
            EXPECT_THAT(site.run(*write), HasSubstr("erfolgreich parametriert"));
        EXPECT_EQ(site.unit->memory.settings, settings);
        EXPECT_TRUE(site.unit->memory.saved);
    }
}

/// A device gets another serial format, is configured in it, and gets its first one back.
TEST(SimulatedChange, IsFollowedByTheNextJobAndTakenBack) {
    struct Device {
        OptionButton FrmModem::*type;
        std::shared_ptr<simulator::Unit> unit;
    };
    const Device devices[] = {
        {&FrmModem::optAnalog, std::make_shared<simulator::Analog>()},
        {&FrmModem::optISDN, std::make_shared<simulator::Isdn>()},
        {&FrmModem::optGSM, std::make_shared<simulator::Gsm>(Generation::newer)},
        {&FrmModem::optGPRS, std::make_shared<simulator::Gprs>()},
        {&FrmModem::optEthernet, std::make_shared<simulator::Ethernet>("00-50-C2-1", "")}};
    for (const Device &device : devices) {
        simulator::Cable cable(device.unit);
        Bench bench(cable);
        Telvox &p = bench.rig.program;
        FrmEinstellungen &form = p.desk.frmEinstellungen;
        bench.fill_in(bench.f.*device.type, false, "1");
        const auto ends_well = [&](const char *what) {
            bench.run(milliseconds{300'000});
            EXPECT_FALSE(bench.rig.boxes.empty() || p.busy()) << what;
            EXPECT_EQ(bench.rig.outcome(), Outcome::succeeded) << what << " " << bench.rig.boxes.back().text;
        };
        const auto change = [&](const char *baud, const char *parity, const char *bits) {
            p.click(bench.f.mnuEinstellungen);
            p.set(form.cboSchnittstelle_aendern, true);
            p.select(form.cobSchnittstelle_Baud_soll, baud);
            p.select(form.cobSchnittstelle_Parity_soll, parity);
            p.select(form.cobSchnittstelle_Bitzahl_soll, bits);
            p.click(form.cmdUART_Einstellung_aendern);
            ends_well(baud);
            EXPECT_EQ(format_text(device.unit->format()), form.soll.settings());
            EXPECT_EQ(p.desk.session.strCOMparameter_direkt, form.soll.settings());
            p.close(form);
            bench.rig.answer(false);
        };
        change("19200", "odd", "7");
        if (bench.f.optEthernet.value) {
            p.click(bench.f.mnuIPuPort);
            p.enter(p.desk.frmEthernet.tboIP, "192.168.0.7");
            p.click(p.desk.frmEthernet.cbuEthernet_Konfigurieren);
        } else {
            p.click(bench.f.cbuParametrieren);
        }
        ends_well("configuration");
        cable.open(true, bench.rig.now += milliseconds{60'000}); // a device that restarted is back by then
        change("2400", "even", "8");
    }
}

} // namespace
} // namespace telvox::test
