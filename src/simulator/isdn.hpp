#pragma once

#include "simulator/fixed_line.hpp"

namespace telvox::simulator {

/// Device on an ISDN line. A caller is asked for the password at once and then has a text interface of its
/// own, with the prompt "#"; the AT commands exist on the cable only.
class Isdn final : public FixedLine {
  public:
    Isdn();

  private:
    Reply unasked(std::string_view line) override;
    static const Command<Isdn> cable_commands[];
    static const Command<Isdn> remote_commands[];
};

} // namespace telvox::simulator
