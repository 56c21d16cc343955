#pragma once

#include "simulator/unit.hpp"

namespace telvox::simulator {

/// Generation of a mobile device. The newer one names its maker and numbers its commands with 1; only the
/// older one, which numbers them with 2, can be configured in a call.
enum class Generation { newer, older };

/// Device in the mobile network. What it is told it keeps at once; it gives no result codes until they are
/// switched on.
class Gsm final : public Unit {
  public:
    explicit Gsm(Generation generation);

    int signal = 17;      ///< 0 to 31, 99: not known
    int registration = 1; ///< 0 off, 1 home network, 2 searching, 3 refused, 5 roaming
    std::string imei = "001010000000017";
    std::string sim_pin;     ///< PIN that the SIM card asks for; empty: none
    bool sim_present = true; ///< without a card the PIN query gets no answer

  private:
    Reply command(std::string_view line) override;
    [[nodiscard]] bool result_codes() const override { return result_codes_; }
    Reply clock() const;
    Reply sim_state() const;
    static const Command<Gsm> commands[];
    static const Command<Gsm> newer_commands[];
    static const Command<Gsm> older_commands[];

    Generation generation_;
    bool result_codes_ = false;
};

} // namespace telvox::simulator
