#pragma once

#include "simulator/fixed_line.hpp"

namespace telvox::simulator {

/// Device on an analogue telephone line. On its cable it adapts itself to the format in which it is
/// addressed. A caller asks for the configuration with four stars and then types the password.
class Analog final : public FixedLine {
  public:
    Analog();

  private:
    Reply unasked(std::string_view line) override;
    static const Command<Analog> commands[];
};

} // namespace telvox::simulator
