#pragma once

#include "core/messages.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace telvox {

inline constexpr int last_port = 15; ///< ports are numbered from 1

/// The list entry of a port number: "COM 3".
[[nodiscard]] std::string port_entry(int number);

/// A COM number written as "3", "COM 3" or "com3"; nothing for other texts and other numbers.
[[nodiscard]] std::optional<int> parse_port_number(std::string_view text);

/// The port number of a list entry; 0, with a box that asks about the ports, for a text that is none.
[[nodiscard]] int func_Port_Auswahl(std::string_view entry, Outbox &outbox);

} // namespace telvox
