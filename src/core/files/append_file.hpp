#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>

namespace telvox {

/// A file that only grows, by whole records, and is kept by this program alone while it is open. What was
/// appended is on the disk. Every function returns 0, or the value of `errno` that says why it failed.
class AppendFile {
  public:
    AppendFile() = default;
    ~AppendFile();
    AppendFile(const AppendFile &) = delete;
    AppendFile &operator=(const AppendFile &) = delete;

    /// Opens an ordinary file; if there is none it is made with a first record, or not at all. EEXIST for
    /// anything else that stands there, a link that leads nowhere included; EBUSY if another program has it
    /// open like this.
    [[nodiscard]] int open(const std::filesystem::path &file, std::string_view first_record);
    /// Appends a record; one that cannot be written whole leaves nothing behind. ESTALE if somebody has
    /// deleted or replaced the file.
    [[nodiscard]] int append(std::string_view record);
    /// Cuts the file off behind this many bytes.
    [[nodiscard]] int cut(std::uintmax_t size);

  private:
#ifdef _WIN32
    void *file_ = nullptr;
#else
    int file_ = -1;
#endif
};

} // namespace telvox
