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
        flush(true);
    return port_.PortOpen(open);
}

void TracingPort::Output(std::string_view bytes) {
    const std::string shown = mask_.sent(bytes);
    if (!mask_.typing())
        flush(false);
    std::string_view command = shown;
    if (command.size() > 1 && command.ends_with('\r'))
        command.remove_suffix(1);
    if (!shown.empty())
        show(now_(), "->", command);
    port_.Output(bytes);
}

std::string TracingPort::Input() {
    std::string bytes = port_.Input();
    for (const char byte : bytes)
        received(byte);
    return bytes;
}

void TracingPort::received(char byte) {
    const std::string shown = mask_.received(byte);
    if (byte == '\r' || byte == '\n')
        return flush(true);
    if (line_.empty())
        began_ = now_();
    line_ += shown;
    if (line_.size() >= longest_line)
        flush(false);
}

void TracingPort::flush(bool line_ended) {
    const std::string shown = mask_.line(line_);
    if (!line_.empty())
        show(began_, "<-", rest_is_secret_ ? Mask::hidden : shown);
    rest_is_secret_ = !line_ended && (rest_is_secret_ || shown.ends_with(Mask::hidden));
    line_.clear();
}

void TracingPort::show(milliseconds at, const char *direction, std::string_view bytes) {
    print_(std::to_string(at.count()) + " " + direction + " " + visible(bytes));
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
