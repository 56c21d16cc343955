#pragma once

#include <filesystem>
#include <istream>
#include <string>
#include <string_view>

namespace telvox {

/// Who may read a file that is written.
enum class Readers {
    as_before, ///< whoever could read the file before; of a new one whoever the system lets
    owner      ///< nobody else: it holds secrets
};

/// Writes a file as a whole or not at all, through to the disk: beside the target first, then moved over
/// it; the folder is made where it is missing. A link stays and what it leads to is replaced; rights and,
/// where the system lets the user, owner stay. What is no ordinary file, leads nowhere or is write-protected
/// is left alone. Returns 0 or the error number.
[[nodiscard]] int replace_file(const std::filesystem::path &target, std::string_view content,
                               Readers readers = Readers::as_before);

/// A text with its lines ended as in files that people open on this system: on Windows in CR LF.
[[nodiscard]] std::string with_local_ends(std::string_view text);

/// What a file holds.
struct FileContent {
    std::string bytes; ///< no more than was asked for
    bool whole = true; ///< there is no more
    int error = 0;     ///< why there is nothing: 0 or the error number; EEXIST for what is no ordinary file
};

/// The first `most` bytes of a file. Only an ordinary one is opened: a pipe would wait for bytes, and a
/// device may do something when it is.
[[nodiscard]] FileContent read_file(const std::filesystem::path &file, std::size_t most);

/// All of a file. Throws UsageError, naming the path, where it cannot be read or holds more than `most` bytes
/// (whole KB).
[[nodiscard]] std::string whole_file(const std::filesystem::path &file, std::size_t most);

/// A path from UTF-8 text, and the text of a path.
[[nodiscard]] std::filesystem::path path_of(std::string_view utf8);
[[nodiscard]] std::string text_of(const std::filesystem::path &path);

/// Reads a line without its end (LF or CR LF); false behind the last.
bool read_line(std::istream &stream, std::string &line);

} // namespace telvox
