// What the rows of a list ask for, and what is refused of them before anything is sent.

#include "core/usage_error.hpp"
#include "operation/list_order.hpp"
#include "operation/trial.hpp"

#include <gmock/gmock.h>

namespace telvox::operation {
namespace {

using testing::HasSubstr;

/// What would run, a line per row: values, port, "fern"; or the refusal.
std::string tried(const std::string &table, const ForAllRows &all = {}, bool despite = false) {
    const auto exists = [](const std::string &device) { return device == "/dev/a"; };
    std::string text;
    try {
        const DeviceList list = device_list(parse_table(table, "l", 99), is_column);
        check_taken(all, list);
        for (const DeviceList::Row &row : list.rows) {
            const Order order = order_of(list, row, all);
            const Trial trial = try_out(order, {"/dev/null/none", {SHARE}}, despite, exists);
            if (!trial.refusal.empty())
                return label_of(row) + " " + trial.option + ": " + trial.refusal;
            text += order.job->name;
            for (const auto &[name, given] : order.values)
                text += " " + name.substr(2) + "=" + given.value;
            text += (trial.port.empty() ? "" : " @" + trial.port) + (trial.remote ? " fern" : "") + "\n";
        }
        return text;
    } catch (const UsageError &error) {
        return error.what();
    }
}

TEST(ListOrder, ACellGoesBeforeTheCallAndTheCallBeforeTheFile) {
    const ForAllRows all{.values = {{"--typ", {"gsm", "--typ"}}, {"--pin", {"1234", "--pin"}}},
                         .profile = parse_profile("typ=isdn\nschnittstelle=7\n[PIN]\npin=9\n", "p")};
    EXPECT_EQ(tried("auftrag;typ;schnittstelle;pin\npin;;;5678\npin;gprs;3;\nalarmtest;;;\n", all),
              "pin pin=5678 schnittstelle=7 typ=gsm @7\n"
              "pin pin=1234 schnittstelle=3 typ=gprs @3\n"
              "alarmtest schnittstelle=7 typ=gsm @7\n");
    EXPECT_EQ(tried("auftrag;typ;schnittstelle\nalarmtest;gsm;3\n", all), "--pin gehört nur zu pin");
}

TEST(ListOrder, TheWholeListIsCheckedByTheButtonsOwnChecks) {
    const struct {
        const char *table, *expected;
    } cases[] = {
        {"typ;schnittstelle;auftrag\ngsm;/dev/a;imei\n", "imei schnittstelle=/dev/a typ=gsm @/dev/a\n"},
        {"typ;verbindung;modemanschluss;rufnummer-modem;auftrag\nanalog;fern;6;1;alarm-aus\n", "@6 fern\n"},
        {"auftrag;ip\nnetz-pruefen;1.2.3.4\n", "netz-pruefen ip=1.2.3.4 typ=ethernet\n"},
        {"auftrag\ntanzen\n", "l, Zeile 2, Spalte auftrag: den Auftrag \"tanzen\" gibt es nicht"},
        {"auftrag\nliste\n",
         "l, Zeile 2, Spalte auftrag: den Auftrag \"liste\" gibt es nicht in einer Liste"},
        {"auftrag\nservicenummern\n", "gibt es nicht in einer Liste"},
        {"pin;typ\n1;gsm\n", "l, Zeile 2, Spalte pin: das gehört nicht zum Auftrag parametrieren"},
        {"auftrag;typ\npin;gsm\n", "l, Zeile 2: pin braucht pin"},
        {"auftrag;typ\nerkennen;gsm\n", "l, Zeile 2: erkennen braucht schnittstelle"},
        {"auftrag;typ\nimei;isdn\n", "imei gibt es nur mit --typ gsm oder gprs"},
        {"typ;empfaenger\ngsm;12a\n", "l, Zeile 2, Spalte empfaenger: nur Ziffern"},
        {"typ;netz\ngsm;+49\n", "l, Zeile 2, Spalte netz: mehrere Einträge"},
        {"typ;schnittstelle\ngsm;/dev/b\n", "l, Zeile 2, Spalte schnittstelle: \"/dev/b\" ist weder"},
        {"typ;schnittstelle;empfaenger;netz\ngsm;3;;vodafone\n", "Zeile 2 --empfaenger: "},
        {"typ;auftrag\ngsm;alarmtest\n", "Zeile 2 --schnittstelle: "},
    };
    for (const auto &[table, expected] : cases)
        EXPECT_THAT(tried(table), HasSubstr(expected)) << table;
    // A question that the button would ask is asked before, too.
    const std::string table = "typ;schnittstelle;auftrag;apn\ngprs;4;gprs-schreiben;\n";
    EXPECT_THAT(tried(table), HasSubstr("Einstellungen trotzdem übertragen? (Nein; --trotzdem bedeutet Ja)"));
    EXPECT_THAT(tried(table, {}, true), HasSubstr(" @4\n"));
}

} // namespace
} // namespace telvox::operation
