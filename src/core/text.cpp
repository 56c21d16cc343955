#include "core/text.hpp"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace telvox {

namespace {

constexpr char32_t unknown = 0xFFFD;

/// Code points of the bytes 0x80 to 0x9F; 0 where the code page has no character.
constexpr std::array<char32_t, 32> upper_controls = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

struct Replacement {
    std::string_view from;
    std::string_view to;
};
constexpr std::array<Replacement, 7> plain_letters = {
    {{"ä", "a"}, {"ö", "o"}, {"ü", "u"}, {"Ä", "A"}, {"Ö", "O"}, {"Ü", "U"}, {"ß", "ss"}}};

void append_utf8(std::string &text, char32_t point) {
    const auto byte = [&text](char32_t value) { text.push_back(static_cast<char>(value)); };
    if (point < 0x80) {
        byte(point);
    } else if (point < 0x800) {
        byte(0xC0 | (point >> 6));
        byte(0x80 | (point & 0x3F));
    } else {
        byte(0xE0 | (point >> 12));
        byte(0x80 | ((point >> 6) & 0x3F));
        byte(0x80 | (point & 0x3F));
    }
}

} // namespace

std::string_view Characters::next() {
    if (rest_.empty())
        return {};
    const auto at = [this](std::size_t i) { return static_cast<unsigned char>(rest_[i]); };
    const unsigned char lead = at(0);
    std::size_t size = lead >= 0xF0 && lead < 0xF5 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC2 ? 2 : 1;
    if (lead >= 0xF5 || size > rest_.size())
        size = 1;
    // What a shorter form could say, half a surrogate pair, and what lies behind the last code point.
    if (size > 2 && ((lead == 0xE0 && at(1) < 0xA0) || (lead == 0xED && at(1) >= 0xA0) ||
                     (lead == 0xF0 && at(1) < 0x90) || (lead == 0xF4 && at(1) >= 0x90)))
        size = 1;
    for (std::size_t i = 1; i < size; ++i)
        if ((at(i) & 0xC0) != 0x80)
            size = 1;
    const std::string_view character = rest_.substr(0, size);
    rest_.remove_prefix(size);
    return character;
}

char32_t code_point(std::string_view character) {
    const auto at = [&](std::size_t i) {
        return static_cast<char32_t>(static_cast<unsigned char>(character[i]));
    };
    switch (character.size()) {
    case 1:
        return at(0) < 0x80 ? at(0) : unknown;
    case 2:
        return (at(0) & 0x1F) << 6 | (at(1) & 0x3F);
    case 3:
        return (at(0) & 0x0F) << 12 | (at(1) & 0x3F) << 6 | (at(2) & 0x3F);
    case 4:
        return (at(0) & 0x07) << 18 | (at(1) & 0x3F) << 12 | (at(2) & 0x3F) << 6 | (at(3) & 0x3F);
    default:
        return unknown;
    }
}

std::size_t length(std::string_view text) {
    std::size_t count = 0;
    for (Characters characters(text); !characters.next().empty();)
        ++count;
    return count;
}

std::string first_characters(std::string_view text, std::size_t count) {
    std::string first;
    Characters characters(text);
    for (; count > 0; --count)
        first += characters.next();
    return first;
}

std::string character_at(std::string_view text, std::size_t position) {
    Characters characters(text);
    for (; position > 0; --position)
        characters.next();
    return std::string(characters.next());
}

std::string func_Text_prüfen(std::string_view text) {
    // The devices' firmware tools count in bytes; a longer text must not be cut silently.
    if (length(text) >= 255)
        throw std::overflow_error("Text mit 255 oder mehr Zeichen");
    std::string plain;
    Characters characters(text);
    for (auto character = characters.next(); !character.empty(); character = characters.next()) {
        const auto *row = std::find_if(plain_letters.begin(), plain_letters.end(),
                                       [&](const Replacement &r) { return r.from == character; });
        plain += row != plain_letters.end() ? row->to : character;
    }
    return plain;
}

std::string to_line(std::string_view utf8) {
    std::string bytes;
    Characters characters(utf8);
    for (auto character = characters.next(); !character.empty(); character = characters.next()) {
        const char32_t point = code_point(character);
        if (point < 0x80 || (point >= 0xA0 && point <= 0xFF)) {
            bytes.push_back(static_cast<char>(point));
            continue;
        }
        const auto *at = std::find(upper_controls.begin(), upper_controls.end(), point);
        bytes.push_back(at != upper_controls.end() ? static_cast<char>(0x80 + (at - upper_controls.begin()))
                                                   : '?');
    }
    return bytes;
}

std::string from_utf16(std::string_view bytes) {
    const auto at = [bytes](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    std::string utf8;
    for (std::size_t i = 1; i < bytes.size(); i += 2)
        append_utf8(utf8, static_cast<char32_t>(at(i) << 8 | at(i - 1)));
    return utf8;
}

std::string from_line(std::string_view bytes) {
    std::string utf8;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        const char32_t point = byte >= 0x80 && byte < 0xA0 ? upper_controls[byte - 0x80u] : char32_t{byte};
        append_utf8(utf8, point != 0 || byte == 0 ? point : unknown);
    }
    return utf8;
}

std::string number_text(std::string_view text) {
    std::string digits;
    for (const char c : text) {
        if (c == ' ')
            continue;
        if (c < '0' || c > '9')
            break;
        if (!(digits.empty() && c == '0'))
            digits.push_back(c);
    }
    return digits.empty() ? "0" : digits;
}

bool number_exceeds(std::string_view text, unsigned limit) {
    unsigned long long value = 0;
    for (const char c : text) {
        if (c < '0' || c > '9' || value > limit)
            break;
        value = 10 * value + static_cast<unsigned long long>(c - '0');
    }
    return value > limit;
}

std::size_t line_beginning_with(std::string_view text, std::string_view beginning) {
    auto at = text.find(beginning);
    while (at != std::string_view::npos && at != 0 && text[at - 1] != '\r' && text[at - 1] != '\n')
        at = text.find(beginning, at + 1);
    return at;
}

bool has_line(std::string_view text, std::string_view line) {
    for (std::size_t at = text.find(line); at != std::string_view::npos; at = text.find(line, at + 1)) {
        const std::size_t behind = at + line.size();
        const auto ends = [](char c) { return c == '\r' || c == '\n'; };
        if ((at == 0 || ends(text[at - 1])) && (behind == text.size() || ends(text[behind])))
            return true;
    }
    return false;
}

bool valid_utf8(std::string_view text) {
    constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000}; // by the number of bytes
    Characters characters(text);
    for (auto c = characters.next(); !c.empty(); c = characters.next()) {
        const char32_t point = code_point(c);
        const bool malformed = c.size() == 1 && point >= 0x80;
        const bool surrogate = point >= 0xD800 && point < 0xE000;
        if (malformed || surrogate || point < smallest[c.size()] || point > 0x10FFFF)
            return false;
    }
    return true;
}

std::string one_line(std::string_view text) {
    std::string line;
    Characters characters(text);
    for (auto c = characters.next(); !c.empty(); c = characters.next()) {
        const char32_t point = code_point(c);
        const bool control = point < 0x20 || (point >= 0x7F && point < 0xA0);
        line += control || point == 0xFFFD ? "?" : c;
    }
    return line;
}

std::string joined_lines(std::string_view text) {
    std::string joined;
    for (const char c : text)
        if (c != '\r' && c != '\n')
            joined += c;
        else if (!joined.ends_with(' '))
            joined += ' ';
    return joined;
}

std::string in_small_letters(std::string_view text) {
    std::string small(text);
    std::transform(small.begin(), small.end(), small.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return small;
}

} // namespace telvox
