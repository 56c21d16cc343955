#include "ports/common_options.hpp"

#include "core/files/files.hpp"
#include "core/files/list_files.hpp"
#include "core/port_choice.hpp"
#include "core/text.hpp"
#include "core/version.hpp"
#include "ports/os.hpp"

#include <QCoreApplication>
#include <algorithm>
#include <sstream>
#include <system_error>

namespace telvox {

namespace {

/// An option's value as it was given.
const std::string &checked(const std::string &name, const std::string &value) {
    if (!valid_utf8(value))
        throw UsageError(name + ": kein gültiger Text (UTF-8)");
    return value;
}

} // namespace

void take_port(const std::string &value, CommonOptions &options) {
    const auto equals = value.find('=');
    const auto number = parse_port_number(std::string_view(value).substr(0, equals));
    if (equals == std::string::npos || !number || equals + 1 == value.size())
        throw UsageError("--port erwartet N=GERÄT mit N von 1 bis 15, nicht \"" + value + "\"");
    const std::string device = value.substr(equals + 1);
    for (const auto &[taken, other] : options.ports)
        if (taken == *number || other == device)
            throw UsageError("--port " + value + ": Nummer oder Gerät ist schon vergeben");
    options.ports[*number] = device;
}

bool Arguments::next() {
    if (at_ == all_.size())
        return false;
    name_ = all_[at_++];
    attached_.reset();
    const auto equals = name_.find('=');
    if (name_.starts_with("--") && equals != std::string::npos) {
        attached_ = name_.substr(equals + 1);
        name_.resize(equals);
    }
    if (!valid_utf8(name_))
        throw UsageError("Angabe " + std::to_string(at_) + ": kein gültiger Text (UTF-8)");
    return true;
}

std::string Arguments::value() {
    if (attached_)
        return checked(name_, *attached_);
    if (at_ == all_.size() || all_[at_].starts_with("--"))
        throw UsageError(name_ + ": Wert fehlt");
    return checked(name_, all_[at_++]);
}

std::string Arguments::value_or(const char *alone) { return attached_ ? value() : alone; }

void Arguments::no_value() const {
    if (attached_)
        throw UsageError(name_ + " nimmt keinen Wert");
}

void Arguments::once() {
    if (!seen_.insert(name_).second)
        throw UsageError(name_ + " ist doppelt angegeben");
}

void Arguments::refuse() const { throw UsageError("Unbekannte Angabe \"" + name_ + "\""); }

bool take_common_option(Arguments &arguments, CommonOptions &options) {
    const std::string &name = arguments.name();
    if (name == "--port") {
        take_port(arguments.value(), options);
    } else if (name == "--datenordner") {
        arguments.once();
        options.data_folder = arguments.value();
        std::error_code error;
        if (!std::filesystem::is_directory(path_of(options.data_folder), error))
            throw UsageError("--datenordner: \"" + options.data_folder + "\" ist kein Ordner");
    } else if (name == "--simulator") {
        arguments.once();
        arguments.no_value();
        options.simulator = true;
    } else if (name == "--simulator-fall") {
        const std::string fall = arguments.value();
        options.situations.push_back(simulator::find_situation(fall));
        if (!options.situations.back())
            throw UsageError("--simulator-fall: Fall \"" + fall + "\" gibt es nicht, siehe --help");
        options.simulator = true;
    } else if (name == "--version") {
        arguments.no_value();
        options.version = true;
    } else {
        return false;
    }
    return true;
}

DataFolders data_folders(const CommonOptions &options) {
    const auto program = path_of(QCoreApplication::applicationDirPath().toStdString());
    if (const auto data = path_of(options.data_folder); !data.empty())
        return {.settings = data, .lists = list_folders(data, program)};
    return choose_data_folders(program, os::settings_folder() / "telvox", os::keeps_folder_clean(program));
}

std::string common_options_help() {
    std::string devices;
    for (int number = 1; number <= last_port; ++number)
        if (const std::string device = simulator::description_of_port(number); !device.empty())
            devices += help_line("", port_entry(number) + ": " + device);
    std::string situations;
    for (const auto &[name, purpose, begin] : simulator::situations())
        situations += help_line("", std::string(name) + ": " + std::string(purpose));
    return help_line("--port N=GERÄT", "nennt ein Gerät \"COM N\" (N von 1 bis 15); mehrfach möglich. "
                                       "Sonst vergibt das System die Nummern.") +
           help_line("--datenordner ORDNER", "Ordner von Com.ini und der Listendateien") +
           help_line("--version", "nennt die Version") +
           help_line("--simulator", "simulierte Geräte (ein mit --port genanntes geht vor):") + devices +
           help_line("--simulator-fall NAME", "wie --simulator; das GPRS-Gerät (am Kabel und im Anruf) "
                                              "zeigt einen Fall, mehrfach möglich:") +
           situations;
}

std::string version_text(std::string_view program) {
    return std::string(program) + " " + program_version + "\n";
}

std::string help_line(const std::string &option, const std::string &purpose) {
    constexpr std::size_t column = 30, width = 80;
    std::string text, line = "  " + option;
    const auto fill = [&] { line.resize(line.size() + column + 1 - std::min(length(line), column), ' '); };
    fill();
    std::istringstream words(purpose);
    for (std::string word; words >> word;) {
        const bool first = line.ends_with(' ');
        if (!first && length(line) + 1 + length(word) > width) {
            text += line + "\n";
            line.clear();
            fill();
        } else if (!first) {
            line += ' ';
        }
        line += word;
    }
    return text + line + "\n";
}

} // namespace telvox
