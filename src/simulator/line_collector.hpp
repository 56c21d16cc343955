#pragma once

#include <optional>
#include <string>

namespace telvox::simulator {

/// Puts the characters of a command line together. A carriage return ends the line; other control characters
/// are ignored. A line that is longer than the device's buffer is lost as a whole, so no part of it is taken
/// for a command.
class LineCollector {
  public:
    static constexpr std::size_t limit = 300;

    /// Adds one byte; returns the line that it completes.
    std::optional<std::string> add(char byte);
    [[nodiscard]] bool empty() const { return line_.empty(); }
    void clear();

  private:
    std::string line_;
    bool too_long_ = false;
};

} // namespace telvox::simulator
