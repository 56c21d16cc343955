#pragma once

#include "core/network.hpp"

#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
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

/// Sees to the standard streams, first of all. The places of those that the caller has closed are taken: a
/// serial port that got one would be sent what is printed. Writing to such a stream fails. On Windows a
/// program with windows speaks to the console that it was started from.
void reserve_standard_streams();

/// Writes a text (UTF-8) to a standard stream, at once; a console of Windows shows it right whatever code
/// page it has. False if not all of it could be written; `errno` says why.
[[nodiscard]] bool print(std::string_view text, std::FILE *stream);

/// Whether there is something to draw windows on.
[[nodiscard]] bool has_display();

/// Whether a device is there.
[[nodiscard]] bool exists(const std::string &device);

/// The one name of a device, for comparing: behind all links, or without the prefix that Windows allows.
/// Never opens it. The name as given where there is no such device.
[[nodiscard]] std::string real_name(const std::string &device);

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

/// Whether a port can be opened, where that is seen without the rest of what a job does with it; nothing
/// where it takes an opening as a job's.
[[nodiscard]] std::optional<Refusal> probe(const std::string &device);

/// Keeps every other program off the open port, also one with all rights. False if another one has it.
[[nodiscard]] bool claim(PortHandle port);

/// Whether the far end of an open port is gone. Reading does not tell it for every kind of port.
[[nodiscard]] bool hung_up(PortHandle port);

/// How many bytes have arrived at the open port and wait to be read, where the system's word of them can be
/// lost: some drivers of Windows, and wine, tell of none. 0 elsewhere.
[[nodiscard]] std::size_t input_waiting(PortHandle port);
/// Takes that many of them.
[[nodiscard]] std::string take_input(PortHandle port, std::size_t bytes);

/// Whether bytes that were handed to the system are still waiting to leave the open port.
[[nodiscard]] bool output_pending(PortHandle port);

/// The folder for what programs keep of a user's settings, each in one of its own.
[[nodiscard]] std::filesystem::path settings_folder();

/// Whether settings lie beside the program only where some lie there already, because it was installed: below
/// /usr only the package manager writes, and on Windows everywhere, as no program's folder is told from a
/// stick.
[[nodiscard]] bool keeps_folder_clean(const std::filesystem::path &program_folder);

/// Whose tools for the network there are.
extern const Processes::Tools tools;

/// The folders in which the system's programs are looked for. On Windows only the system's own, or a file
/// beside this program would be run; elsewhere also those that not every user has in the path.
[[nodiscard]] std::vector<std::string> program_folders();

/// What a program of the system printed, as UTF-8.
[[nodiscard]] std::string console_text(const std::string &bytes);

} // namespace telvox::os

namespace telvox {

inline const os::Refusal port_busy = {"Die Schnittstelle wird von einem anderen Programm benutzt.",
                                      "von einem anderen Programm belegt"};
inline const os::Refusal port_absent = {"Die Schnittstelle ist nicht vorhanden.", "nicht vorhanden"};
inline const os::Refusal port_unusable = {"Das Gerät lässt sich nicht als serielle Schnittstelle einrichten.",
                                          "lässt sich nicht einrichten"};
/// Of a port that was asked by a scan, which does not wait for it.
inline const os::Refusal port_silent = {"Die Schnittstelle antwortet nicht.", "antwortet nicht"};

} // namespace telvox
