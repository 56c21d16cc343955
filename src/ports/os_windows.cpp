#include "ports/os.hpp"

#include <QString>
#include <windows.h>

#include <charconv>
#include <shellapi.h>

namespace telvox::os {

std::vector<std::string> arguments(int, char **) {
    ::SetConsoleOutputCP(CP_UTF8);
    int count = 0;
    wchar_t **wide = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    std::vector<std::string> all;
    for (int i = 1; wide && i < count; ++i)
        all.push_back(QString::fromWCharArray(wide[i]).toStdString());
    ::LocalFree(wide);
    return all;
}

void reserve_standard_streams() {} // handles are no small numbers here

bool has_display() { return true; }

bool exists(const std::string &) { return true; }

const bool ports_have_numbers = true;

int port_number(const std::string &device) {
    const auto name = device.rfind("COM");
    int number = 0;
    if (name != std::string::npos)
        std::from_chars(device.data() + name + 3, device.data() + device.size(), number);
    return number;
}

std::string refusal(const std::string &) { return {}; }
bool claim(const QSerialPort &) { return true; } // the system opens a port only once
bool hung_up(const QSerialPort &) { return false; }

bool output_pending(const QSerialPort &port) {
    COMSTAT status{};
    DWORD errors = 0;
    return ::ClearCommError(port.handle(), &errors, &status) && status.cbOutQue > 0;
}

} // namespace telvox::os
