#pragma once

#include "simulator/unit.hpp"

namespace telvox::simulator {

/// What the devices of the mobile network share: the SIM card, the state of the network, the result codes,
/// which are off until they are switched on, and the way out of the remote configuration.
class Mobile : public Unit {
  public:
    using Unit::Unit;

    int signal = 17;      ///< 0 to 31, 99: not known
    int registration = 1; ///< 0 off, 1 home network, 2 searching, 3 refused, 5 roaming
    std::string imei = "001010000000017";
    std::string sim_pin;      ///< PIN that the SIM card asks for; empty: none
    bool sim_present = true;  ///< without a card the PIN query gets no answer
    bool sim_blocked = false; ///< the SIM card asks for its PUK

    /// Switch: the result codes are on from every start of the device.
    void confirm() { result_codes_ = confirms_ = true; }

  protected:
    /// Runs one of the commands that the families share; refuses any other line.
    Reply shared_command(std::string_view line);
    [[nodiscard]] bool result_codes() const override { return result_codes_; }
    void started() override { result_codes_ = confirms_; }

  private:
    Reply sim_state() const;
    Reply keep_pin(std::string_view value);
    static const Command<Mobile> shared_commands[];

    bool result_codes_ = false;
    bool confirms_ = false; ///< after a start
};

} // namespace telvox::simulator
