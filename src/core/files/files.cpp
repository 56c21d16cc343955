#include "core/files/files.hpp"

#include "core/files/system_error.hpp"
#include "core/usage_error.hpp"

#include <cerrno>

namespace telvox {

namespace fs = std::filesystem;

std::string whole_file(const fs::path &file, std::size_t most) {
    constexpr std::size_t kilobyte = 1024, megabyte = 1024 * kilobyte;
    FileContent content = read_file(file, most);
    const std::string name = "\"" + text_of(file) + "\"";
    switch (content.error) {
    case 0:
        break;
    case ENOENT:
    case ENOTDIR:
        throw UsageError(name + " gibt es nicht.");
    case EISDIR:
    case EEXIST:
        throw UsageError(name + " ist keine Datei.");
    case EACCES:
    case EPERM:
        throw UsageError(name + " lässt sich nicht lesen. Die Rechte dafür fehlen.");
    default:
        throw UsageError(name + " lässt sich nicht lesen. " + german_reason(content.error));
    }
    if (!content.whole)
        throw UsageError(name + " ist größer als " +
                         (most < megabyte ? std::to_string(most / kilobyte) + " KB."
                                          : std::to_string(most / megabyte) + " MB."));
    return std::move(content.bytes);
}

fs::path path_of(std::string_view utf8) { return {std::u8string(utf8.begin(), utf8.end())}; }

std::string text_of(const fs::path &path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

bool read_line(std::istream &stream, std::string &line) {
    if (!std::getline(stream, line))
        return false;
    if (line.ends_with('\r'))
        line.pop_back();
    return true;
}

} // namespace telvox
