#include "core/port_choice.hpp"

#include <algorithm>
#include <charconv>

namespace telvox {

std::string port_entry(int number) { return "COM " + std::to_string(number); }

int func_Port_Auswahl(std::string_view entry, Outbox &outbox) {
    constexpr std::size_t digits_at = 4; // behind "COM "
    int number = 0;
    if (entry.size() >= digits_at)
        std::from_chars(entry.data() + digits_at, entry.data() + entry.size(), number);
    if (number >= 1 && number <= last_port)
        return number;
    outbox.show("Fehler! Sind eventuell keine COM-Ports vorhanden?");
    return 0;
}

std::optional<int> parse_port_number(std::string_view text) {
    constexpr std::string_view prefix = "com";
    const auto same = [](char typed, char wanted) { return (typed | 0x20) == wanted; };
    if (text.size() > prefix.size() &&
        std::equal(prefix.begin(), prefix.end(), text.begin(), [&](char w, char t) { return same(t, w); }))
        text.remove_prefix(prefix.size());
    if (text.starts_with(' '))
        text.remove_prefix(1);
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size() || number < 1 || number > last_port)
        return std::nullopt;
    return number;
}

} // namespace telvox
