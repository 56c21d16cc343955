#include "dialogues/parsers.hpp"

#include "core/text.hpp"

#include <algorithm>
#include <charconv>

namespace telvox::dialogues {

std::optional<int> parse_signal(std::string_view text) {
    constexpr std::size_t value_at = 6;
    const std::size_t comma = text.find(',', value_at);
    if (comma == std::string_view::npos || comma == value_at || comma > value_at + 2)
        return std::nullopt;
    const std::string_view digits = text.substr(value_at, comma - value_at);
    int value = 0;
    if (!std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; }))
        return std::nullopt;
    std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return value;
}

std::optional<Labelled> labelled(std::string_view answer, std::string_view label) {
    const std::size_t start = line_beginning_with(answer, label);
    const std::size_t end = answer.find('\r', start);
    if (start == std::string_view::npos || end == std::string_view::npos ||
        answer.find("OK", end) == std::string_view::npos)
        return std::nullopt;
    return Labelled{answer.substr(start, end - start), start + 1, label.size() + 1};
}

} // namespace telvox::dialogues
