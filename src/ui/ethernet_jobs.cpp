#include "core/ip_address.hpp"
#include "ui/jobs.hpp"

namespace telvox {

namespace {

/// The value of a text of digits is at most 65535.
bool is_port(std::string_view digits) {
    digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
    return digits.size() < 5 || (digits.size() == 5 && digits <= "65535");
}

/// A check that a field of a window has the form of an IP address.
template <auto Window, auto Field> constexpr Check address_in(const char *otherwise) {
    return {.holds = [](const Desk &d) { return func_IP_pruefen((d.*Window.*Field).text); },
            .otherwise = otherwise,
            .field = [](Desk &d) -> Control * { return &(d.*Window.*Field); }};
}

constexpr Check address_checks[] = {
    address_in<&Desk::frmEthernet, &FrmEthernet::tboIP>("Bitte geben Sie eine gültige IP-Adresse ein."),
    {.holds = [](const Desk &d) { return !d.frmEthernet.tboPort.text.empty(); },
     .otherwise = "Bitte geben Sie eine gültige Portnummer ein.",
     .field = [](Desk &d) -> Control * { return &d.frmEthernet.tboPort; }},
    {.holds = [](const Desk &d) { return is_port(d.frmEthernet.tboPort.text); },
     .otherwise = "Bitte geben Sie eine gültige (0-65535) Portnummer ein.",
     .field = [](Desk &d) -> Control * { return &d.frmEthernet.tboPort; }},
    cable_chosen,
};
constexpr Check gateway_checks[] = {
    address_in<&Desk::frmGateway, &FrmGateway::tboGateway>("Bitte geben Sie ein gültiges Gateway ein."),
    address_in<&Desk::frmGateway, &FrmGateway::tboNetzmaske>("Bitte geben Sie eine gültige Netzmaske ein."),
    cable_chosen,
};

constexpr Launch set_address = {.checks = address_checks,
                                .counter = &JobState::byteEthernet_IP_Counter,
                                .cable_only = true,
                                .prepare = [](Desk &d) {
                                    d.session.str_IP = d.frmEthernet.tboIP.text;
                                    d.session.str_Port = d.frmEthernet.tboPort.text;
                                }};
constexpr Launch set_gateway = {.checks = gateway_checks,
                                .counter = &JobState::byteEthernet_Gateway_Counter,
                                .cable_only = true,
                                .prepare = [](Desk &d) {
                                    d.session.str_Gateway = d.frmGateway.tboGateway.text;
                                    d.session.str_Netzmaske = d.frmGateway.tboNetzmaske.text;
                                }};

} // namespace

void connect_ethernet(Desk &desk, Sequencer &sequencer) {
    desk.frmModem.mnuIPuPort.clicked = opens(desk.frmEthernet);
    desk.frmModem.mnuGateway.clicked = opens(desk.frmGateway);
    desk.frmEthernet.cbuEthernet_Konfigurieren.clicked = [&] {
        if (sequencer.start(set_address))
            desk.frmEthernet.unload();
    };
    desk.frmGateway.cbuEthernet_GW_Kabel.clicked = [&] {
        if (sequencer.start(set_gateway))
            desk.frmGateway.unload();
    };
}

} // namespace telvox
