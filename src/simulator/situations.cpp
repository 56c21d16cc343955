#include "simulator/situations.hpp"

#include "simulator/world.hpp"

#include <algorithm>

namespace telvox::simulator {

namespace {

/// The device confirms its commands, so it can also refuse these.
template <std::size_t N> void refuse(Gprs &gprs, const char *const (&commands)[N]) {
    gprs.confirm();
    for (const char *command : commands)
        gprs.faults[command] = Fault::refuses;
}

constexpr Situation all[] = {
    {"rueckmeldungen", "bestätigt Befehle und kann sie ablehnen", [](Gprs &g) { g.confirm(); }},
    {"ablehnung", "lehnt APN, Benutzer, Alarmeingang und PIN ab",
     [](Gprs &g) {
         refuse(g, {"AT**GPRSAPN=", "AT**IPTUSER=", "AT**INPUT=", "AT**PIN="});
     }},
    {"datenverbindung", "hat eine Datenverbindung", [](Gprs &g) { g.go_online(); }},
    {"stumm", "ist ohne Spannung", [](Gprs &g) { g.silent = true; }},
    {"fremd", "kennt keinen Befehl", [](Gprs &g) { refuse(g, {"AT"}); }},
    {"verstummt", "antwortet vom Speichern an nicht mehr (Fehler 32, 73, 74)",
     [](Gprs &g) { g.faults["AT**SAVE"] = Fault::deafens; }},
    {"ohne-alarmtext", "fragt nicht nach dem Alarmtext (Fehler 74)",
     [](Gprs &g) { g.faults["AT+CMGW="] = Fault::unanswered; }},
    {"lesefehler", "beantwortet zwei Abfragen nicht (Lesefehler 713, 717)",
     [](Gprs &g) { g.faults["AT**KEEP?"] = g.faults["AT**IPT?"] = Fault::unanswered; }},
    {"fremde-werte", "hat Werte, die nicht in die Felder passen",
     [](Gprs &g) {
         auto &settings = g.memory.settings;
         settings["CLIP1"] = "0171-123 45";
         settings["PPPPW"] = std::string(80, 'p');
         settings["IPTPW"] = std::string(80, 'p');
     }},
    {"umstellung", "nimmt keine andere Baudrate an (Fehler 77)",
     [](Gprs &g) { g.faults["AT**BAUD="] = Fault::unanswered; }},
    {"keine-sim", "hat keine SIM-Karte", [](Gprs &g) { g.sim_present = false; }},
    {"pin-falsch", "hat eine andere PIN als die SIM-Karte (1234)", [](Gprs &g) { g.sim_pin = "1234"; }},
    {"puk", "hat eine gesperrte SIM-Karte", [](Gprs &g) { g.sim_blocked = true; }},
    {"netz-aus", "sucht kein Netz", [](Gprs &g) { g.registration = 0; }},
    {"netz-suche", "sucht ein Netz", [](Gprs &g) { g.registration = 2; }},
    {"netz-abgewiesen", "wird vom Netz abgewiesen", [](Gprs &g) { g.registration = 3; }},
    {"netz-unbekannt", "kennt weder Netz noch Signalstärke",
     [](Gprs &g) {
         g.registration = 4;
         g.signal = 99;
     }},
    {"roaming", "ist in einem fremden Netz", [](Gprs &g) { g.registration = 5; }},
    {"keine-fernkonfiguration", "lässt im Anruf niemanden ein", [](Gprs &g) { g.admits = false; }},
    {"anruf-bricht", "legt beim Schreiben auf",
     [](Gprs &g) { g.faults["AT**PPPUSER="] = g.faults["AT**IPTPW="] = Fault::breaks_off; }},
    {"adapter-belegt", "hängt an einem belegten Adapter", [](Gprs &g) { g.occupied = true; }},
    {"adapter-klemmt", "hängt an einem Adapter, der das letzte nicht sendet",
     [](Gprs &g) {
         for (const char *last : {"AT**RESET", "AT**INPUT=0", "AT**PIN=", "ATQ1"})
             g.faults[last] = Fault::jams;
     }},
    {"adapter-weg", "verliert beim Schreiben und Lesen den Adapter",
     [](Gprs &g) {
         for (const char *amid : {"AT**PPPUSER", "AT**IPT", "AT**INPUT="})
             g.faults[amid] = Fault::unplugs;
     }},
};

} // namespace

std::span<const Situation> situations() { return all; }

const Situation *find_situation(std::string_view name) {
    const auto *const found =
        std::find_if(std::begin(all), std::end(all), [&](const Situation &s) { return s.name == name; });
    return found == std::end(all) ? nullptr : found;
}

void begin(const Situation &situation, World &world) {
    for (Gprs *gprs : {world.gprs.get(), world.called_gprs.get()})
        situation.begin(*gprs);
}

} // namespace telvox::simulator
