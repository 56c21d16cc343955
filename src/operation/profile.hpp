#pragma once

#include "operation/order.hpp"

#include <istream>
#include <map>
#include <string>

namespace telvox::operation {

/// What windows are filled in with. As text: lines "name=wert", empty ones, and those that begin with "#";
/// first the main window's, then, behind a line "[GPRS]", a dialog's.
struct Profile {
    Values main;
    std::map<const Section *, Values> dialogs;
};

/// The text of a stream or file. Throws UsageError, naming `source` or the path, for what cannot be read, is
/// no text (UTF-8), or is larger than 64 KB.
[[nodiscard]] std::string profile_of_stream(std::istream &stream, const std::string &source);
[[nodiscard]] std::string profile_of_file(const std::string &path);

/// Reads a profile's text. A dialog's name that no other dialog has may also stand before the first section;
/// for a `job` its own names may, which are among the main window's then. Throws UsageError that names source
/// and line.
[[nodiscard]] Profile parse_profile(const std::string &text, const std::string &source,
                                    const JobCommand *job = nullptr);

/// Adds what the order's job takes of a profile, its dialog's part before the main window's; what the order
/// says already stays.
void add(Order &order, const Profile &profile);

/// What the windows hold, as a profile's text: of the dialogs those that were open since the program's start,
/// of the others what `known` says of them. Fields that are locked have no line; PIN, passwords and keys have
/// one if `secrets` says so.
[[nodiscard]] std::string profile_text(Desk &desk, const Profile &known, bool secrets);

/// What the main window holds, also in fields that are locked and could be unlocked by another choice;
/// secrets too. The chosen ports are this computer's.
[[nodiscard]] Values main_window_values(Desk &desk, bool with_ports);

/// Values as a table's row of "name=wert", secrets as "***", and back.
[[nodiscard]] std::string as_row(const Values &values);
[[nodiscard]] Values values_of_row(const std::string &row);

/// What a dialog's fields hold, as `profile_text` says it.
[[nodiscard]] Values values_of(std::span<const Option> options, Desk &desk, bool secrets);

} // namespace telvox::operation
