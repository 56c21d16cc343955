#pragma once

#include <algorithm>
#include <charconv>
#include <string_view>

namespace telvox::simulator {

/// Whether a value is of digits alone, at most `limit` of them. An empty one is.
[[nodiscard]] inline bool digits(std::string_view value, std::size_t limit) {
    return value.size() <= limit &&
           std::all_of(value.begin(), value.end(), [](char c) { return c >= '0' && c <= '9'; });
}

/// Whether a value is a decimal number of at most `largest`.
[[nodiscard]] inline bool number(std::string_view value, unsigned largest) {
    unsigned read = 0;
    const auto *const end = value.data() + value.size();
    return digits(value, 9) && std::from_chars(value.data(), end, read).ptr == end && !value.empty() &&
           read <= largest;
}

/// Whether a value is four numbers of at most 255 with dots between them.
[[nodiscard]] inline bool ip_address(std::string_view value) {
    for (int i = 0; i < 4; ++i) {
        const auto dot = value.find('.');
        if ((dot == std::string_view::npos) != (i == 3) || !number(value.substr(0, dot), 255))
            return false;
        value.remove_prefix(i == 3 ? value.size() : dot + 1);
    }
    return true;
}

/// Whether a value is one character of a set.
[[nodiscard]] inline bool one_of(std::string_view value, std::string_view set) {
    return value.size() == 1 && set.find(value[0]) != std::string_view::npos;
}

} // namespace telvox::simulator
