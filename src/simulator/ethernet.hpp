#pragma once

#include "simulator/unit.hpp"

namespace telvox::simulator {

/// Switches: what the module does wrong in its Telnet dialogue. The steps have names: "connect", "Username",
/// "Password", "#IP=", "#GW=", "#NM=", "#PORT=", "#RESET"; an empty one switches off.
struct TelnetFaults {
    bool refuses_connection = false;
    bool refuses_login = false; ///< whatever the name and the password
    bool never_ok = false;      ///< says its prompt instead
    bool floods = false;        ///< sends dots without end
    bool one_byte_packets = false;
    bool negotiates = false; ///< begins with option requests
    std::string error_at;    ///< answers this step with "ERROR" and does nothing
    std::string closes_at;   ///< closes instead of an answer to this step
    std::string mute_at;     ///< does not answer this step
};

/// Module with a serial line and a network address. On its cable it passes bytes through to its network peer
/// until "+++". An address that it is told, on the cable or by Telnet, is kept at once and in force from the
/// next start; one without an address takes that of the first packet sent to its MAC address.
class Ethernet final : public Unit {
  public:
    /// `mac` as "00-05-B6-00-1C-04". The factory's address is "0.0.0.0".
    explicit Ethernet(std::string mac, const std::string &address = "0.0.0.0");

    [[nodiscard]] const std::string &mac() const { return mac_; }
    /// Address at which it answers; "0.0.0.0" while it has none.
    [[nodiscard]] const std::string &address() const { return in_force_.find("IP")->second; }
    /// Runs a command of the network side, the same on both ways: "#IP=", "#PORT=", "#GW=", "#NM=".
    Reply set(std::string_view line);
    /// A packet for this address has come to its MAC address.
    void take_address(const std::string &address);

    /// What the module is told stands in `memory.settings` as "IP", "PORT", "GW" and "NM".
    TelnetFaults faults;
    std::string options_answered;  ///< what hosts answered to the option requests
    const void *session = nullptr; ///< the one that has the only Telnet session

  private:
    Reply command(std::string_view line) override;
    void started() override;
    static const Command<Ethernet> commands[];

    std::string mac_;
    decltype(Memory::settings) in_force_;
};

} // namespace telvox::simulator
