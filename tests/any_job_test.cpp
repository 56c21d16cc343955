// Every job in every trouble: a device that is silent or rejects what it is told, a line full of noise, and
// the situations that the simulator can be started in.

#include "operation/jobs.hpp"
#include "rig/sites.hpp"
#include "simulator/situations.hpp"

#include <gmock/gmock.h>
#include <set>

namespace telvox::test {
namespace {

using testing::HasSubstr;

/// Each situation that the simulator can be started in shows a person what its name says.
TEST(Situation, IsSeenInTheProgram) {
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
        {"fremde-werte", read, "Nicht unverändert übernommen:"},
        {"umstellung", change, "Kommunikationsfehler: 77."},
        {"keine-sim", pin, "keine SIM-Karte"},
        {"pin-falsch", pin, "PIN falsch"},
        {"puk", pin, "PUK eingeben"},
        {"netz-aus", network, "nicht eingebucht, keine Suche nach Netz"},
        {"netz-suche", network, "nicht eingebucht, Suche nach GSM Netz"},
        {"netz-abgewiesen", network, "abgewiesen"},
        {"netz-unbekannt", network, "unbekannt"},
        {"roaming", network, "eingebucht, roaming"},
        {"keine-fernkonfiguration", write, "Das Telvox-A antwortet nicht.", true},
        {"anruf-bricht", write, "unterbrochen", true},
        {"anruf-bricht", write_ipt, "unterbrochen", true},
        {"adapter-klemmt", write, "Es konnten nicht alle Befehle gesendet werden.\rBitte Prüfen Sie"},
        {"adapter-klemmt", off, "nicht alle Befehle gesendet"},
        {"adapter-weg", write, "ging verloren."},
        {"adapter-weg", read_ipt, "ging verloren."},
    };
    std::set<std::string_view> seen{"adapter-belegt"}; // which the port says
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

/// Fills in what a job needs and presses its button; whether it then runs.
bool begin(Bench &bench, const Site &site, const operation::JobCommand &job) {
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
    rig.program.click(dynamic_cast<Button &>(job.button(desk)));
    while (!rig.answers.empty())
        rig.answer(true);
    rig.boxes.clear();
    return rig.program.busy() && !rig.timer2.on;
}

enum class Trouble { none, silence, rejection, stuck };

struct Ended {
    Outcome outcome;
    std::string box;
    std::size_t boxes;
    int outputs;  ///< that the program wrote
    bool refused; ///< a command that the device refuses was sent
};

/// Runs a job in some trouble; nothing if it does not exist there. A stuck port lets only so many outputs
/// leave.
std::optional<Ended> run(const Site &site, const operation::JobCommand &job, Trouble trouble, int leave = 0) {
    const auto unit = site.unit(World{});
    const auto device = line_to(unit, site.remote);
    unit->memory.recipient = unit->memory.service_number = "0171";
    unit->silent = trouble == Trouble::silence;
    if (auto *mobile = dynamic_cast<simulator::Mobile *>(unit.get()); mobile && trouble == Trouble::rejection)
        mobile->confirm();
    if (trouble == Trouble::rejection)
        for (const Job &table : site.family.jobs)
            for (const Step &step : table.steps)
                if ((step.changes_device || step.reads != 0) && step.send.fixed() &&
                    std::string_view("AT**IMEI? ATQ0 AT*V AT+CMGW=").find(step.send.fixed()) ==
                        std::string_view::npos)
                    unit->faults[step.send.fixed()] = simulator::Fault::refuses;
    Bench bench(*device);
    Rig &rig = bench.rig;
    int outputs = 0;
    rig.on_output = [&, reaches = rig.on_output](std::string_view bytes) {
        if (++outputs <= leave || trouble != Trouble::stuck)
            reaches(bytes);
        else
            rig.port.stuck = true;
    };
    if (!begin(bench, site, job))
        return {};
    bench.run(milliseconds{600'000});
    EXPECT_FALSE(rig.program.busy() || rig.port.is_open);
    const bool refused = std::any_of(rig.journal.begin(), rig.journal.end(), [&](const std::string &event) {
        const auto at = event.find("-> ");
        return at != std::string::npos && unit->fault_at(event.substr(at + 3));
    });
    return Ended{rig.outcome(), rig.boxes.empty() ? "" : rig.boxes.back().text, rig.boxes.size(), outputs,
                 refused};
}

/// No job calls itself a success when its device is silent, rejects what it is told, or does not get it.
/// Where the command ends its job, nobody hears what the device says to it.
TEST(AnyJob, EndsAsItShouldInTrouble) {
    const std::set<std::string> unheard = {"ISDN anschlussart",   "GSM alarm-aus", "GSM pin",
                                           "GSM_older alarm-aus", "GSM_older pin", "GPRS pin"};
    int jobs = 0, rejections = 0;
    for (const Site &site : sites)
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
            for (int leave = 0; leave < well->outputs; ++leave) {
                const auto stuck = run(site, job, Trouble::stuck, leave);
                // Then it is the local modem alone that got no more.
                const bool hangs_up = site.remote && stuck->box.find("zum Auflegen") != std::string::npos;
                EXPECT_TRUE(!hangs_up || (site.remote && leave + 2 >= well->outputs)) << leave;
                EXPECT_EQ(stuck->outcome, hangs_up ? Outcome::succeeded : Outcome::failed) << leave;
                EXPECT_EQ(stuck->boxes, hangs_up ? 2u : 1u) << leave << ": no success was told";
            }
        }
    EXPECT_GE(jobs, 40);
    EXPECT_GE(rejections, 25);
}

/// A minute of bytes at full line speed, without any reply in them but those that set a call up.
struct Noise final : simulator::Device {
    using Time = simulator::Time;
    void open(bool, Time) override {}
    void format(const SerialFormat &, Time) override {}
    void dtr(bool, Time) override {}
    void receive(std::string_view, Time) override {}
    std::string transmit(Time now) override {
        due = now + Time{1};
        std::string bytes(4, ' ');
        for (char &byte : bytes)
            byte = static_cast<char>('a' + ((state = state * 1103515245u + 12345u) >> 16) % 16);
        return now.count() % 10'000 == 5000 ? "password: ONLINE REMOTE CONFIGURATION MODE >#OK" : bytes;
    }
    bool carrier(Time now) override { return now > Time{2000}; }
    [[nodiscard]] std::optional<Time> next() const override {
        return due < Time{60'000} ? std::optional{due} : std::nullopt;
    }
    Time due{0};
    unsigned state = 1;
};

TEST(AnyJob, EndsByItselfInNoise) {
    int jobs = 0;
    for (const Site &site : sites)
        for (const operation::JobCommand &job : operation::job_commands()) {
            Noise noise;
            Bench bench(noise);
            if (!job.button || !begin(bench, site, job))
                continue;
            SCOPED_TRACE(std::string(site.name) + " " + job.name + (site.remote ? " remote" : ""));
            ++jobs;
            Rig &rig = bench.rig;
            bench.run(milliseconds{180'000});
            EXPECT_FALSE(rig.program.busy() || rig.port.is_open || rig.timer.on);
            EXPECT_LE(rig.boxes.size(), 1u);
            EXPECT_TRUE(rig.boxes.size() == 1 || rig.outcome() == Outcome::succeeded);
        }
    EXPECT_GE(jobs, 40);
}

} // namespace
} // namespace telvox::test
