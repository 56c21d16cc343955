#include "core/files/list_files.hpp"

#include "core/files/files.hpp"
#include "core/text.hpp"

#include <algorithm>
#include <system_error>

namespace telvox {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t largest_file = 256 * 1024;
constexpr std::size_t most_lines = 5000;

/// The beginning of a file, as far as whole lines of it fit.
std::string beginning_of(const fs::path &path) {
    FileContent content = read_file(path, largest_file);
    if (!content.whole)
        content.bytes.resize(content.bytes.rfind('\n') + 1); // nothing of it, where there are no lines
    return std::move(content.bytes);
}

} // namespace

std::vector<std::string> read_lines(const fs::path &file) {
    std::string text = beginning_of(file);
    if (constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF"; text.starts_with(byte_order_mark))
        text.erase(0, byte_order_mark.size());
    if (!valid_utf8(text))
        text = from_line(text);
    std::vector<std::string> lines;
    for (std::size_t from = 0; from < text.size() && lines.size() < most_lines;) {
        const std::size_t end = std::min(text.find('\n', from), text.size());
        lines.push_back(text.substr(from, end - from));
        if (lines.back().ends_with('\r'))
            lines.back().pop_back();
        from = end + 1;
    }
    return lines;
}

std::vector<fs::path> list_folders(const fs::path &data_folder, const fs::path &program_folder) {
    return {data_folder, program_folder, program_folder.parent_path() / "share" / "telvox"};
}

fs::path find_list_file(const std::vector<fs::path> &folders, std::string_view name) {
    std::error_code error;
    for (const fs::path &folder : folders)
        if (fs::path file = folder / name; fs::is_regular_file(file, error))
            return file;
    return {};
}

} // namespace telvox
