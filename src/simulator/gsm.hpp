#pragma once

#include "simulator/mobile.hpp"

namespace telvox::simulator {

/// Generation of a mobile device. The newer one names its maker and numbers its commands with 1; only the
/// older one, which numbers them with 2, can be configured in a call.
enum class Generation { newer, older };

/// Device in the mobile network. What it is told it keeps at once, but for its serial format.
class Gsm final : public Mobile {
  public:
    explicit Gsm(Generation generation);

  private:
    Reply command(std::string_view line) override;
    Reply clock() const;
    Reply keep_value(std::string Memory::*field, std::string_view value, std::size_t limit);
    Reply keep_text(std::string_view value);
    Reply arm_input(std::string_view value);
    static const Command<Gsm> commands[];
    static const Command<Gsm> newer_commands[];
    static const Command<Gsm> older_commands[];

    Generation generation_;
};

} // namespace telvox::simulator
