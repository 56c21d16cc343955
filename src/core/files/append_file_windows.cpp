#include "core/files/append_file.hpp"

#include <cerrno>
#include <system_error>
#include <windows.h>

namespace telvox {

namespace {

/// Why the last call failed, as an errno.
int last_error() {
    const DWORD error = ::GetLastError();
    if (error == ERROR_SHARING_VIOLATION)
        return EBUSY;
    return std::error_code(static_cast<int>(error), std::system_category()).default_error_condition().value();
}

} // namespace

AppendFile::~AppendFile() {
    if (file_)
        ::CloseHandle(file_);
}

int AppendFile::open(const std::filesystem::path &file) {
    const HANDLE handle = ::CreateFileW(file.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                        OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return last_error();
    file_ = handle;
    return 0;
}

int AppendFile::append(std::string_view record) {
    LARGE_INTEGER end{};
    if (!::SetFilePointerEx(file_, {}, &end, FILE_END))
        return last_error();
    DWORD written = 0;
    if (::WriteFile(file_, record.data(), static_cast<DWORD>(record.size()), &written, nullptr) &&
        written == record.size() && ::FlushFileBuffers(file_))
        return 0;
    const int failed = written == record.size() || ::GetLastError() != 0 ? last_error() : ENOSPC;
    static_cast<void>(cut(static_cast<std::uintmax_t>(end.QuadPart)));
    return failed;
}

int AppendFile::cut(std::uintmax_t size) {
    LARGE_INTEGER end{};
    end.QuadPart = static_cast<LONGLONG>(size);
    return ::SetFilePointerEx(file_, end, nullptr, FILE_BEGIN) && ::SetEndOfFile(file_) ? 0 : last_error();
}

} // namespace telvox
