// The whole program against the simulated devices on a turned clock: what a technician can try without
// hardware ends well, and the device then holds what was entered.

#include "rig/bench.hpp"

#include "dialogues/families.hpp"
#include "operation/jobs.hpp"
#include "simulator/analog.hpp"
#include "simulator/cable.hpp"
#include "simulator/ethernet.hpp"
#include "simulator/gprs.hpp"
#include "simulator/gsm.hpp"
#include "simulator/isdn.hpp"
#include "simulator/local_modem.hpp"
#include "simulator/situations.hpp"
#include "simulator/world.hpp"

#include "rig/player.hpp"

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

/// A GPRS device at the end of its cable, or of a call.
struct GprsSite {
    explicit GprsSite(bool remote) {
        if (remote)
            device = std::make_unique<simulator::LocalModem>(simulator::Subscribers{{'4', unit}});
        else
            device = std::make_unique<simulator::Cable>(unit);
        bench = std::make_unique<Bench>(*device);
        bench->fill_in(bench->f.optGPRS, remote, "0541124");
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

/// What is written over the cable is written over the modem.
TEST(SimulatedGprs, IsWrittenInACall) {
    GprsSite site(true);
    Desk &desk = site.bench->rig.program.desk;
    site.bench->rig.program.click(desk.frmModem.mnuGPRS_konfig);
    site.bench->rig.program.select(desk.frmGPRS.cobAPN, "internet");
    EXPECT_THAT(site.run(desk.frmGPRS.cbuGPRS_schreiben), HasSubstr("erfolgreich parametriert"));
    EXPECT_EQ(site.unit->memory.settings["GPRSAPN"], "internet");
    EXPECT_TRUE(site.unit->memory.saved);
}

/// Each situation that the simulator can be started in shows a person what its name says.
TEST(SimulatedGprs, IsFoundInEverySituation) {
    const char *const silent = "Es konnte keine Verbindung";
    struct Case {
        const char *situation;
        Button &(*job)(Desk &desk);
        const char *shows;
        bool remote = false;
    };
    const auto write = [](Desk &d) -> Button & { return d.frmGPRS.cbuGPRS_schreiben; };
    const auto read = [](Desk &d) -> Button & { return d.frmGPRS.cbuGPRS_lesen; };
    const auto write_ipt = [](Desk &d) -> Button & { return d.frmIPT.cbuIPT_schreiben; };
    const auto read_ipt = [](Desk &d) -> Button & { return d.frmIPT.cbuIPT_lesen; };
    const auto alarm = [](Desk &d) -> Button & { return d.frmModem.cbuParametrieren; };
    const auto off = [](Desk &d) -> Button & { return d.frmModem.cbuAlarm_aus; };
    const auto pin = [](Desk &d) -> Button & { return d.frmGSM_Status.cbuPIN_Status; };
    const auto network = [](Desk &d) -> Button & { return d.frmGSM_Status.cbuReg_zustand; };
    const auto change = [](Desk &d) -> Button & {
        d.frmEinstellungen.cboSchnittstelle_aendern.set(true);
        d.frmEinstellungen.cobSchnittstelle_Baud_soll.write("9600");
        return d.frmEinstellungen.cmdUART_Einstellung_aendern;
    };
    const auto recognise = [](Desk &d) -> Button & { return d.frmModem.cbuErkennen; };
    const Case cases[] = {
        {"rueckmeldungen", alarm, "erfolgreich"},
        {"ablehnung", write, "nicht angenommen:\rAccess Point Name wird konfiguriert"},
        {"ablehnung", write_ipt, "nicht angenommen:\rIP-Telemetrie Benutzer wird eingestellt"},
        {"ablehnung", alarm, "nicht angenommen:\rAlarmeingang wird konfiguriert"},
        {"datenverbindung", read, "erfolgreich ausgelesen"},
        {"stumm", write, silent},
        {"stumm", alarm, "Kommunikationsfehler: 31."},
        {"stumm", off, "Kommunikationsfehler: 33."},
        {"stumm", write, "Es konnte keine Verbindung hergestellt werden.", true},
        {"fremd", write, "nicht wie ein Telvox-A GPRS"},
        {"fremd", recognise, "nicht wie ein Telvox-A."},
        {"verstummt", write, "Kommunikationsfehler: 73."},
        {"verstummt", write_ipt, "Kommunikationsfehler: 74."},
        {"verstummt", alarm, "Kommunikationsfehler: 32."},
        {"ohne-alarmtext", alarm, "Kommunikationsfehler: 74."},
        {"lesefehler", read, "Lesefehler: 713"},
        {"lesefehler", read_ipt, "Lesefehler: 717"},
        {"fremde-werte", read, "erfolgreich ausgelesen"},
        {"umstellung", change, "Kommunikationsfehler: 77."},
        {"keine-sim", pin, "keine SIM-Karte"},
        {"pin-falsch", pin, "PIN falsch"},
        {"puk", pin, "PUK eingeben"},
        {"netz-aus", network, "keine Suche nach Netz"},
        {"netz-suche", network, "Suche nach GSM Netz"},
        {"netz-abgewiesen", network, "abgewiesen"},
        {"netz-unbekannt", network, "unbekannt"},
        {"roaming", network, "eingebucht, roaming"},
        {"keine-fernkonfiguration", write, "Das Telvox-A antwortet nicht.", true},
        {"anruf-bricht", write, "unterbrochen", true},
        {"anruf-bricht", write_ipt, "unterbrochen", true},
        {"adapter-weg", write, "ging verloren."},
        {"adapter-weg", read_ipt, "ging verloren."},
    };
    std::set<std::string_view> seen{"adapter-belegt",
                                    "adapter-klemmt"}; // the port's own, which a bench lacks
    for (const auto &[name, job, shows, remote] : cases) {
        SCOPED_TRACE(std::string(name) + ": " + shows);
        seen.insert(name);
        const auto *situation = simulator::find_situation(name);
        ASSERT_TRUE(situation);
        GprsSite site(remote);
        situation->begin(*site.unit);
        Desk &desk = site.bench->rig.program.desk;
        for (MenuEntry *entry : {&desk.frmModem.mnuGPRS_konfig, &desk.frmModem.mnuIPT_konfig,
                                 &desk.frmModem.mnuStatus_abfragen, &desk.frmModem.mnuEinstellungen})
            site.bench->rig.program.click(*entry);
        const std::string box = site.run(job(desk));
        EXPECT_THAT(box + desk.frmGSM_Status.tboStatus.text + desk.frmGSM_Status.tboReg_zustand.text,
                    HasSubstr(shows));
    }
    EXPECT_EQ(seen.size(), simulator::situations().size());
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

/// A device of a variant at the end of its cable or of a call, in which any job of the command line can be
/// run.
struct AnySite {
    const char *name;
    OptionButton FrmModem::*type;
    const Family &family;
    bool remote;
    std::shared_ptr<simulator::Unit> (*unit)(simulator::World &);
};

template <auto Member> std::shared_ptr<simulator::Unit> of_world(simulator::World &world) {
    return world.*Member;
}
template <char Digit> std::shared_ptr<simulator::Unit> called(simulator::World &world) {
    return world.called.at(Digit);
}

using simulator::World;
const AnySite any_sites[] = {
    {"Analog", &FrmModem::optAnalog, analog_family, false, of_world<&World::analog>},
    {"ISDN", &FrmModem::optISDN, isdn_family, false, of_world<&World::isdn>},
    {"GSM", &FrmModem::optGSM, gsm_family, false, of_world<&World::gsm>},
    {"GPRS", &FrmModem::optGPRS, gprs_family, false, of_world<&World::gprs>},
    {"Ethernet", &FrmModem::optEthernet, ethernet_family, false, of_world<&World::ethernet>},
    {"Analog", &FrmModem::optAnalog, analog_family, true, called<'1'>},
    {"ISDN", &FrmModem::optISDN, isdn_family, true, called<'2'>},
    {"GSM", &FrmModem::optGSM, gsm_family, true, called<'3'>},
    {"GPRS", &FrmModem::optGPRS, gprs_family, true, called<'4'>},
};

enum class Trouble { none, silence, rejection };

struct Ended {
    Outcome outcome;
    std::string box;
    bool refused; ///< a command that the device refuses was sent
};

/// Runs a job in some trouble; nothing if it does not exist there.
std::optional<Ended> run(const AnySite &site, const operation::JobCommand &job, Trouble trouble) {
    simulator::World world;
    const auto unit = site.unit(world);
    std::unique_ptr<simulator::Device> device;
    if (site.remote)
        device = std::make_unique<simulator::LocalModem>(simulator::Subscribers{{'1', unit}});
    else
        device = std::make_unique<simulator::Cable>(unit);
    unit->memory.recipient = unit->memory.service_number = "0171";
    unit->silent = trouble == Trouble::silence;
    if (auto *mobile = dynamic_cast<simulator::Mobile *>(unit.get()); mobile && trouble == Trouble::rejection)
        mobile->confirm();
    if (trouble == Trouble::rejection)
        for (const Job &table : site.family.jobs)
            for (const Step &step : table.steps)
                if ((step.changes_device || step.reads != 0) && step.send.fixed() &&
                    std::string_view("AT**IMEI? ATQ0 AT*V").find(step.send.fixed()) == std::string_view::npos)
                    unit->faults[step.send.fixed()] = simulator::Fault::refuses;
    Bench bench(*device);
    Rig &rig = bench.rig;
    Desk &desk = rig.program.desk;
    bench.fill_in(bench.f.*site.type, site.remote, "1");
    if (job.menu)
        rig.program.click(dynamic_cast<MenuEntry &>(job.menu(desk)));
    rig.program.enter(desk.frmPin.tboPin, "4711");
    rig.program.enter(desk.frmMSN.tboMSN, "11");
    rig.program.enter(desk.frmEthernet.tboIP, "192.168.0.7");
    rig.program.set(desk.frmEinstellungen.cboSchnittstelle_aendern, true);
    rig.program.select(desk.frmEinstellungen.cobSchnittstelle_Baud_soll, "9600");
    rig.boxes.clear();
    rig.program.click(dynamic_cast<Button &>(job.button(desk)));
    while (!rig.answers.empty())
        rig.answer(true);
    if (!rig.program.busy() || rig.timer2.on)
        return {};
    bench.run(milliseconds{600'000});
    EXPECT_FALSE(rig.program.busy() || rig.port.is_open);
    const bool refused = std::any_of(rig.journal.begin(), rig.journal.end(), [&](const std::string &event) {
        const auto at = event.find("-> ");
        return at != std::string::npos && unit->fault_at(event.substr(at + 3));
    });
    return Ended{rig.outcome(), rig.boxes.empty() ? "" : rig.boxes.back().text, refused};
}

/// No job calls itself a success when its device is silent, or rejects what it is told. Where the command
/// ends its job, nobody hears what the device says to it.
TEST(AnyJob, EndsAsItShouldInTrouble) {
    const std::set<std::string> unheard = {"ISDN anschlussart", "GSM alarm-aus", "GSM pin", "GPRS pin"};
    int jobs = 0, rejections = 0;
    for (const AnySite &site : any_sites)
        for (const operation::JobCommand &job : operation::job_commands()) {
            const bool of_cable =
                std::string_view("erkennen schnittstelle-aendern").find(job.name) != std::string::npos;
            if (!job.button || (site.remote && of_cable))
                continue;
            const std::string name = std::string(site.name) + " " + job.name;
            SCOPED_TRACE(name + (site.remote ? " remote" : ""));
            const auto well = run(site, job, Trouble::none);
            if (!well)
                continue;
            ++jobs;
            EXPECT_EQ(well->outcome, Outcome::succeeded) << well->box;
            const auto silent = run(site, job, Trouble::silence);
            EXPECT_EQ(silent->outcome, Outcome::failed);
            EXPECT_NE(silent->box, "");
            const auto rejected = run(site, job, Trouble::rejection);
            rejections += rejected->refused;
            EXPECT_TRUE(!rejected->refused || unheard.contains(name) ||
                        rejected->outcome != Outcome::succeeded)
                << rejected->box;
        }
    EXPECT_GE(jobs, 40);
    EXPECT_GE(rejections, 25);
}

} // namespace
} // namespace telvox::test
