// "Alle starten" of the window's list, on a turned clock.

#include "rig/beside.hpp"
#include "rig/listed.hpp"

#include <gmock/gmock.h>

namespace telvox::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

/// With a device for each row that is begun.
class AllListed : public Listed {
  protected:
    /// Until all is over, or the condition holds.
    void run_all(const std::function<bool()> &until = [] { return false; }) {
        beside.run([&] {
            if (later.on)
                all.tick();
            program.refresh();
            return program.busy() && !until();
        });
    }
    struct Later final : Timer {
        void Interval(milliseconds) override {}
        void Enabled(bool value) override { on = value; }
        [[nodiscard]] milliseconds now() const override { return {}; }
        bool on = false;
    } later;

    std::vector<std::shared_ptr<simulator::Gsm>> units = [] {
        std::vector<std::shared_ptr<simulator::Gsm>> made(4);
        for (std::size_t i = 0; i < made.size(); ++i) {
            made[i] = std::make_shared<simulator::Gsm>(simulator::Generation::newer);
            made[i]->imei.back() = static_cast<char>('0' + i);
        }
        return made;
    }();
    simulator::Cable a{units[0]}, b{units[1]}, c{units[2]}, f{units[3]};
    Beside beside{{&a, &b, &c, &f, &f, &b}};
    operation::AllRows all{program, bench.rig.scan, beside.make(), later};
    static constexpr const char *rows =
        "name;typ;schnittstelle;auftrag;empfaenger;service-center;alarmtext;pin\n"
        "A;gsm;4;;0171;+49;Text;\n"
        "B;gsm;5;;0172;+49;Text;\n"
        "C;gsm;6;;0173;+49;;\n" // the form has its text
        "D;gsm;3;;0174;+49;Text;\nE;gsm;3;;0175;+49;Text;\n"
        "F;gsm;7;pin;;;;1234\nG;gsm;7;;0176;+49;Text;\n";
};

TEST_F(AllListed, RowsThatNeedNobodyAreDoneSideBySideAndTheFailedOnceMore) {
    pane.with(all);
    program.choose(main.optGSM);
    program.enter(main.tboAlarmmeldung, "Sammeltext");
    open(rows);
    main.chkListe_pruefen.value = main.chkListe_nochmal.value = true;
    units[1]->silent = true;
    program.click(main.cbuListe_alle);
    EXPECT_THAT(bench.rig.boxes.back().text, HasSubstr("ausgeführt werden: 5. Offen bleiben: 2."));
    EXPECT_FALSE(program.busy());
    bench.rig.answer(true);
    EXPECT_TRUE(program.busy() && !main.cbuListe_starten.usable() && !main.cbuParametrieren.usable());
    EXPECT_THAT(column(outcome), ElementsAre("läuft", "läuft", "läuft", "offen", "offen", "läuft", "offen"));
    EXPECT_EQ(main.cbuListe_alle.caption, "P&ause");
    program.click(main.cbuListe_alle);
    run_all([&] { return column(outcome)[5] == "erfolgreich" && column(outcome)[1] == "fehlgeschlagen"; });
    EXPECT_EQ(column(outcome)[6], "offen") << "nothing more begins";
    EXPECT_THAT(main.StatusBar.text, HasSubstr("1 ohne Erfolg (angehalten)"));
    program.click(main.mnuListe_alle);
    run_all([&] { return column(message)[6] == "Service-Nummer wird eingestellt"; });
    EXPECT_EQ(column(outcome)[6], "läuft");
    program.click(main.cbuListe_alle);
    run_all([&] { return column(outcome)[6] == "erfolgreich" && !later.on; });
    EXPECT_EQ(column(outcome)[1], "fehlgeschlagen") << "held, the second round too";
    program.click(main.cbuListe_alle);
    run_all([&] { return beside.made() == 6; });
    EXPECT_EQ(column(outcome)[1], "läuft") << "once more";
    units[1]->silent = false;
    run_all();
    EXPECT_THAT(column(outcome), ElementsAre("erfolgreich", "erfolgreich", "erfolgreich", "offen", "offen",
                                             "erfolgreich", "erfolgreich"));
    EXPECT_EQ(units[2]->memory.text, "Sammeltext");
    EXPECT_EQ(units[1]->memory.recipient, "0172");
    EXPECT_THAT(results(), HasSubstr(units[3]->imei));
    EXPECT_EQ(main.StatusBar.text, "Gerät 4 von 7: D (1 von 1 Zeilen fertig)");
    EXPECT_TRUE(main.cbuParametrieren.usable() && main.cbuListe_schliessen.usable());
    program.click(main.cbuListe_alle);
    EXPECT_THAT(bench.rig.boxes.back().text, HasSubstr("Keine Zeile lässt sich ausführen"));
    program.click(main.cbuListe_ueberspringen); // D; its device may hang at E's cable
    program.click(main.cbuListe_alle);
    EXPECT_THAT(bench.rig.boxes.back().text, HasSubstr("Keine Zeile lässt sich ausführen"));
}

TEST_F(AllListed, CancellingEndsAllOfThem) {
    pane.with(all);
    open(rows);
    program.click(main.cbuListe_alle);
    bench.rig.answer(true);
    run_all([&] { return !column(message)[0].empty(); });
    program.click(main.cbuListe_alle);
    program.click(main.cbuAbbrechen);
    run_all();
    EXPECT_THAT(main.StatusBar.text, EndsWith("3 ohne Erfolg)")) << "no longer held";
    EXPECT_THAT(column(outcome),
                ElementsAre("abgebrochen", "abgebrochen", "offen", "offen", "offen", "abgebrochen", "offen"));
    EXPECT_FALSE(program.busy() || beside.any_port_open());
    EXPECT_TRUE(main.cbuListe_alle.usable());
}

} // namespace
} // namespace telvox::test
