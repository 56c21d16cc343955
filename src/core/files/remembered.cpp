#include "core/files/remembered.hpp"

#include "core/files/files.hpp"
#include "core/files/list_files.hpp"

#include <algorithm>

namespace telvox {

namespace {

constexpr const char *file_name = "Fenster.ini";
constexpr const char *protocol_on = "protokoll=ein";
constexpr const char *protocol_off = "protokoll=aus";
constexpr std::string_view profile = "profil=";
/// No system has longer paths.
constexpr std::size_t longest_path = 4096;

/// A path that can stand in a line.
bool fits(std::string_view path) {
    const auto control = [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; };
    return !path.empty() && path.size() <= longest_path && std::none_of(path.begin(), path.end(), control);
}

} // namespace

Remembered read_remembered(const std::filesystem::path &folder) {
    Remembered remembered;
    for (const std::string &line : read_lines(folder / file_name)) {
        if (line == protocol_on || line == protocol_off)
            remembered.protocol = line == protocol_on;
        else if (line.starts_with(profile) && fits(line.substr(profile.size())) &&
                 remembered.profiles.size() < Remembered::most_profiles)
            remembered.profiles.push_back(line.substr(profile.size()));
    }
    return remembered;
}

void write_remembered(const std::filesystem::path &folder, const Remembered &remembered) {
    std::string text = std::string(remembered.protocol ? protocol_on : protocol_off) + "\n";
    std::size_t room = Remembered::most_profiles;
    for (const std::string &path : remembered.profiles)
        if (fits(path) && room-- > 0)
            text += std::string(profile) + path + "\n";
    static_cast<void>(replace_file(folder / file_name, text));
}

} // namespace telvox
