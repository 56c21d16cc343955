#pragma once

#include <filesystem>
#include <istream>
#include <string>
#include <string_view>

namespace telvox {

/// Writes a file as a whole or not at all: beside the target first, then moved over it; the folder is made
/// where it is missing. Returns 0 or the error number.
[[nodiscard]] int replace_file(const std::filesystem::path &target, std::string_view content);

/// A path from UTF-8 text, and the text of a path.
[[nodiscard]] std::filesystem::path path_of(std::string_view utf8);
[[nodiscard]] std::string text_of(const std::filesystem::path &path);

/// Reads a line without its end (LF or CR LF); false behind the last.
bool read_line(std::istream &stream, std::string &line);

} // namespace telvox
