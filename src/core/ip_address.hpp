#pragma once

#include <string_view>

namespace telvox {

/// Whether a text has the form of an IP address as the devices take it: at least 7 characters, exactly three
/// dots, none first, none last, no two in a row. The numbers are not range-checked.
[[nodiscard]] bool func_IP_pruefen(std::string_view text);

/// The same, and no number is above 255.
[[nodiscard]] bool valid_address(std::string_view text);

} // namespace telvox
