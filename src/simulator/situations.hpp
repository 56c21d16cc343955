#pragma once

#include "simulator/gprs.hpp"

#include <span>
#include <string_view>

namespace telvox::simulator {

struct World;

/// What the GPRS devices, the one on the cable and the one that is called, can be found in, so that a person
/// sees what the program makes of it.
struct Situation {
    std::string_view name;    ///< as a call gives it
    std::string_view purpose; ///< German
    void (*begin)(Gprs &);
};

[[nodiscard]] std::span<const Situation> situations();
/// Null for an unknown name.
[[nodiscard]] const Situation *find_situation(std::string_view name);
/// Puts the GPRS devices of a world into it.
void begin(const Situation &situation, World &world);

} // namespace telvox::simulator
