#include "core/files/append_file.hpp"
#include "core/files/files.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <random>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace telvox {

namespace fs = std::filesystem;

namespace {

/// An open file or folder.
class Handle {
  public:
    explicit Handle(int of) : of_(of) {}
    ~Handle() { static_cast<void>(close()); }
    Handle(const Handle &) = delete;
    Handle &operator=(const Handle &) = delete;
    [[nodiscard]] int get() const { return of_; }
    int close() { return of_ < 0 ? 0 : ::close(std::exchange(of_, -1)); }

  private:
    int of_;
};

/// Why the last call failed; 0 if it did not.
int failure(bool succeeded) { return succeeded ? 0 : errno != 0 ? errno : EIO; }

/// Why something cannot be used as a file; 0 if it can.
int wrong_kind(const struct stat &state) {
    return S_ISREG(state.st_mode) ? 0 : S_ISDIR(state.st_mode) ? EISDIR : EEXIST;
}

int write_all(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const auto written = ::write(file, bytes.data(), bytes.size());
        if (written >= 0)
            bytes.remove_prefix(static_cast<std::size_t>(written));
        else if (errno != EINTR)
            return errno;
    }
    return failure(::fsync(file) == 0);
}

fs::path folder_of(const fs::path &file) { return fs::absolute(file).parent_path(); }

/// Makes a file of a name that nothing else has; -1 if that is not possible.
int make_draft(int folder, mode_t rights, std::string &name) {
    std::random_device random;
    for (int attempt = 0; attempt < 100; ++attempt) {
        name = ".telvox-" + std::to_string(random()) + std::to_string(random());
        const int file = ::openat(folder, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, rights);
        if (file >= 0 || errno != EEXIST)
            return file;
    }
    return -1;
}

/// Gives a file the owner and the rights of another, as far as the user may.
int take_over(int file, const struct stat &other) {
    if (::fchown(file, other.st_uid, other.st_gid) != 0)
        static_cast<void>(::fchown(file, static_cast<uid_t>(-1), other.st_gid));
    return failure(::fchmod(file, other.st_mode & 0777) == 0);
}

/// Replaces what is no link.
int replace(const fs::path &target, std::string_view content, Readers readers) {
    const Handle folder(::open(folder_of(target).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.get() < 0)
        return errno;
    const std::string to = target.filename();
    struct stat old {};
    const bool exists = ::fstatat(folder.get(), to.c_str(), &old, AT_SYMLINK_NOFOLLOW) == 0;
    if (!exists && errno != ENOENT)
        return errno;
    if (const int wrong = exists ? wrong_kind(old) : 0; wrong != 0)
        return wrong;
    if (exists && ::faccessat(folder.get(), to.c_str(), W_OK, AT_EACCESS) != 0)
        return errno; // moving over it would pay no heed to that
    std::string name;
    const bool keeps_rights = exists && readers == Readers::as_before;
    Handle draft(make_draft(folder.get(), exists || readers == Readers::owner ? 0600 : 0666, name));
    if (draft.get() < 0)
        return errno;
    int failed = keeps_rights ? take_over(draft.get(), old) : 0;
    if (failed == 0)
        failed = write_all(draft.get(), content);
    if (failed == 0)
        failed = failure(draft.close() == 0); // some systems tell only here
    if (failed == 0)
        failed = failure(::renameat(folder.get(), name.c_str(), folder.get(), to.c_str()) == 0);
    if (failed != 0)
        ::unlinkat(folder.get(), name.c_str(), 0);
    else
        ::fsync(folder.get()); // the new name; where a folder cannot be synced nothing more can be done
    return failed;
}

} // namespace

std::string with_local_ends(std::string_view text) { return std::string(text); }

int replace_file(const fs::path &target, std::string_view content, Readers readers) {
    std::error_code error;
    fs::create_directories(folder_of(target), error);
    if (error)
        return error.value();
    if (!fs::is_symlink(target, error))
        return replace(target, content, readers);
    const fs::path real = fs::canonical(target, error);
    if (error) // what it leads to may be anywhere, and nobody has asked for a file there
        return error.value() == ENOENT ? EEXIST : error.value();
    return replace(real, content, readers);
}

FileContent read_file(const fs::path &file, std::size_t most) {
    FileContent content;
    struct stat state {};
    content.error = failure(::stat(file.c_str(), &state) == 0);
    if (content.error == 0)
        content.error = wrong_kind(state);
    if (content.error != 0)
        return content;
    const Handle opened(::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    content.error = failure(opened.get() >= 0 && ::fstat(opened.get(), &state) == 0);
    if (content.error == 0)
        content.error = wrong_kind(state); // it may be another one by now
    std::array<char, 65536> part{};
    while (content.error == 0 && content.bytes.size() <= most) {
        const auto got = ::read(opened.get(), part.data(), part.size());
        if (got == 0)
            break;
        if (got > 0)
            content.bytes.append(part.data(), static_cast<std::size_t>(got));
        else if (errno != EINTR)
            content.error = errno;
    }
    content.whole = content.bytes.size() <= most;
    content.bytes.resize(content.error == 0 ? std::min(content.bytes.size(), most) : 0);
    return content;
}

AppendFile::~AppendFile() {
    if (file_ >= 0)
        ::close(file_);
}

int AppendFile::open(const fs::path &file, std::string_view first_record) {
    // Not waiting: a pipe nobody reads would hold the program up. A new one never through a link.
    constexpr int way = O_WRONLY | O_APPEND | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    struct stat state {};
    if (::stat(file.c_str(), &state) == 0 && wrong_kind(state) != 0)
        return EEXIST;
    file_ = ::open(file.c_str(), way);
    const bool is_new = file_ < 0 && errno == ENOENT;
    if (is_new)
        file_ = ::open(file.c_str(), way | O_CREAT | O_EXCL, 0666);
    if (file_ < 0)
        return errno;
    if (::flock(file_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        return EBUSY;
    if (!is_new)
        return 0;
    const int failed = append(first_record);
    if (failed != 0)
        ::unlink(file.c_str());
    const Handle folder(::open(folder_of(file).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    ::fsync(folder.get());
    return failed;
}

int AppendFile::append(std::string_view record) {
    const off_t size = ::lseek(file_, 0, SEEK_END);
    int failed = failure(size >= 0);
    struct stat state {};
    if (failed == 0 && ::fstat(file_, &state) == 0 && state.st_nlink == 0)
        failed = ESTALE; // deleted, or replaced by an editor that saved it: nobody would ever read the record
    if (failed == 0)
        failed = write_all(file_, record);
    if (failed != 0 && size >= 0)
        static_cast<void>(cut(static_cast<std::uintmax_t>(size)));
    return failed;
}

int AppendFile::cut(std::uintmax_t size) {
    return failure(::ftruncate(file_, static_cast<off_t>(size)) == 0);
}

} // namespace telvox
