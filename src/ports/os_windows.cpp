#include "ports/os.hpp"

#include <windows.h>

#include <algorithm>
#include <charconv>
#include <shellapi.h>

namespace telvox::os {

namespace {

std::string utf8(const wchar_t *wide) {
    const int size = ::WideCharToMultiByte(CP_UTF8, 0, wide, -1, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<std::size_t>(std::max(size, 1)), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, wide, -1, text.data(), size, nullptr, nullptr);
    text.pop_back(); // the terminator, which was counted
    return text;
}

} // namespace

std::vector<std::string> arguments(int, char **) {
    ::SetConsoleOutputCP(CP_UTF8);
    int count = 0;
    wchar_t **wide = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    std::vector<std::string> all;
    for (int i = 1; wide && i < count; ++i)
        all.push_back(utf8(wide[i]));
    ::LocalFree(wide);
    return all;
}

void reserve_standard_streams() {} // handles are no small numbers here

bool has_display() { return true; }

bool exists(const std::string &device) {
    constexpr std::string_view prefix = "\\\\.\\"; // "\\.\COM12" and "COM12" are one port
    const bool prefixed = device.starts_with(prefix);
    wchar_t target[256];
    // Port names are ASCII; whatever else stands there names none.
    const std::wstring name(device.begin() + (prefixed ? prefix.size() : 0), device.end());
    return !name.empty() &&
           ::QueryDosDeviceW(name.c_str(), target, static_cast<DWORD>(std::size(target))) != 0;
}

const bool ports_have_numbers = true;

int port_number(const std::string &device) {
    const auto name = device.rfind("COM");
    int number = 0;
    if (name != std::string::npos)
        std::from_chars(device.data() + name + 3, device.data() + device.size(), number);
    return number;
}

Refusal refusal(const std::string &) { return {}; }
bool claim(PortHandle) { return true; } // the system opens a port only once
bool hung_up(PortHandle) { return false; }

bool output_pending(PortHandle port) {
    COMSTAT status{};
    DWORD errors = 0;
    return ::ClearCommError(port, &errors, &status) && status.cbOutQue > 0;
}

const Processes::Tools tools = Processes::Tools::of_windows;

std::vector<std::string> program_folders() {
    wchar_t folder[MAX_PATH] = {};
    ::GetSystemDirectoryW(folder, MAX_PATH);
    return {utf8(folder)};
}

std::string console_text(const std::string &bytes) {
    const int size = static_cast<int>(bytes.size());
    std::wstring wide(bytes.size(), L'\0');
    wide.resize(
        static_cast<std::size_t>(::MultiByteToWideChar(CP_OEMCP, 0, bytes.data(), size, wide.data(), size)));
    return utf8(wide.c_str());
}

} // namespace telvox::os
