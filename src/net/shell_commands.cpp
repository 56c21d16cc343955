#include "net/shell_commands.hpp"

#include "core/ip_address.hpp"

#include <algorithm>
#include <sstream>
#include <utility>

namespace telvox {

bool is_hex_pairs(std::string_view text, int pairs) {
    if (text.size() != static_cast<std::size_t>(pairs * 3 - 1))
        return false;
    for (std::size_t i = 0; i < text.size(); ++i)
        if (i % 3 == 2 ? text[i] != '-'
                       : std::string_view("0123456789ABCDEFabcdef").find(text[i]) == std::string_view::npos)
            return false;
    return true;
}

std::optional<std::string> plain_address(std::string_view text) {
    if (text.size() > 15 || !valid_address(text))
        return std::nullopt;
    std::string plain, field;
    for (const char c : std::string(text) + '.') {
        if (c == '.') {
            field.erase(0, std::min(field.find_first_not_of('0'), field.size() - 1));
            plain += (plain.empty() ? "" : ".") + std::exchange(field, {});
        } else {
            field += c;
        }
    }
    return plain != "0.0.0.0" ? std::optional(plain) : std::nullopt;
}

ShellCommand ping_command(Processes::Tools tools, const std::string &address) {
    if (tools == Processes::Tools::of_windows)
        return {"ping", {"-n", "4", address}};
    // Without names, and with a word for each answer that stays out; no answer is waited for longer.
    return {"ping", {"-n", "-O", "-c", "4", "-W", "2", address}};
}

namespace {

/// A name as the system gives to interfaces; it stands in a command that the user may be shown to type.
bool is_interface(std::string_view name) {
    constexpr std::size_t longest = 15;
    return name.size() <= longest && !name.empty() && name[0] != '-' &&
           std::all_of(name.begin(), name.end(), [](char c) {
               return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                      std::string_view("._-:@").find(c) != std::string_view::npos;
           });
}

} // namespace

ShellCommand route_command(const std::string &address) { return {"ip", {"route", "get", address}}; }

Route parse_route(std::string_view output) {
    std::istringstream words{std::string(output.substr(0, output.find('\n')))};
    std::string first, word;
    words >> first;
    Route route;
    bool by_router = false;
    while (words >> word) {
        by_router |= word == "via";
        if (word == "dev")
            words >> route.device;
    }
    if (first == "local")
        route.problem = "Das ist eine Adresse dieses Rechners.";
    else if (by_router)
        route.problem = "Die Adresse gehört zu keinem Netz, an das dieser Rechner angeschlossen ist.";
    else if (!plain_address(first) || !is_interface(route.device))
        route.problem = "Diese Adresse kann kein einzelnes Gerät haben.";
    return route;
}

ShellCommand entry_command(Processes::Tools tools, const std::string &address, std::string mac,
                           const std::string &device) {
    if (tools == Processes::Tools::of_windows)
        return {"arp", {"-s", address, mac}};
    std::replace(mac.begin(), mac.end(), '-', ':');
    return {"ip", {"neigh", "replace", address, "lladdr", mac, "nud", "permanent", "dev", device}};
}

std::string text_of(const ShellCommand &command) {
    std::string text = command.program;
    for (const std::string &argument : command.arguments)
        text += " " + argument;
    return text;
}

} // namespace telvox
