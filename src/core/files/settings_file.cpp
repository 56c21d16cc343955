#include "core/files/settings_file.hpp"

#include "core/files/append_file.hpp"
#include "core/files/files.hpp"
#include "core/files/list_files.hpp"
#include "core/files/system_error.hpp"

#include <array>
#include <iterator>
#include <optional>
#include <sstream>
#include <vector>

namespace telvox {

namespace fs = std::filesystem;

namespace {

constexpr const char *file_name = "Com.ini";
/// The file has eleven short lines; whatever is longer was not written by this program.
constexpr std::size_t largest_file = 65536;

std::string section(const char *heading, const SerialTexts &texts) {
    return std::string(heading) + "\r\nBaudrate, " + texts.baud + "\r\nBitzahl, " + texts.bits +
           "\r\nParity, " + texts.parity + "\r\nStoppbits, " + texts.stop + "\r\n";
}

std::string settings_text(const SerialTexts &texts) {
    return texts.baud + "," + texts.parity.substr(0, 1) + "," + texts.bits.substr(0, 1) + "," +
           texts.stop.substr(0, 1);
}

/// The fields of a text: each line split at its commas, blanks before a field skipped.
std::vector<std::string> fields_of(const std::string &text) {
    std::vector<std::string> fields;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (line.ends_with('\r'))
            line.pop_back();
        for (std::size_t from = 0, comma = 0; comma != std::string::npos; from = comma + 1) {
            comma = line.find(',', from);
            const std::string field = line.substr(from, comma == std::string::npos ? comma : comma - from);
            fields.push_back(field.substr(std::min(field.find_first_not_of(' '), field.size())));
        }
    }
    return fields;
}

} // namespace

bool prz_Einstellungen_speichern(Session &session, const fs::path &folder, const SerialTexts &direkt,
                                 const SerialTexts &fern, Outbox &outbox) {
    const std::string content = section("Schnittstellenparameter Direktverbindung", direkt) + "\r\n" +
                                section("Schnittstellenparameter Modemverbindung", fern);
    if (const int error = replace_file(folder / file_name, content); error != 0) {
        outbox.show("Die Einstellungen konnten nicht gespeichert werden.\r" + german_reason(error));
        return false;
    }
    session.strCOMparameter_direkt = settings_text(direkt);
    session.strCOMparameter_fern = settings_text(fern);
    return true;
}

void prz_Einstellungen_laden(Session &session, const fs::path &folder) {
    const std::vector<std::string> fields = fields_of(read_file(folder / file_name, largest_file).bytes);

    std::size_t at = 1; // behind the first heading
    const auto read_section = [&]() -> std::optional<std::string> {
        if (fields.size() < at + 8)
            return std::nullopt;
        const auto value = [&](std::size_t pair) { return fields[at + 2 * pair + 1]; };
        const std::string settings = value(0) + "," + value(2).substr(0, 1) + "," + value(1) + "," + value(3);
        at += 8;
        return settings;
    };
    if (const auto direkt = read_section()) {
        session.strCOMparameter_direkt = *direkt;
        at += 2; // the empty line and the second heading
        if (const auto fern = read_section())
            session.strCOMparameter_fern = *fern;
    }
}

DataFolders choose_data_folders(const fs::path &program_folder, const fs::path &user_folder,
                                bool kept_clean) {
    std::error_code error;
    const DataFolders beside_the_program{program_folder, list_folders(program_folder, program_folder)};
    if (fs::exists(program_folder / file_name, error))
        return beside_the_program;
    // Whether a folder can be written is only certain once something was written.
    const fs::path probe = program_folder / ".telvox-schreibprobe";
    const bool writable = !kept_clean && AppendFile().open(probe, "") == 0;
    fs::remove(probe, error);
    if (writable)
        return beside_the_program;
    return {user_folder, list_folders(user_folder, program_folder)};
}

} // namespace telvox
