#include "core/files/append_file.hpp"
#include "core/files/files.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <random>
#include <string>
#include <system_error>
#include <utility>
#include <windows.h>

#include <sddl.h>

namespace telvox {

namespace fs = std::filesystem;

namespace {

/// An open file.
class Handle {
  public:
    explicit Handle(HANDLE of) : of_(of == INVALID_HANDLE_VALUE ? nullptr : of) {}
    ~Handle() { close(); }
    Handle(const Handle &) = delete;
    Handle &operator=(const Handle &) = delete;
    [[nodiscard]] HANDLE get() const { return of_; }
    void close() {
        if (of_)
            ::CloseHandle(std::exchange(of_, nullptr));
    }

  private:
    HANDLE of_;
};

/// Why the last call failed, as an errno; 0 if it did not.
int failure(bool succeeded) {
    const DWORD error = succeeded ? 0 : ::GetLastError();
    if (succeeded)
        return 0;
    if (error == ERROR_SHARING_VIOLATION)
        return EBUSY;
    if (error == 0)
        return ENOSPC; // written in part
    return std::error_code(static_cast<int>(error), std::system_category()).default_error_condition().value();
}

/// Why something cannot be used as a file; 0 if it can. What is not there is no wrong kind.
int wrong_kind(const fs::path &path) {
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return 0;
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
        return EISDIR;
    return (attributes & FILE_ATTRIBUTE_DEVICE) != 0 ? EEXIST : 0;
}

/// Writes through to the disk.
int write_all(HANDLE file, std::string_view bytes) {
    DWORD written = 0;
    ::SetLastError(0);
    return failure(::WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
                   written == bytes.size() && ::FlushFileBuffers(file));
}

/// Makes a file of a name that nothing else has.
HANDLE make_draft(const fs::path &folder, Readers readers, fs::path &name) {
    SECURITY_ATTRIBUTES rights{
        .nLength = sizeof rights, .lpSecurityDescriptor = nullptr, .bInheritHandle = FALSE};
    // Owner, system and administrators; nothing of what the folder would add.
    if (readers == Readers::owner)
        ::ConvertStringSecurityDescriptorToSecurityDescriptorW(L"D:P(A;;FA;;;OW)(A;;FA;;;SY)(A;;FA;;;BA)",
                                                               SDDL_REVISION_1, &rights.lpSecurityDescriptor,
                                                               nullptr);
    std::random_device random;
    HANDLE file = INVALID_HANDLE_VALUE;
    for (int attempt = 0; attempt < 100; ++attempt) {
        name = folder / (".telvox-" + std::to_string(random()) + std::to_string(random()));
        file = ::CreateFileW(name.c_str(), GENERIC_WRITE, 0, &rights, CREATE_NEW, FILE_ATTRIBUTE_NORMAL,
                             nullptr);
        if (file != INVALID_HANDLE_VALUE || ::GetLastError() != ERROR_FILE_EXISTS)
            break;
    }
    const DWORD error = ::GetLastError();
    ::LocalFree(rights.lpSecurityDescriptor);
    ::SetLastError(error);
    return file;
}

/// Where a path leads in the end; itself, where nothing stands. Empty for a link that leads nowhere.
fs::path behind_links(const fs::path &path) {
    if (::GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES)
        return path;
    const Handle file(::CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                    nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    std::array<wchar_t, 32768> name{};
    const DWORD size =
        file.get() ? ::GetFinalPathNameByHandleW(file.get(), name.data(), static_cast<DWORD>(name.size()), 0)
                   : 0;
    return size == 0 || size >= name.size() ? fs::path() : fs::path(name.data());
}

} // namespace

std::string with_local_ends(std::string_view text) {
    std::string all;
    for (const char c : text) {
        if (c == '\n' && !all.ends_with('\r'))
            all += '\r';
        all += c;
    }
    return all;
}

int replace_file(const fs::path &target, std::string_view content, Readers readers) {
    std::error_code error;
    fs::create_directories(fs::absolute(target).parent_path(), error);
    if (error)
        return error.default_error_condition().value();
    const fs::path to = behind_links(fs::absolute(target));
    if (to.empty())
        return EEXIST;
    if (const int wrong = wrong_kind(to); wrong != 0)
        return wrong;
    const DWORD attributes = ::GetFileAttributesW(to.c_str());
    const bool exists = attributes != INVALID_FILE_ATTRIBUTES;
    if (exists && (attributes & FILE_ATTRIBUTE_READONLY) != 0)
        return EACCES;
    fs::path name;
    Handle draft(make_draft(to.parent_path(), readers, name));
    if (!draft.get())
        return failure(false);
    int failed = write_all(draft.get(), content);
    draft.close();
    // The one leaves the rights of what it replaces, the other brings its own.
    if (failed == 0 && exists && readers == Readers::as_before)
        failed = failure(::ReplaceFileW(to.c_str(), name.c_str(), nullptr, REPLACEFILE_IGNORE_MERGE_ERRORS,
                                        nullptr, nullptr) != 0);
    else if (failed == 0)
        failed = failure(
            ::MoveFileExW(name.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0);
    if (failed != 0)
        ::DeleteFileW(name.c_str());
    return failed;
}

FileContent read_file(const fs::path &file, std::size_t most) {
    FileContent content;
    content.error = wrong_kind(file);
    if (content.error != 0)
        return content;
    const Handle opened(::CreateFileW(file.c_str(), GENERIC_READ,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    content.error = failure(opened.get() != nullptr);
    if (content.error == 0 && ::GetFileType(opened.get()) != FILE_TYPE_DISK)
        content.error = EEXIST; // "CON", "COM3"
    std::array<char, 65536> part{};
    while (content.error == 0 && content.bytes.size() <= most) {
        DWORD got = 0;
        content.error = failure(
            ::ReadFile(opened.get(), part.data(), static_cast<DWORD>(part.size()), &got, nullptr) != 0);
        if (got == 0)
            break;
        content.bytes.append(part.data(), got);
    }
    content.whole = content.bytes.size() <= most;
    content.bytes.resize(content.error == 0 ? std::min(content.bytes.size(), most) : 0);
    return content;
}

AppendFile::~AppendFile() {
    if (file_)
        ::CloseHandle(file_);
}

int AppendFile::open(const fs::path &file, std::string_view first_record) {
    if (wrong_kind(file) != 0)
        return EEXIST;
    const auto opened = [&](DWORD how) {
        const HANDLE handle = ::CreateFileW(file.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ,
                                            nullptr, how, FILE_ATTRIBUTE_NORMAL, nullptr);
        file_ = handle == INVALID_HANDLE_VALUE ? nullptr : handle;
        return failure(file_ != nullptr);
    };
    int failed = opened(OPEN_EXISTING);
    if (failed != ENOENT)
        return failed;
    failed = opened(CREATE_NEW); // does not follow a link
    if (failed != 0)
        return failed;
    failed = append(first_record);
    if (failed != 0) {
        ::CloseHandle(std::exchange(file_, nullptr));
        ::DeleteFileW(file.c_str());
    }
    return failed;
}

int AppendFile::append(std::string_view record) {
    LARGE_INTEGER end{};
    if (!::SetFilePointerEx(file_, {}, &end, FILE_END))
        return failure(false);
    const int failed = write_all(file_, record);
    if (failed != 0)
        static_cast<void>(cut(static_cast<std::uintmax_t>(end.QuadPart)));
    return failed;
}

int AppendFile::cut(std::uintmax_t size) {
    LARGE_INTEGER end{};
    end.QuadPart = static_cast<LONGLONG>(size);
    return failure(::SetFilePointerEx(file_, end, nullptr, FILE_BEGIN) && ::SetEndOfFile(file_));
}

} // namespace telvox
