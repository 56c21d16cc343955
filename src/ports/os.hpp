#pragma once

#include "core/network.hpp"

#include <string>
#include <vector>

/// What the operating systems do differently about serial devices, calls and their own programs.
namespace telvox::os {

/// What the system knows an open port by.
#ifdef _WIN32
using PortHandle = void *;
#else
using PortHandle = int;
#endif

/// The call's arguments behind the program's name, UTF-8.
[[nodiscard]] std::vector<std::string> arguments(int argc, char **argv);

/// Takes the places of standard streams that the caller has closed, first of all: a serial port that got one
/// would be sent what is printed. Writing to such a stream fails.
void reserve_standard_streams();

/// Whether there is something to draw windows on.
[[nodiscard]] bool has_display();

/// Whether a device is there.
[[nodiscard]] bool exists(const std::string &device);

/// Whether the system itself numbers its ports ("COM7"), and the number of such a name; 0 for other names.
extern const bool ports_have_numbers;
[[nodiscard]] int port_number(const std::string &device);

/// Why a port cannot be opened (German), as a sentence and in a few words; both empty: it can.
struct Refusal {
    std::string sentence;
    std::string in_short;
    [[nodiscard]] bool empty() const { return sentence.empty(); }
};

/// Why a device cannot be opened as a serial port by this user; empty if nothing speaks against it.
[[nodiscard]] Refusal refusal(const std::string &device);

/// Keeps every other program off the open port, also one with all rights. False if another one has it.
[[nodiscard]] bool claim(PortHandle port);

/// Whether the far end of an open port is gone. Reading does not tell it for every kind of port.
[[nodiscard]] bool hung_up(PortHandle port);

/// Whether bytes that were handed to the system are still waiting to leave the open port.
[[nodiscard]] bool output_pending(PortHandle port);

/// Whose tools for the network there are.
extern const Processes::Tools tools;

/// The folders in which the system's programs are looked for. On Windows only the system's own, or a file
/// beside this program would be run; elsewhere also those that not every user has in the path.
[[nodiscard]] std::vector<std::string> program_folders();

/// What a program of the system printed, as UTF-8.
[[nodiscard]] std::string console_text(const std::string &bytes);

} // namespace telvox::os
