#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

/// Values in the devices' answers: text in, value out, nothing while it is not complete.
namespace telvox::dialogues {

/// Field strength in "+CSQ: 17,0": one or two digits up to the comma. 99 means that the device does not know
/// it.
[[nodiscard]] std::optional<int> parse_signal(std::string_view text);

/// The digit of a code; -1 where there is none.
[[nodiscard]] constexpr int code_number(char code) { return code >= '0' && code <= '9' ? code - '0' : -1; }

/// A labelled line of an answer to a read command: "PPPUSER: anna".
struct Labelled {
    std::string_view line; ///< from the label to its carriage return
    std::size_t position;  ///< of the label in the whole, counted from 1
    std::size_t value_at;  ///< of a text in the line: behind the colon and the blank after it

    [[nodiscard]] std::string_view text() const {
        return line.size() > value_at ? line.substr(value_at) : std::string_view{};
    }
    /// The character that stands this far behind the beginning of the label; a NUL behind the line's end.
    [[nodiscard]] char code(std::size_t offset) const { return offset < line.size() ? line[offset] : '\0'; }
};

/// The first line that begins with this label; in a value it is none. Nothing while its carriage return is
/// outstanding, or the "OK" that ends the answer behind it; an "OK" in the value is none.
[[nodiscard]] std::optional<Labelled> labelled(std::string_view answer, std::string_view label);

} // namespace telvox::dialogues
