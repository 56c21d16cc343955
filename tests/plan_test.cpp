// Orders that take several jobs, against simulated devices: what is asked, read, merged and written, and what
// is not.

#include "core/files/files.hpp"
#include "operation/backups.hpp"
#include "operation/journal.hpp"
#include "operation/list_order.hpp"
#include "operation/plan.hpp"
#include "operation/profiles.hpp"
#include "rig/bench.hpp"
#include "rig/player.hpp"
#include "simulator/cable.hpp"
#include "simulator/gprs.hpp"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace telvox::test {
namespace {

using namespace operation;
using testing::HasSubstr;
using testing::Not;

/// A GPRS device that has been in use, and the program beside it.
struct Plant {
    Plant() {
        device->memory.settings["GPRSAPN"] = "internet.alt";
        device->memory.settings["PPPPW"] = "geheim";
        device->memory.settings["LL"] = "2";
        device->memory.settings["AUTOIP"] = "10.0.0.9";
        device->memory.settings["AUTOPORTIP"] = device->memory.settings["AUTOPORTURL"] = "1234";
        bench.rig.choose_cable_port(3);
        std::filesystem::remove_all(folder);
        bench.rig.program.desk.folders.settings = folder;
        plan.over = [this](const WorkEnd &work) { ends.push_back(work); };
    }
    /// Does the one row of a table, as a list would; what it came to.
    std::string work(const std::string &columns, const std::string &cells, bool listed = true,
                     const std::function<void()> &meanwhile = {}) {
        const DeviceList list = device_list(
            parse_table("typ;" + columns + "\ngprs;" + cells + "\n", "l", most_devices), column_option);
        const Order order = order_of(list, list.rows[0], {});
        before = device->memory.settings;
        if (at_the_form.begin(order))
            plan.start(order, listed);
        bench.run(milliseconds{500'000}, bench.rig.now + then, meanwhile);
        if (ends.size() != 1)
            return std::to_string(ends.size()) + " ends";
        const Attempt attempt = attempt_of(ends[0], *order.job, bench.rig.program.desk);
        return std::string(word_of(attempt.outcome)) + ": " + attempt.message;
    }
    ~Plant() { std::filesystem::remove_all(folder); }
    [[nodiscard]] bool unchanged() const { return device->memory.settings == before; }

    const std::filesystem::path folder = std::filesystem::temp_directory_path() / "telvox_plan_test";
    std::time_t now = 0;
    milliseconds then{6000}; ///< when "meanwhile" is
    std::shared_ptr<simulator::Gprs> device = std::make_shared<simulator::Gprs>();
    simulator::Cable cable{device};
    Bench bench{cable};
    Operator at_the_form{bench.rig.program, bench.rig.scan};
    DoneJob last; ///< in the history
    operation::Journal journal{bench.rig.program, [this](DoneJob job) { last = std::move(job); }};
    Plan plan{bench.rig.program, at_the_form, [this] { return now += 60; }};
    std::vector<WorkEnd> ends;
    std::map<std::string, std::string, std::less<>> before;
};

TEST(OnlyWhatChanges, IsReadMergedAndWritten) {
    const struct {
        const char *columns, *cells, *came_to, *apn, *left_alone;
        const char *refused = nullptr; ///< command that the device does not take
    } cases[] = {
        {"auftrag;kennwort", "gprs-schreiben;neu",
         "erfolgreich: PPP-Authentifizierung: keine → pap; Passwort: *** → ***", "internet.alt", "10.0.0.9"},
        {"auftrag;apn;rest;geraet-pruefen", "gprs-schreiben;internet.neu;leeren;aus",
         "erfolgreich: Das Telvox-A wurde erfolgreich parametriert. Das Modem führt zur Zeit einen Neustart "
         "aus, "
         "deshalb ist es für ca. 1 Minute nicht erreichbar.",
         "internet.neu", ""},
        {"auftrag;apn;nummer1;nach-neustart-pruefen", "gprs-schreiben;internet.neu;+4917;ein",
         "mit Ablehnungen: Das Telvox-A wurde erfolgreich parametriert. Nach dem Neustart ist nicht alles "
         "so, wie es "
         "geschrieben wurde. 1. Nummer: soll +4917, ist leer",
         "internet.neu", "10.0.0.9", "AT**CLIP1="},
    };
    for (const auto &[columns, cells, came_to, apn, left_alone, refused] : cases) {
        Plant plant;
        if (refused)
            plant.device->faults[refused] = simulator::Fault::refuses;
        EXPECT_EQ(plant.work(columns, cells), came_to);
        EXPECT_EQ(plant.device->memory.settings["GPRSAPN"], apn) << cells;
        EXPECT_EQ(plant.device->memory.settings["AUTOIP"], left_alone) << cells;
        if (std::string(columns).find("kennwort") != std::string::npos)
            continue; // the record hides it
        std::istringstream record(plant.bench.rig.program.record().transcript());
        EXPECT_EQ(play(Presets().read(record), Playing::whole), "") << cells;
    }
    Plant single;
    single.work("auftrag;apn", "gprs-schreiben;internet.neu", false);
    EXPECT_EQ(single.device->memory.settings["AUTOIP"], "") << "a single job writes what it shows";
    EXPECT_THAT(single.bench.rig.program.record().transcript(), Not(HasSubstr("GPRSAPN?")));
    EXPECT_EQ(single.last.line.imei, single.device->imei) << "which the write's own check is told";
}

TEST(OnlyWhatChanges, IsNotWrittenWhereTheReadWasNotWhole) {
    const struct {
        std::function<void(Plant &)> happens;
        const char *because;
        std::function<void(Plant &)> meanwhile = {};
    } cases[] = {
        {[](Plant &p) { p.device->memory.settings["GPRSAPN"] = "Anbieter: x user:y"; },
         "fehlgeschlagen: Nicht alle Einstellungen ließen sich unverändert lesen"},
        {[](Plant &) {}, "fehlgeschlagen: Am Kabel hängt ein anderes Gerät: IMEI 001010000000099 statt 0",
         [](Plant &p) { p.device->imei = "001010000000099"; }},
        {[](Plant &p) { p.device->memory.settings["AUTOPORTIP"] = ""; },
         "fehlgeschlagen: Es wurde keine Portnummer eingetragen."},
        {[](Plant &) {}, "fehlgeschlagen: Die Sicherung der alten Einstellungen lässt sich nicht schreiben.",
         [](Plant &p) {
             std::filesystem::remove_all(p.folder);
             std::ofstream(p.folder) << "kein Ordner";
         }},
    };
    for (const auto &[happens, because, meanwhile] : cases) {
        Plant plant;
        happens(plant);
        const auto then = [&, what = meanwhile] { what(plant); };
        std::string came_to = plant.work("auftrag;apn;geraet-pruefen", "gprs-schreiben;internet.neu;aus",
                                         true, meanwhile ? std::function<void()>(then) : nullptr);
        for (const Message &box : plant.bench.rig.boxes)
            if (box.asks) {
                plant.bench.rig.answer(false);
                came_to = plant.ends.empty() ? "" : "fehlgeschlagen: " + plant.ends[0].said.at(0).text;
            }
        EXPECT_THAT(came_to, testing::StartsWith(because));
        if (came_to.find("anderes Gerät") != std::string::npos) {
            EXPECT_EQ(word_of(plant.last.line.outcome) + (": " + plant.last.line.message), came_to);
        }
        EXPECT_TRUE(plant.unchanged()) << because;
        EXPECT_EQ(plant.ends.size(), 1U);
    }
}

TEST(OnlyWhatChanges, ACopyOfWhatWasThereIsKept) {
    Plant plant;
    std::ofstream(plant.folder) << "kein Ordner";
    EXPECT_THROW(plant.work("auftrag;apn", "gprs-schreiben;neu0"), UsageError);
    EXPECT_THAT(plant.bench.rig.journal, Not(testing::Contains(HasSubstr("->"))))
        << "said before anything is sent";
    std::filesystem::remove_all(plant.folder);
    for (std::size_t i = 1; i <= Backup::most + 2; ++i) {
        plant.ends.clear();
        plant.bench.rig.turn_by(milliseconds{10'000});
        plant.work("auftrag;apn", ("gprs-schreiben;neu" + std::to_string(i)).c_str());
        plant.bench.rig.program.dismiss(plant.bench.rig.program.desk.frmGPRS);
    }
    const auto kept = backups(plant.bench.rig.program.desk.folders);
    ASSERT_EQ(kept.size(), Backup::most);
    EXPECT_EQ(kept.front().imei + kept.front().what, plant.device->imei + "GPRS");
    EXPECT_GT(kept.front().time, kept.back().time);
#ifndef _WIN32
    const auto rights = std::filesystem::status(kept.front().file).permissions();
    EXPECT_EQ(rights & ~std::filesystem::perms::owner_all, std::filesystem::perms::none)
        << "it holds passwords";
#endif
    // Putting one back is opening a profile.
    Telvox &program = plant.bench.rig.program;
    Profiles profiles(program, plant.bench.rig.scan);
    program.click(plant.bench.f.mnuSicherung);
    FrmSicherungen &list = program.desk.frmSicherungen;
    EXPECT_EQ(list.tblSicherungen.rows, Backup::most);
    EXPECT_EQ(list.tblSicherungen.cell(0, 1), kept.front().time);
    program.click(list.cbuSicherung_oeffnen);
    program.click(plant.bench.f.mnuGPRS_konfig);
    const FrmGPRS &form = program.desk.frmGPRS;
    EXPECT_EQ(form.cobAPN.text + form.tboPasswort.text + form.tboIP.text, "neu21geheim10.0.0.9");
    EXPECT_TRUE(form.optPPP_kein.value && form.optStandleitung_IP.value);
}

TEST(Compared, SettingsStandSideBySide) {
    const struct {
        const char *cells, *came_to;
    } cases[] = {
        {"gprs-vergleichen;internet.alt;geheim", "erfolgreich: Alles stimmt überein (verglichen: 2)."},
        {"gprs-vergleichen;internet.neu;geheim",
         "abweichend: Anders eingestellt: 1 von 2. APN: soll internet.neu, ist internet.alt"},
        {"gprs-vergleichen;internet.alt;falsch",
         "abweichend: Anders eingestellt: 1 von 2. Passwort: soll ***, ist ***"},
    };
    for (const auto &[cells, came_to] : cases) {
        Plant plant;
        EXPECT_EQ(plant.work("auftrag;apn;kennwort", cells), came_to);
        EXPECT_EQ(word_of(plant.last.line.outcome) + (": " + plant.last.line.message), came_to);
        EXPECT_TRUE(plant.unchanged());
        EXPECT_EQ(plant.ends[0].imei, plant.device->imei);
    }
    EXPECT_THROW(Plant().work("auftrag", "gprs-vergleichen"), UsageError);

    Plant dialog;
    Telvox &program = dialog.bench.rig.program;
    FrmGPRS &form = program.desk.frmGPRS;
    program.choose(dialog.bench.f.optGPRS);
    program.click(dialog.bench.f.mnuGPRS_konfig);
    program.select(form.cobAPN, "internet.neu");
    program.click(form.cbuGPRS_vergleichen);
    dialog.bench.run(milliseconds{60'000});
    FrmVergleich &shown = program.desk.frmVergleich;
    EXPECT_TRUE(shown.open);
    EXPECT_EQ(shown.lblErgebnis.caption, "Anders eingestellt: 4 von 14.");
    EXPECT_EQ(shown.tblVergleich.cell(0, 0) + ": " + shown.tblVergleich.cell(0, 1) + ", " +
                  shown.tblVergleich.cell(0, 2),
              "APN: internet.neu, internet.alt");
    EXPECT_EQ(form.cobAPN.text, "internet.neu") << "the fields are as they were";
    EXPECT_TRUE(dialog.bench.rig.boxes.empty());
    program.close(shown);
    dialog.device->faults["AT**KEEP?"] = simulator::Fault::unanswered;
    dialog.bench.rig.turn_by(milliseconds{10'000});
    program.click(form.cbuGPRS_vergleichen);
    dialog.bench.run(milliseconds{60'000});
    EXPECT_FALSE(shown.open);
    EXPECT_EQ(form.cobAPN.text, "internet.neu") << "also when the read breaks off";
    EXPECT_TRUE(backups(program.desk.folders).empty());
    dialog.bench.rig.turn_by(milliseconds{10'000});
    program.click(form.cbuGPRS_schreiben);
    dialog.bench.run(milliseconds{60'000});
    EXPECT_EQ(backups(program.desk.folders).size(), 1U) << "of what was read before";
}

TEST(AfterTheRestart, TheDeviceIsReadAndCompared) {
    const std::string written = "Das Telvox-A wurde erfolgreich parametriert. ";
    const struct {
        int at; ///< in milliseconds; the write takes sixteen seconds, the restart eight
        std::function<void(Plant &)> happens;
        std::string came_to;
    } cases[] = {
        {6000, [](Plant &) {},
         "erfolgreich: " + written + "Nach dem Neustart geprüft: Alles stimmt überein."},
        {6000, [](Plant &p) { p.device->faults["AT**SAVE"] = simulator::Fault::unanswered; },
         "mit Ablehnungen: " + written +
             "Nach dem Neustart ist nicht alles so, wie es geschrieben wurde. APN: soll neu, ist leer"},
        {18000, [](Plant &p) { p.device->silent = true; },
         "fehlgeschlagen: " + written + "Es hat sich nach dem Neustart nicht gemeldet"},
        {18000, [](Plant &p) { p.bench.rig.program.click(p.bench.f.cbuAbbrechen); },
         "abgebrochen: " + written + "Die Prüfung nach dem Neustart wurde abgebrochen."},
    };
    for (const auto &[at, happens, came_to] : cases) {
        Plant plant;
        plant.then = milliseconds{at};
        EXPECT_THAT(plant.work("auftrag;apn;kennwort;rest;nach-neustart-pruefen",
                               "gprs-schreiben;neu;geheim;leeren;ein", true,
                               [&, &what = happens] { what(plant); }),
                    testing::StartsWith(came_to));
        EXPECT_EQ(plant.bench.rig.boxes.size(), 1U) << "it is told once";
    }
}

} // namespace
} // namespace telvox::test
