#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace telvox {

/// Format of a serial line.
struct SerialFormat {
    int baud = 9600;
    char parity = 'n'; ///< 'n', 'e' or 'o'
    int data_bits = 8;
    int stop_bits = 1;

    bool operator==(const SerialFormat &) const = default;
};

/// The rates that the devices know; their place in this order is how some are told.
inline constexpr std::array device_rates = {300, 600, 1200, 2400, 4800, 9600, 19200, 38400};

/// Factory default of a cabled device and of a local modem.
inline constexpr const char *default_direkt = "2400,e,8,1";
inline constexpr const char *default_fern = "9600,n,8,1";

/// Reads a settings text "baud,parity,data bits,stop bits" ("2400,e,8,1"); nothing if it is not exactly that,
/// or a value that no device of the family has.
[[nodiscard]] std::optional<SerialFormat> parse_format(std::string_view settings);

/// The settings text of a format.
[[nodiscard]] std::string format_text(const SerialFormat &format);

} // namespace telvox
