#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace telvox {

/// The lines of a text file as UTF-8, without their CR LF or LF. The file is read as UTF-8 if it is valid
/// UTF-8, else as Windows-1252. Never fails: what cannot be read has no lines, and of a file that no editor
/// of lists made (above 256 KiB, or 5000 lines) what is beyond is left out.
[[nodiscard]] std::vector<std::string> read_lines(const std::filesystem::path &file);

/// The folders in which the supplied lists are looked for, in this order: the data folder, where a user's own
/// list stands before the supplied one, the program's folder, and "../share/telvox" beside it.
[[nodiscard]] std::vector<std::filesystem::path> list_folders(const std::filesystem::path &data_folder,
                                                              const std::filesystem::path &program_folder);

/// The first file of this name in the folders; empty if none has it.
[[nodiscard]] std::filesystem::path find_list_file(const std::vector<std::filesystem::path> &folders,
                                                   std::string_view name);

} // namespace telvox
