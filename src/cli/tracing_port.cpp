#include "cli/tracing_port.hpp"

#include "core/text.hpp"
#include "ui/form.hpp"

#include <cstdio>

namespace telvox::cli {

namespace {
constexpr std::size_t longest_line = 200; ///< noise without a line end is shown in pieces
} // namespace

std::string TracingPort::PortOpen(bool open) {
    if (!open)
        flush();
    return port_.PortOpen(open);
}

void TracingPort::Output(std::string_view bytes) {
    flush();
    std::string_view command = bytes;
    if (command.size() > 1 && command.ends_with('\r'))
        command.remove_suffix(1);
    print_("-> " + visible(command));
    port_.Output(bytes);
}

std::string TracingPort::Input() {
    std::string bytes = port_.Input();
    for (const char byte : bytes)
        received(byte);
    return bytes;
}

void TracingPort::received(char byte) {
    if (byte == '\r' || byte == '\n')
        return flush();
    line_ += byte;
    if (line_.size() == longest_line)
        flush();
}

void TracingPort::flush() {
    if (!line_.empty())
        print_("<- " + visible(line_));
    line_.clear();
}

std::string visible(std::string_view bytes) {
    std::string text;
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        const std::string character = from_line(std::string_view(&byte, 1));
        const char32_t point = code_point(character);
        // Anything else could reach the terminal as a command to itself.
        if (any_character(point)) {
            text += character;
            continue;
        }
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\x%02X", static_cast<unsigned>(code));
        text += escape;
    }
    return text;
}

} // namespace telvox::cli
