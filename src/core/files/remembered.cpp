#include "core/files/remembered.hpp"

#include "core/files/files.hpp"
#include "core/files/list_files.hpp"

#include <algorithm>

namespace telvox {

namespace {

constexpr const char *file_name = "Fenster.ini";
constexpr std::string_view profile = "profil=";
constexpr std::string_view on = "ein", off = "aus";

struct Flag {
    std::string_view name;
    bool Remembered::*value;
};
constexpr Flag flags[] = {{"protokoll=", &Remembered::protocol},
                          {"verlauf=", &Remembered::history},
                          {"wie-zuletzt=", &Remembered::as_left}};
struct Text {
    std::string_view name;
    std::string Remembered::*value;
};
constexpr Text texts[] = {{"ausgefuehrt-von=", &Remembered::done_by},
                          {"ort=", &Remembered::place},
                          {"zuletzt-typ=", &Remembered::variant},
                          {"zuletzt-verbindung=", &Remembered::way},
                          {"zuletzt-schnittstelle=", &Remembered::cable_port},
                          {"zuletzt-modemanschluss=", &Remembered::modem_port},
                          {"zuletzt-fenster=", &Remembered::geometry},
                          {"zuletzt-profil=", &Remembered::profile}};
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
        const std::string value = line.substr(line.find('=') + 1);
        for (const auto &[name, flag] : flags)
            if (line.starts_with(name) && (value == on || value == off))
                remembered.*flag = value == on;
        for (const auto &[name, text] : texts)
            if (line.starts_with(name) && fits(value))
                remembered.*text = value;
        if (line.starts_with(profile) && fits(value) &&
            remembered.profiles.size() < Remembered::most_profiles)
            remembered.profiles.push_back(value);
    }
    return remembered;
}

void write_remembered(const std::filesystem::path &folder, const Remembered &remembered) {
    std::string content;
    for (const auto &[name, flag] : flags)
        content.append(name).append(remembered.*flag ? on : off).append("\n");
    for (const auto &[name, text] : texts)
        if (fits(remembered.*text))
            content.append(name).append(remembered.*text).append("\n");
    std::size_t room = Remembered::most_profiles;
    for (const std::string &path : remembered.profiles)
        if (fits(path) && room-- > 0)
            content.append(profile).append(path).append("\n");
    static_cast<void>(replace_file(folder / file_name, content));
}

void remember(const std::filesystem::path &folder, Remembered &own,
              const std::function<void(Remembered &)> &change) {
    change(own);
    std::error_code error;
    if (!std::filesystem::exists(folder / file_name, error))
        return write_remembered(folder, own);
    Remembered all = read_remembered(folder);
    change(all);
    write_remembered(folder, all);
}

} // namespace telvox
