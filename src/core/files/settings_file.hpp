#pragma once

#include "core/messages.hpp"
#include "core/session.hpp"

#include <filesystem>
#include <string>
#include <vector>

namespace telvox {

/// The four settings of one serial line as the settings dialog's combo boxes show them.
struct SerialTexts {
    std::string baud;   ///< "2400"
    std::string bits;   ///< "8"
    std::string parity; ///< "even", "odd" or "none"
    std::string stop;   ///< "1"
};

/// Writes both lines' settings to `Com.ini` in the folder and takes them over into the session, where data
/// and stop bits are cut to one character. The file is replaced as a whole or not at all; if that fails, a
/// box says so with the reason and the session keeps its strings. Returns whether it was written.
bool prz_Einstellungen_speichern(Session &session, const std::filesystem::path &folder,
                                 const SerialTexts &direkt, const SerialTexts &fern, Outbox &outbox);

/// Reads `Com.ini` of the folder into the session. The file is read as comma-separated fields, label and
/// value in turn; only the parity is cut to one character. A file that is missing or ends early leaves the
/// strings not reached as they were.
void prz_Einstellungen_laden(Session &session, const std::filesystem::path &folder);

/// Where the program's files lie.
struct DataFolders {
    std::filesystem::path settings;           ///< `Com.ini`, read and written
    std::vector<std::filesystem::path> lists; ///< the list files, read: looked for in this order
};

/// Chooses them: the program's own folder if it already holds `Com.ini`, or can be written and need not be
/// kept clean; otherwise the user's configuration folder. The lists may lie there too, or where the program
/// was installed.
[[nodiscard]] DataFolders choose_data_folders(const std::filesystem::path &program_folder,
                                              const std::filesystem::path &user_folder, bool kept_clean);

} // namespace telvox
