#pragma once

#include "operation/order.hpp"

#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

namespace telvox::operation {

/// Copies of what devices had before they were written: profiles in a folder of the data folder, for the user
/// alone, since they hold passwords and keys. The newest ones of each device are kept.
struct Backup {
    static constexpr std::size_t most = 20; ///< of a device

    std::filesystem::path file;
    std::string imei; ///< "unbekannt" if the device did not tell it
    std::string time; ///< "2026-11-23 14:05:09"
    std::string what; ///< section of the profile: "GPRS"
};

[[nodiscard]] std::filesystem::path backup_folder(const DataFolders &folders);
/// Throws UsageError where no copy could be kept; the folder is made.
void check_backups(const DataFolders &folders);
/// Keeps one. Returns why that failed (German), empty if it did not.
[[nodiscard]] std::string keep_backup(const DataFolders &folders, const std::string &imei, std::time_t time,
                                      const Section &section, const Values &values);
/// Those that there are, device by device, the newest first.
[[nodiscard]] std::vector<Backup> backups(const DataFolders &folders);

} // namespace telvox::operation
