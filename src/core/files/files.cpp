#include "core/files/files.hpp"

#include <cerrno>
#include <fstream>

namespace telvox {

namespace fs = std::filesystem;

int replace_file(const fs::path &target, std::string_view content) {
    std::error_code error;
    fs::create_directories(target.parent_path(), error);
    const fs::path draft = fs::path(target).concat(".neu");
    errno = 0;
    std::ofstream file(draft, std::ios::binary | std::ios::trunc);
    file << content;
    file.close();
    int failed = file ? 0 : (errno != 0 ? errno : EIO);
    if (failed == 0) {
        fs::rename(draft, target, error);
        failed = error.default_error_condition().value(); // an errno on every system
    }
    if (failed != 0 && fs::is_directory(target, error))
        failed = EISDIR; // some systems only say that it is not allowed
    if (failed != 0)
        fs::remove(draft, error);
    return failed;
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
