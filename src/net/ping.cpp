#include "net/ping.hpp"

#include <algorithm>
#include <iterator>

namespace telvox {

namespace {

/// Windows, then Linux. The begin of the German "Zeitüberschreitung" depends on the code page.
constexpr std::string_view answers[] = {"Antwort von ", "Reply from ", "Bytes von ", "bytes from "};
constexpr std::string_view time_outs[] = {"berschreitung der", "Request timed out", "keine Antwort",
                                          "no answer yet"};
constexpr std::string_view times_to_live[] = {"TTL=", "ttl="};

/// Where the first of these words in a line ends; npos without any.
template <std::size_t N> std::size_t behind(std::string_view line, const std::string_view (&words)[N]) {
    for (const std::string_view word : words)
        if (const auto at = line.find(word); at != std::string_view::npos)
            return at + word.size();
    return std::string_view::npos;
}

/// Whether an address stands alone in a text, and not as part of a longer one.
bool names(std::string_view text, std::string_view address) {
    const auto part_of_address = [&](std::size_t at) {
        return at < text.size() && ((text[at] >= '0' && text[at] <= '9') || text[at] == '.');
    };
    const auto at = text.find(address);
    return at != std::string_view::npos && !(at > 0 && part_of_address(at - 1)) &&
           !part_of_address(at + address.size());
}

bool is_answer(std::string_view line, PingRule rule, std::string_view address) {
    const auto from = behind(line, answers);
    if (from == std::string_view::npos || rule == PingRule::any_answer)
        return from != std::string_view::npos;
    // The name or address of who answers ends at the colon.
    return behind(line, times_to_live) != std::string_view::npos &&
           names(line.substr(from, line.find(':', from) - from), address);
}

} // namespace

PingResult evaluate_ping(std::string_view output, PingRule rule, std::string_view address) {
    PingResult result;
    std::vector<std::string> others;
    while (!output.empty()) {
        const auto end = output.find_first_of("\r\n");
        const std::string_view line = output.substr(0, end);
        output.remove_prefix(end == std::string_view::npos ? output.size() : end + 1);
        const bool of_interest = behind(line, answers) != std::string_view::npos ||
                                 behind(line, time_outs) != std::string_view::npos;
        result.answered |= is_answer(line, rule, address);
        if (!line.empty())
            (of_interest ? result.lines : others).emplace_back(line);
    }
    if (result.lines.empty())
        result.lines = std::move(others);
    return result;
}

} // namespace telvox
