#include "core/service_numbers.hpp"

#include "core/text.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

namespace telvox {

namespace {

constexpr std::size_t most_headings = 20;
constexpr std::size_t most_codes = 21;
/// A number begins behind this many characters, so that a label may hold its first character too.
constexpr std::size_t label_length = 9;

std::string number_from(const std::string &label, char first) {
    const std::size_t at = label.find(first, first_characters(label, label_length).size());
    if (at == std::string::npos)
        return {};
    return label.substr(at, label.find_last_not_of(" \t") + 1 - at);
}

/// This many characters behind a comma counted from 1.
std::string code_behind(std::string_view line, int comma, std::size_t count) {
    for (; comma > 0; --comma) {
        const std::size_t at = line.find(',');
        if (at == std::string_view::npos)
            return {};
        line.remove_prefix(at + 1);
    }
    return first_characters(line, count);
}

/// For a comparison: in small letters, and each gap one blank, because labels are padded to columns.
std::string comparable(std::string_view text) { return in_small_letters(single_spaced(text)); }

} // namespace

std::vector<ServiceNumber> parse_service_centers(const std::vector<std::string> &lines) {
    std::vector<ServiceNumber> entries;
    std::size_t headings = 0;
    for (const std::string &line : lines) {
        const bool heading = line.find('+') == std::string::npos && headings < most_headings;
        headings += heading ? 1 : 0;
        entries.push_back({.label = line, .number = number_from(line, '+'), .heading = heading});
    }
    return entries;
}

std::vector<ServiceNumber> parse_service_numbers(const std::vector<std::string> &lines) {
    std::vector<ServiceNumber> entries;
    for (const std::string &line : lines) {
        if (line.find('0') == std::string::npos)
            continue;
        const std::string label = line.substr(0, line.find(','));
        ServiceNumber entry{.label = label, .number = number_from(label, '0')};
        if (entries.size() < most_codes) {
            entry.protocol = code_behind(line, 1, 2);
            entry.protocol_ISDN = code_behind(line, 2, 2);
            entry.protocol_remote = code_behind(line, 3, 8);
        }
        entries.push_back(std::move(entry));
    }
    return entries;
}

std::string single_spaced(std::string_view text) {
    std::string words;
    for (const char c : text)
        if (c != ' ' && c != '\t')
            words += c;
        else if (!words.empty() && words.back() != ' ')
            words += ' ';
    if (words.ends_with(' '))
        words.pop_back();
    return words;
}

std::vector<ServiceNumber> entries_with(const std::vector<ServiceNumber> &entries, std::string_view text) {
    std::vector<ServiceNumber> found;
    const std::string sought = comparable(text);
    std::copy_if(entries.begin(), entries.end(), std::back_inserter(found), [&](const ServiceNumber &entry) {
        return !entry.number.empty() && comparable(entry.label).find(sought) != std::string::npos;
    });
    // A whole name is that entry, also if another's name holds it.
    const auto named = std::find_if(found.begin(), found.end(), [&](const ServiceNumber &entry) {
        return comparable(entry.label) == sought;
    });
    return named == found.end() ? found : std::vector{*named};
}

} // namespace telvox
