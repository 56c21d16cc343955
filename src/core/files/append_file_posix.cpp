#include "core/files/append_file.hpp"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace telvox {

AppendFile::~AppendFile() {
    if (file_ >= 0)
        ::close(file_);
}

int AppendFile::open(const std::filesystem::path &file) {
    const bool is_new = ::access(file.c_str(), F_OK) != 0;
    // Not waiting: a pipe nobody reads would hold the program up.
    file_ = ::open(file.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0666);
    if (file_ < 0)
        return errno;
    if (::flock(file_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        return EBUSY;
    if (!is_new)
        return 0;
    const auto folder = std::filesystem::absolute(file).parent_path();
    const int entry = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    ::fsync(entry); // the new name; where a folder cannot be synced nothing more can be done
    ::close(entry);
    return 0;
}

int AppendFile::append(std::string_view record) {
    const off_t size = ::lseek(file_, 0, SEEK_END);
    int failed = size < 0 ? errno : 0;
    struct stat state {};
    if (failed == 0 && ::fstat(file_, &state) == 0 && state.st_nlink == 0)
        failed = ESTALE; // deleted, or replaced by an editor that saved it: nobody would ever read the record
    while (failed == 0 && !record.empty()) {
        const auto written = ::write(file_, record.data(), record.size());
        if (written >= 0)
            record.remove_prefix(static_cast<std::size_t>(written));
        else if (errno != EINTR)
            failed = errno;
    }
    if (failed == 0 && ::fsync(file_) != 0)
        failed = errno;
    if (failed != 0 && size >= 0)
        static_cast<void>(cut(static_cast<std::uintmax_t>(size)));
    return failed;
}

int AppendFile::cut(std::uintmax_t size) {
    return ::ftruncate(file_, static_cast<off_t>(size)) == 0 ? 0 : errno;
}

} // namespace telvox
