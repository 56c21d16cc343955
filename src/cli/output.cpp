#include "cli/output.hpp"

#include "core/files/system_error.hpp"
#include "core/text.hpp"
#include "ports/os.hpp"

#include <algorithm>
#include <cerrno>

namespace telvox::cli {

std::string json_line(std::initializer_list<std::pair<const char *, std::string>> fields) {
    std::string line;
    for (const auto &[name, text] : fields) {
        line += (line.empty() ? "{\"" : ", \"") + std::string(name) + "\": \"";
        Characters characters(text);
        for (auto c = characters.next(); !c.empty(); c = characters.next()) {
            const char32_t point = code_point(c);
            char escape[8];
            if (point < 0x20 || (point >= 0x7F && point < 0xA0) || point == 0xFFFD)
                line.append(escape, static_cast<std::size_t>(std::snprintf(escape, sizeof escape, "\\u%04X",
                                                                           static_cast<unsigned>(point))));
            else
                line += (c == "\"" || c == "\\" ? "\\" : "") + std::string(c);
        }
        line += "\"";
    }
    return line + "}";
}

void Output::line(std::string text) {
    std::string plain; // whoever named a file, a device or a column: nothing of it steers the terminal
    for (std::size_t from = 0; from <= text.size();) {
        const std::size_t end = std::min(text.find_first_of("\r\n\t", from), text.size());
        plain += one_line(std::string_view(text).substr(from, end - from));
        plain += end < text.size() && text[end] == '\t' ? '\t' : '\n';
        from = end + 1;
    }
    errno = 0;
    note(os::print(plain, stream_));
}

std::string Output::end() {
    errno = 0;
    note(std::fclose(stream_) == 0); // some systems tell only here
    return error_ == 0 ? std::string() : german_reason(error_);
}

void Output::note(bool written) {
    if (!written && error_ == 0)
        error_ = errno != 0 ? errno : EIO;
}

void ShownLog::take(std::string_view text) {
    constexpr std::size_t longest = 65536;
    text_ += text;
    if (text_.size() > longest)
        text_.erase(0, text_.size() - longest);
    const auto whole_lines = text_.rfind('\n');
    if (at_once_ && whole_lines != std::string::npos) {
        to_.line(text_.substr(0, whole_lines));
        text_.erase(0, whole_lines + 1);
    }
}

void ShownLog::end(bool well) {
    if (text_.ends_with('\n'))
        text_.pop_back();
    if (!text_.empty() && (at_once_ || !well))
        to_.line(text_);
}

} // namespace telvox::cli
