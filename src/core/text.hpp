#pragma once

#include <string>
#include <string_view>

namespace telvox {

/// Clean-up of text for the device (UTF-8): the devices print plain letters only, so "ä" becomes "a" (the
/// bare vowel, as the devices' SMS gateways expect it), "ß" becomes "ss". Throws std::overflow_error for 255
/// characters or more.
[[nodiscard]] std::string func_Text_prüfen(std::string_view text);

/// UTF-8 to the line's code page Windows-1252, one byte per character; "?" for what it lacks.
[[nodiscard]] std::string to_line(std::string_view utf8);

/// Bytes of the line (Windows-1252) to UTF-8. Control characters are kept.
[[nodiscard]] std::string from_line(std::string_view bytes);

/// UTF-16, the low byte first, to UTF-8 up to U+FFFF; half a pair gives what is no UTF-8.
[[nodiscard]] std::string from_utf16(std::string_view bytes);

/// The characters of a text (UTF-8) one by one, each as UTF-8; a malformed byte is a character of its own.
class Characters {
  public:
    explicit Characters(std::string_view text) : rest_(text) {}
    /// Takes the next character; empty at the end.
    std::string_view next();

  private:
    std::string_view rest_;
};

/// Code point of one UTF-8 character, 0xFFFD for a malformed one.
[[nodiscard]] char32_t code_point(std::string_view character);

/// Number of characters.
[[nodiscard]] std::size_t length(std::string_view text);

/// The first `count` characters.
[[nodiscard]] std::string first_characters(std::string_view text, std::size_t count);

/// The character at a position counted from 0, empty behind the end.
[[nodiscard]] std::string character_at(std::string_view text, std::size_t position);

/// A text read as a whole number and written back: blanks are skipped, leading zeros dropped, and reading
/// stops at the first other character. All digits are kept. "0541 123" gives "541123", no digits give "0".
[[nodiscard]] std::string number_text(std::string_view text);

/// Whether the number that a text begins with is above a limit, however many digits it has. No digits are 0.
[[nodiscard]] bool number_exceeds(std::string_view text, unsigned limit);

/// Whether a text holds this line, with nothing else in it; lines end in CR or LF.
[[nodiscard]] bool has_line(std::string_view text, std::string_view line);

/// Where a text first stands at the beginning of a line; npos: nowhere.
[[nodiscard]] std::size_t line_beginning_with(std::string_view text, std::string_view beginning);
[[nodiscard]] inline bool begins_line(std::string_view text, std::string_view beginning) {
    return line_beginning_with(text, beginning) != std::string_view::npos;
}

/// Whether a text is UTF-8 throughout.
[[nodiscard]] bool valid_utf8(std::string_view text);

/// A text from outside as one line that does no harm to a terminal.
[[nodiscard]] std::string one_line(std::string_view text);

/// A text of several lines as one, with a blank where a line or several end.
[[nodiscard]] std::string joined_lines(std::string_view text);

/// A text with its letters A to Z small.
[[nodiscard]] std::string in_small_letters(std::string_view text);

} // namespace telvox
