#pragma once

#include "core/network.hpp"

#include <optional>
#include <string>
#include <string_view>

/// The system's programs for the network, with their arguments.
namespace telvox {

/// Hexadecimal digits in `pairs` pairs with "-" between them: "00-1C-04".
[[nodiscard]] bool is_hex_pairs(std::string_view text, int pairs);

/// An address as a program may get it; nothing for a text that is none: digits and dots only, at most 15
/// characters, no field above 255, not 0.0.0.0, which is whoever asks. Leading zeros are dropped, which
/// programs would take for octal numbers.
[[nodiscard]] std::optional<std::string> plain_address(std::string_view text);

/// Four echo requests.
[[nodiscard]] ShellCommand ping_command(Processes::Tools tools, const std::string &address);

/// Linux: asks which way leads to an address.
[[nodiscard]] ShellCommand route_command(const std::string &address);

/// What `route_command` said.
struct Route {
    std::string device;  ///< the interface that leads there: letters, digits, "._-:@"
    std::string problem; ///< why no entry can be set for the address (German); empty: it can
};
[[nodiscard]] Route parse_route(std::string_view output);

/// Binds an address to a MAC address ("00-05-B6-00-1C-04") in this computer's table; `device` is for Linux.
[[nodiscard]] ShellCommand entry_command(Processes::Tools tools, const std::string &address, std::string mac,
                                         const std::string &device);

/// A command as a person types it.
[[nodiscard]] std::string text_of(const ShellCommand &command);

} // namespace telvox
