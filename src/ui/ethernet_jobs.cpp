#include "core/ip_address.hpp"
#include "core/text.hpp"
#include "net/shell_commands.hpp"
#include "ui/jobs.hpp"
#include "ui/questions.hpp"

namespace telvox {

namespace {

/// A check that a field of a window has the form of an IP address.
template <auto Window, auto Field> constexpr Check address_in(const char *otherwise) {
    return {.holds = [](const Desk &d) { return func_IP_pruefen((d.*Window.*Field).text); },
            .otherwise = otherwise,
            .field = [](Desk &d) -> Control * { return &(d.*Window.*Field); }};
}

constexpr const char *in_present_address =
    "Bitte geben Sie eine gültige IP-Adresse\rim Feld 'Momentane IP' ein.";

constexpr Check address_checks[] = {
    address_in<&Desk::frmEthernet, &FrmEthernet::tboIP>("Bitte geben Sie eine gültige IP-Adresse ein."),
    {.holds = [](const Desk &d) { return !d.frmEthernet.tboPort.text.empty(); },
     .otherwise = "Bitte geben Sie eine gültige Portnummer ein.",
     .field = [](Desk &d) -> Control * { return &d.frmEthernet.tboPort; }},
    {.holds = [](const Desk &d) { return !number_exceeds(d.frmEthernet.tboPort.text, 65535); },
     .otherwise = "Bitte geben Sie eine gültige (0-65535) Portnummer ein.",
     .field = [](Desk &d) -> Control * { return &d.frmEthernet.tboPort; }},
    cable_chosen,
};
constexpr Check gateway_checks[] = {
    address_in<&Desk::frmGateway, &FrmGateway::tboGateway>("Bitte geben Sie ein gültiges Gateway ein."),
    address_in<&Desk::frmGateway, &FrmGateway::tboNetzmaske>("Bitte geben Sie eine gültige Netzmaske ein."),
    cable_chosen,
};
constexpr auto gateway_values = std::span(gateway_checks).first<2>();

/// The same field under the two names that its two buttons have for it.
constexpr Check pinged_address[] = {address_in<&Desk::frmGateway, &FrmGateway::tboIP>(
    "Bitte geben Sie eine gültige IP-Adresse\rim Feld 'IP-Adresse' ein.")};
constexpr Check configured_address[] = {
    address_in<&Desk::frmGateway, &FrmGateway::tboIP>(in_present_address)};

constexpr Check new_address[] = {address_in<&Desk::frmIPoEthernet, &FrmIPoEthernet::tboNeue_IP>(
    "Bitte geben Sie eine gültige IP-Adresse\rim Feld 'Neue IP' ein.")};
constexpr Check present_address[] = {
    address_in<&Desk::frmIPoEthernet, &FrmIPoEthernet::tboAlte_IP>(in_present_address)};
constexpr Check mac_address[] = {
    {.holds = [](const Desk &d) { return is_hex_pairs(d.frmIPoEthernet.tboMAC_Adresse2.text, 3); },
     .otherwise = "Bitte geben Sie eine gültige MAC-Adresse ein.\rBeispiel: 00-05-B6-00-1C-04",
     .field = [](Desk &d) -> Control * { return &d.frmIPoEthernet.tboMAC_Adresse2; }}};

constexpr Question address_questions[] = {
    {.strikes = [](const Desk &d) { return !valid_address(d.frmEthernet.tboIP.text); },
     .text = "Es wurde keine gültige IP-Adresse eingetragen.",
     .field = [](Desk &d) -> Control * { return &d.frmEthernet.tboIP; }}};

constexpr Launch set_address = {
    .checks = address_checks, .counter = &JobState::byteEthernet_IP_Counter, .cable_only = true};
constexpr Launch set_gateway = {
    .checks = gateway_checks, .counter = &JobState::byteEthernet_Gateway_Counter, .cable_only = true};

constexpr const char *reached = "Verbindungsaufbau erfolgreich!";
constexpr const char *unreached_at_present = "Gerät konnte unter der momentanen IP nicht erreicht werden.";

constexpr NetworkAction check_gateway = {
    .reached = reached,
    .unreached = "Verbindungsaufbau fehlgeschlagen.\rRichtige IP im Feld 'IP-Adresse' eingetragen?"};
constexpr NetworkAction configure_gateway = {.full_after_ping = true,
                                             .unreached = unreached_at_present,
                                             .done = "Gateway und Netzmaske erfolgreich eingestellt!",
                                             .failed = "Konfiguration fehlgeschlagen."};
constexpr NetworkAction check_new = {
    .rule = PingRule::echo_of_address,
    .reached = reached,
    .unreached = "Verbindungsaufbau fehlgeschlagen.\rRichtige IP im Feld 'Neue IP' eingetragen?"};
constexpr NetworkAction check_present = {
    .rule = PingRule::echo_of_address,
    .reached = reached,
    .unreached = "Verbindungsaufbau fehlgeschlagen.\rRichtige IP im Feld 'Momentane IP' eingetragen?"};
constexpr NetworkAction give_first = {.rule = PingRule::echo_of_address,
                                      .first_entry = true,
                                      .reached = "IP Vergabe erfolgreich",
                                      .unreached =
                                          "IP Vergabe fehlgeschlagen\rMomentane Geräte IP: 0.0.0.0 ?"};
constexpr NetworkAction change_address = {.rule = PingRule::echo_of_address,
                                          .unreached = unreached_at_present,
                                          .done = "Neue IP eingestellt!",
                                          .failed = "IP Vergabe fehlgeschlagen."};

template <class Window> NetworkPane pane_of(Window &window) {
    return {window.tboShell.text, window.prbFortschritt.value, network_progress, window.running};
}

/// The buttons that work over the network.
class NetworkButtons {
  public:
    NetworkButtons(Desk &desk, NetworkTools &network, const TelnetDialogues &dialogues)
        : desk_(desk), network_(network), dialogues_(dialogues) {}

    void check_gateway_address() {
        if (hold(pinged_address))
            network_.start(check_gateway, {.address = gateway_.tboIP.text}, pane_of(gateway_),
                           gateway_.cbuVerbindung_pruefen);
    }

    void set_gateway() {
        if (!hold(gateway_values))
            return;
        if (desk_.frmModem.optFernverbindung.value) {
            gateway_.tboShell.text.clear();
            return network_.log(gateway_.tboShell.text,
                                "Im Hauptfenster ist 'Verbindung über das Netzwerk' gewählt. Für diese "
                                "Einstellung dort 'Direktverbindung mit Kabel' wählen.\n");
        }
        if (hold(configured_address))
            network_.start(
                configure_gateway,
                {.address = gateway_.tboIP.text,
                 .dialogue = dialogues_.gateway,
                 .values = {.gateway = gateway_.tboGateway.text, .netmask = gateway_.tboNetzmaske.text}},
                pane_of(gateway_), gateway_.cbuEthernet_GW_Konfigurieren);
    }

    void check_address() {
        const bool first = address_.optIP_Erstkonfiguration.value;
        if (hold(first ? new_address : present_address))
            network_.start(first ? check_new : check_present,
                           {.address = (first ? address_.tboNeue_IP : address_.tboAlte_IP).text},
                           pane_of(address_), address_.cbuVerbindung_pruefen);
    }

    void set_address() {
        address_.prbFortschritt.value = 0;
        address_.tboShell.text.clear();
        if (!hold(new_address))
            return;
        const std::string &wanted = address_.tboNeue_IP.text;
        if (address_.optIP_Erstkonfiguration.value) {
            if (hold(mac_address))
                network_.start(give_first, {.address = wanted, .mac = address_.mac()}, pane_of(address_),
                               address_.cbuEthernet_IP_aendern);
        } else if (hold(present_address)) {
            network_.start(change_address,
                           {.address = address_.tboAlte_IP.text,
                            .dialogue = dialogues_.address,
                            .values = {.address = wanted}},
                           pane_of(address_), address_.cbuEthernet_IP_aendern);
        }
    }

  private:
    bool hold(std::span<const Check> checks) { return all_hold(checks, desk_, desk_, desk_.outbox); }

    Desk &desk_;
    NetworkTools &network_;
    const TelnetDialogues &dialogues_;
    FrmGateway &gateway_ = desk_.frmGateway;
    FrmIPoEthernet &address_ = desk_.frmIPoEthernet;
};

} // namespace

void connect_ethernet(Desk &desk, Sequencer &sequencer, NetworkTools &network,
                      const TelnetDialogues &dialogues) {
    desk.frmModem.mnuIPuPort.clicked = opens(desk.frmEthernet);
    desk.frmModem.mnuGateway.clicked = opens(desk.frmGateway);
    desk.frmModem.mnuIP_over_Ethernet.clicked = opens(desk.frmIPoEthernet);
    desk.frmEthernet.cbuEthernet_Konfigurieren.clicked = [&] {
        if (sequencer.ready(set_address))
            ask_all(desk, address_questions, [&] {
                if (sequencer.start(set_address, desk.frmEthernet.cbuEthernet_Konfigurieren))
                    desk.frmEthernet.unload();
            });
    };
    starts_and_closes(desk.frmGateway.cbuEthernet_GW_Kabel, sequencer, set_gateway);
    NetworkButtons buttons(desk, network, dialogues);
    const auto presses = [&](void (NetworkButtons::*action)()) {
        return [buttons, action]() mutable { (buttons.*action)(); };
    };
    desk.frmGateway.cbuVerbindung_pruefen.clicked = presses(&NetworkButtons::check_gateway_address);
    desk.frmGateway.cbuEthernet_GW_Konfigurieren.clicked = presses(&NetworkButtons::set_gateway);
    desk.frmIPoEthernet.cbuVerbindung_pruefen.clicked = presses(&NetworkButtons::check_address);
    desk.frmIPoEthernet.cbuEthernet_IP_aendern.clicked = presses(&NetworkButtons::set_address);
}

} // namespace telvox
