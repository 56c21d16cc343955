#pragma once

#include "simulator/device.hpp"

namespace telvox::simulator {

/// Watches a line in data mode for the escape "+++", which counts only with silence before and behind it.
class EscapeWatch {
  public:
    /// At least this long has the silence to be.
    static constexpr Time guard_time{1000};

    void hear(char byte, Time now);
    /// When the silence behind a whole escape will have lasted; nothing while there is none.
    [[nodiscard]] std::optional<Time> due() const { return due_; }
    /// Forgets an escape that has begun or was acted on.
    void clear();

  private:
    std::optional<Time> last_byte_;
    std::optional<Time> due_;
    int pluses_ = 0;
};

} // namespace telvox::simulator
