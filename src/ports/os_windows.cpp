#include "ports/os.hpp"

#include "core/text.hpp"

#include <windows.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <io.h>
#include <shellapi.h>
#include <shlobj.h>

namespace telvox::os {

namespace {

std::string utf8(std::wstring_view wide) {
    const int from = static_cast<int>(wide.size());
    const int size = ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), from, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<std::size_t>(size), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), from, text.data(), size, nullptr, nullptr);
    return text;
}

std::wstring wide(std::string_view text, UINT code_page) {
    const int from = static_cast<int>(text.size());
    std::wstring all(text.size(), L'\0'); // no character takes fewer bytes than units
    const int size = ::MultiByteToWideChar(code_page, 0, text.data(), from, all.data(), from);
    all.resize(static_cast<std::size_t>(size));
    return all;
}

/// The name of a port without the prefix that it may be opened with: "\\.\COM12" and "com12" are "COM12".
std::string port_name(std::string device) {
    if (device.starts_with("\\\\.\\") || device.starts_with("//./"))
        device.erase(0, 4);
    std::transform(device.begin(), device.end(), device.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    return device;
}

/// A place for what a program with windows says, where the caller gave it none.
void speak_to(const char *console, DWORD handle, std::FILE *stream) {
    if (const HANDLE given = ::GetStdHandle(handle); !given || given == INVALID_HANDLE_VALUE)
        static_cast<void>(std::freopen(console, "w", stream));
}

} // namespace

std::vector<std::string> arguments(int, char **) {
    int count = 0;
    wchar_t **all = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    std::vector<std::string> texts;
    for (int i = 1; all && i < count; ++i)
        texts.push_back(utf8(all[i]));
    ::LocalFree(all);
    return texts;
}

void reserve_standard_streams() {
    if (!::AttachConsole(ATTACH_PARENT_PROCESS))
        return; // it has one, or there is none
    speak_to("CONOUT$", STD_OUTPUT_HANDLE, stdout);
    speak_to("CONOUT$", STD_ERROR_HANDLE, stderr);
}

bool print(std::string_view text, std::FILE *stream) {
    const auto console = reinterpret_cast<HANDLE>(::_get_osfhandle(::_fileno(stream)));
    if (DWORD mode = 0; !::GetConsoleMode(console, &mode)) {
        const bool taken = std::fwrite(text.data(), 1, text.size(), stream) == text.size();
        return std::fflush(stream) == 0 && taken;
    }
    // Long texts in pieces: the console takes only so much at a time.
    constexpr std::size_t piece = 8192;
    const std::wstring all = wide(text, CP_UTF8);
    for (std::size_t at = 0; at < all.size(); at += piece) {
        const std::wstring part = all.substr(at, piece);
        DWORD written = 0;
        if (!::WriteConsoleW(console, part.data(), static_cast<DWORD>(part.size()), &written, nullptr)) {
            errno = EIO;
            return false;
        }
    }
    return true;
}

bool has_display() { return true; }

bool exists(const std::string &device) {
    wchar_t target[256];
    const std::wstring name = wide(port_name(device), CP_UTF8);
    return !name.empty() &&
           (::QueryDosDeviceW(name.c_str(), target, static_cast<DWORD>(std::size(target))) != 0 ||
            ::GetLastError() == ERROR_INSUFFICIENT_BUFFER);
}

std::string real_name(const std::string &device) { return port_name(device); }

const bool ports_have_numbers = true;

int port_number(const std::string &device) {
    const std::string name = port_name(device);
    int number = 0;
    if (name.starts_with("COM"))
        std::from_chars(name.data() + 3, name.data() + name.size(), number);
    return number;
}

Refusal refusal(const std::string &) { return {}; }

std::optional<Refusal> probe(const std::string &device) {
    const std::wstring name = L"\\\\.\\" + wide(port_name(device), CP_UTF8);
    const HANDLE port =
        ::CreateFileW(name.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (port != INVALID_HANDLE_VALUE) {
        ::CloseHandle(port);
        return Refusal{};
    }
    switch (::GetLastError()) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
        return port_absent;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
        return port_busy;
    default:
        return port_unusable;
    }
}

bool claim(PortHandle) { return true; } // the system opens a port only once

bool hung_up(PortHandle port) {
    DWORD errors = 0;
    return !::ClearCommError(port, &errors, nullptr); // an adapter that was pulled out refuses everything
}

std::size_t input_waiting(PortHandle port) {
    COMSTAT status{};
    DWORD errors = 0;
    return ::ClearCommError(port, &errors, &status) ? status.cbInQue : 0;
}

std::string take_input(PortHandle port, std::size_t bytes) {
    std::string taken(bytes, '\0');
    DWORD count = 0;
    OVERLAPPED read{};
    const HANDLE done = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
    // The lowest bit keeps the end of this reading from whoever waits for those of the port.
    read.hEvent = reinterpret_cast<HANDLE>(reinterpret_cast<std::uintptr_t>(done) | 1u);
    if (::ReadFile(port, taken.data(), static_cast<DWORD>(bytes), nullptr, &read) ||
        ::GetLastError() == ERROR_IO_PENDING)
        ::GetOverlappedResult(port, &read, &count, TRUE);
    ::CloseHandle(done);
    taken.resize(count);
    return taken;
}

bool output_pending(PortHandle port) {
    COMSTAT status{};
    DWORD errors = 0;
    return ::ClearCommError(port, &errors, &status) && status.cbOutQue > 0;
}

std::filesystem::path settings_folder() {
    wchar_t *folder = nullptr;
    std::filesystem::path path;
    if (::SHGetKnownFolderPath(FOLDERID_RoamingAppData, 0, nullptr, &folder) == S_OK)
        path = folder;
    ::CoTaskMemFree(folder);
    return path;
}

bool keeps_folder_clean(const std::filesystem::path &) { return true; }

const Processes::Tools tools = Processes::Tools::of_windows;

std::vector<std::string> program_folders() {
    wchar_t folder[MAX_PATH] = {};
    ::GetSystemDirectoryW(folder, MAX_PATH);
    return {utf8(folder)};
}

std::string console_text(const std::string &bytes) {
    if (valid_utf8(bytes))
        return bytes;
    // The system's own; the one of this program is UTF-8.
    DWORD code_page = CP_OEMCP;
    ::GetLocaleInfoEx(LOCALE_NAME_SYSTEM_DEFAULT, LOCALE_IDEFAULTCODEPAGE | LOCALE_RETURN_NUMBER,
                      reinterpret_cast<wchar_t *>(&code_page), sizeof code_page / sizeof(wchar_t));
    return utf8(wide(bytes, code_page));
}

} // namespace telvox::os
