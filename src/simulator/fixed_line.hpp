#pragma once

#include "simulator/unit.hpp"

namespace telvox::simulator {

/// What the devices of the fixed network share: they ask for the alarm text, store the protocol of their
/// gateway, and keep nothing beyond a power failure until "AT&W".
class FixedLine : public Unit {
  public:
    using Unit::Unit;

  protected:
    Reply command(std::string_view line) final;
    /// Runs a command line that is not the answer to a question.
    virtual Reply unasked(std::string_view line) = 0;
    /// Runs one of the commands that the families share; refuses any other line.
    Reply shared_command(std::string_view line);
    [[nodiscard]] bool asking() const override { return asks_text_; }
    void forget() override { asks_text_ = false; }

  private:
    static const Command<FixedLine> shared_commands[];

    bool asks_text_ = false;
};

} // namespace telvox::simulator
