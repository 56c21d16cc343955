#include "operation/backups.hpp"

#include "core/files/files.hpp"
#include "core/files/system_error.hpp"
#include "core/lists/result_file.hpp"
#include "core/usage_error.hpp"
#include "operation/profile.hpp"

#include <algorithm>
#include <tuple>

namespace telvox::operation {

namespace fs = std::filesystem;

namespace {

constexpr const char *suffix = ".telvox";

std::string cannot(int error) {
    return "Die Sicherung der alten Einstellungen lässt sich nicht schreiben. " + german_reason(error);
}

/// "356938035643809_2026-11-23_14-05-09_GPRS.telvox"
std::string file_name(const std::string &imei, std::string time, const Section &section) {
    std::replace(time.begin(), time.end(), ' ', '_');
    std::replace(time.begin(), time.end(), ':', '-');
    return imei + "_" + time + "_" + section.name + suffix;
}

/// What a name says; another file's is none.
bool read_name(Backup &backup) {
    constexpr std::size_t time_size = 19, day_size = 10;
    const std::string name = text_of(backup.file.stem());
    const auto first = name.find('_'), behind = first + 1 + time_size;
    if (backup.file.extension() != suffix || first == std::string::npos || name.size() < behind + 2 ||
        name[behind] != '_')
        return false;
    backup.imei = name.substr(0, first);
    backup.time = name.substr(first + 1, time_size);
    backup.time[day_size] = ' ';
    std::replace(backup.time.begin() + day_size, backup.time.end(), '-', ':');
    backup.what = name.substr(behind + 1);
    return true;
}

} // namespace

fs::path backup_folder(const DataFolders &folders) { return folders.settings / "sicherungen"; }

void check_backups(const DataFolders &folders) {
    const fs::path folder = backup_folder(folders), trial = folder / "versuch";
    std::error_code error;
    fs::create_directories(folder, error);
    if (error)
        throw UsageError(cannot(error.value()));
    fs::permissions(folder, fs::perms::owner_all, error); // the copies hold passwords
    if (const int failed = replace_file(trial, ""); failed != 0)
        throw UsageError(cannot(failed));
    fs::remove(trial, error);
}

std::string keep_backup(const DataFolders &folders, const std::string &imei, std::time_t time,
                        const Section &section, const Values &values) {
    const std::string device = imei.empty() ? "unbekannt" : imei, when = local_time(time);
    std::string text = "# Telvox-A Profil\n# Sicherung vom " + when + ", IMEI " + device + "\ntyp=gprs\n\n[" +
                       section.name + "]\n";
    for (const auto &[name, given] : values)
        text += name + "=" + given.value + "\n";
    if (const int error = replace_file(backup_folder(folders) / file_name(device, when, section),
                                       with_local_ends(text), Readers::owner);
        error != 0)
        return cannot(error);
    std::size_t kept = 0;
    std::error_code ignored;
    for (const Backup &backup : backups(folders))
        if (backup.imei == device && ++kept > Backup::most)
            fs::remove(backup.file, ignored);
    return {};
}

std::vector<Backup> backups(const DataFolders &folders) {
    std::vector<Backup> all;
    std::error_code error;
    for (const fs::directory_entry &entry : fs::directory_iterator(backup_folder(folders), error))
        if (Backup backup{.file = entry.path(), .imei = {}, .time = {}, .what = {}}; read_name(backup))
            all.push_back(backup);
    std::sort(all.begin(), all.end(), [](const Backup &one, const Backup &other) {
        return std::tie(one.imei, other.time, one.what) < std::tie(other.imei, one.time, other.what);
    });
    return all;
}

} // namespace telvox::operation
