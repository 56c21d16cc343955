// What the rows of a list ask for, and what is refused of them before anything is sent.

#include "core/usage_error.hpp"
#include "operation/list_order.hpp"
#include "operation/trial.hpp"

#include <gmock/gmock.h>

namespace telvox::operation {
namespace {

using testing::HasSubstr;

/// What would run, a line per row: values, port, "fern"; or the refusal.
std::string tried(const std::string &table, const ForAllRows &all = {}, bool despite = false,
                  bool listed = false) {
    const auto exists = [](const std::string &device) { return device == "/dev/a"; };
    std::string text;
    try {
        const DeviceList list = device_list(parse_table(table, "l", 99), column_option);
        check_taken(all, list);
        try_out(
            list, all, {},
            {.folders = {"/dev/null/none", {SHARE}}, .exists = exists, .despite = despite, .listed = listed},
            [](std::size_t) { return true; },
            [&](std::size_t, const Order &order, const Trial &trial) {
                text += order.job->name;
                for (const auto &[name, given] : order.values)
                    text += " " + name + "=" + given.value;
                text += (trial.port.empty() ? "" : " @" + trial.port) + (trial.remote ? " fern" : "") + "\n";
            });
        return text;
    } catch (const UsageError &error) {
        return error.what();
    }
}

TEST(ListOrder, ACellGoesBeforeTheCallAndTheCallBeforeTheFile) {
    const ForAllRows all{.values = {{"typ", {"gsm", {.name = "typ"}}}, {"pin", {"1234", {.name = "pin"}}}},
                         .profile = parse_profile("typ=isdn\nschnittstelle=7\n[PIN]\npin=9\n", "p")};
    EXPECT_EQ(tried("auftrag;typ;schnittstelle;pin\npin;;;5678\npin;gprs;3;\nalarmtest;;;\n", all),
              "pin pin=5678 schnittstelle=7 typ=gsm @7\n"
              "pin pin=1234 schnittstelle=3 typ=gprs verbindung=direkt @3\n"
              "alarmtest schnittstelle=7 typ=gsm @7\n");
    EXPECT_EQ(tried("auftrag;typ;schnittstelle\nalarmtest;gsm;3\n", all), "--pin gehört nur zu pin");
}

TEST(ListOrder, TheWholeListIsCheckedByTheButtonsOwnChecks) {
    const struct {
        const char *table, *expected;
    } cases[] = {
        {"typ;schnittstelle;auftrag\ngsm;/dev/a;imei\n",
         "imei schnittstelle=/dev/a typ=gsm verbindung=direkt @/dev/a\n"},
        {"typ;verbindung;modemanschluss;rufnummer-modem;auftrag\nanalog;fern;6;1;alarm-aus\n", "@6 fern\n"},
        {"auftrag;ip\nnetz-pruefen;1.2.3.4\n", "netz-pruefen ip=1.2.3.4 typ=ethernet\n"},
        {"auftrag\ntanzen\n", "l, Zeile 2, Spalte auftrag: den Auftrag \"tanzen\" gibt es nicht"},
        {"auftrag\nliste\n",
         "l, Zeile 2, Spalte auftrag: den Auftrag \"liste\" gibt es nicht in einer Liste"},
        {"auftrag\nservicenummern\n", "gibt es nicht in einer Liste"},
        {"pin;typ\n1;gsm\n", "l, Zeile 2, Spalte pin: das gehört nicht zum Auftrag parametrieren"},
        {"auftrag;typ\npin;gsm\n", "l, Zeile 2: pin braucht Spalte pin"},
        {"auftrag;typ\nerkennen;gsm\n", "l, Zeile 2: erkennen braucht Spalte schnittstelle"},
        {"auftrag;typ\nimei;isdn\n", "l, Zeile 2, Spalte typ: imei gibt es nur mit typ gsm oder gprs"},
        {"typ;empfaenger\ngsm;12a\n", "l, Zeile 2, Spalte empfaenger: nur Ziffern"},
        {"typ;netz\ngsm;+49\n", "l, Zeile 2, Spalte netz: mehrere Einträge"},
        {"typ;schnittstelle\ngsm;/dev/b\n", "l, Zeile 2, Spalte schnittstelle: \"/dev/b\" ist weder"},
        {"typ;schnittstelle;empfaenger;netz\ngsm;3;;vodafone\n", "l, Zeile 2, Spalte empfaenger: "},
        {"typ;verbindung;schnittstelle\nisdn;fern;3\n",
         "l, Zeile 2, Spalte schnittstelle: gehört zum Kabel; Spalte verbindung auf direkt setzen"},
        {"typ;modemanschluss;rufnummer-modem;auftrag\nanalog;6;1;alarm-aus\n", "verbindung=fern @6 fern\n"},
        {"Typ;Schnittstelle;Empfänger;Service-Center Nummer;Alarmmeldung\ngsm;3;0171 23 45;+49 171 1;x\n",
         "empfaenger=0171 23 45 schnittstelle=3 service-center=+49 171 1 typ=gsm"},
        {"typ;empfaenger;alarmtext;schnittstelle\ngsm;1x;ok;3\ngsm;2x;ok;99\n",
         "Spalte empfaenger: nur Ziffern\rl, Zeile 3, Spalte empfaenger: nur Ziffern\rl, Zeile 3, Spalte "
         "schnittstelle"},
        {"auftrag;typ;schnittstelle;apn\ngprs-schreiben;gprs;3;\n", "trotzdem"},
        {"typ;auftrag\ngsm;alarmtest\n", "l, Zeile 2, Spalte schnittstelle: "},
    };
    for (const auto &[table, expected] : cases)
        EXPECT_THAT(tried(table), HasSubstr(expected)) << table;
    // A question that the button would ask is asked before, too.
    const std::string table = "typ;schnittstelle;auftrag;apn\ngprs;4;gprs-schreiben;\n";
    EXPECT_THAT(tried(table), HasSubstr("Einstellungen trotzdem übertragen? (Nein; --trotzdem bedeutet Ja)"));
    EXPECT_THAT(tried(table, {}, true), HasSubstr(" @4\n"));
}

TEST(ListOrder, WhatIsDoneAroundAJobIsCheckedToo) {
    const struct {
        const char *table, *expected;
    } cases[] = {
        {"typ;imei\ngsm;12\n", "l, Zeile 2, Spalte imei: eine IMEI hat 15 Ziffern"},
        {"typ;imei;auftrag\nanalog;001010000000017;alarm-aus\n",
         "Spalte imei: die IMEI sagen nur gsm und gprs"},
        {"auftrag;imei\nmsn;001010000000017\n", "Spalte imei: das gehört nicht zum Auftrag msn"},
        {"auftrag;apn;rest\ngprs-schreiben;x;weg\n", "Spalte rest: \"weg\" gibt es nicht (leeren)"},
        {"auftrag;apn;rest;nur-aenderungen\ngprs-schreiben;x;leeren;ein\n",
         "das schließt nur-aenderungen aus"},
        {"auftrag;apn;geraet-pruefen\ngprs-schreiben;x;ja\n", "\"ja\" gibt es nicht (ein, aus)"},
        {"auftrag;modemanschluss;rufnummer-modem;apn\ngprs-schreiben;6;1;x\n",
         "l, Zeile 2: was nicht angegeben ist, würde geleert"},
        {"auftrag;modemanschluss;rufnummer-modem;apn;rest\ngprs-schreiben;6;1;x;leeren\n", "@6 fern\n"},
        {"auftrag;schnittstelle;apn\ngprs-schreiben;3;x\n",
         "l, Zeile 2: Die Sicherung der alten Einstellungen lässt sich nicht schreiben."},
        {"auftrag;schnittstelle\ngprs-vergleichen;3\n", "es ist nichts angegeben, womit zu vergleichen ist"},
    };
    for (const auto &[table, expected] : cases)
        EXPECT_THAT(tried(table, {}, false, true), HasSubstr(expected)) << table;
}

} // namespace
} // namespace telvox::operation
