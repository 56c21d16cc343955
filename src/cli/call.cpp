#include "cli/call.hpp"

#include "core/system_error.hpp"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>

namespace telvox::cli {

namespace {

/// A file of values is some lines; whatever is longer was not meant.
constexpr std::size_t largest_file = 65536;

/// An option of another job is refused, one that the job cannot do without is missed.
void check_options(const Call &call) {
    for (const auto &[name, given] : call.values)
        if (!find_option(*call.job, name))
            throw UsageError(name + (name == "--port" ? " erwartet N=GERÄT; ein TCP-Port" : "") +
                             " gehört nur zu " + jobs_with(name));
    if (!call.file.empty())
        return;
    const auto require = [&](const char *name) {
        if (!call.find(name))
            throw UsageError(std::string(call.job->name) + ": " + name + " fehlt");
    };
    for (const Option &option : call.job->options)
        if (option.required)
            require(option.name);
    if (call.job->also_needs)
        require(call.job->also_needs);
}

/// "--port N=GERÄT" names a device to every job; without "=" it is a value like others, the TCP port.
void take_any_port(Arguments &arguments, Call &call) {
    const std::string value = arguments.value();
    if (value.find('=') != std::string::npos)
        return take_port(value, call.common);
    arguments.once();
    call.values["--port"] = {value, "--port"};
}

/// One line without its end; false behind the last.
bool read_line(std::istream &stream, std::string &line) {
    if (!std::getline(stream, line))
        return false;
    if (line.ends_with('\r'))
        line.pop_back();
    return true;
}

std::string whole_text(std::istream &stream, const std::string &name) {
    std::string text(largest_file + 1, '\0');
    stream.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(stream.gcount()));
    if (stream.bad())
        throw UsageError("--aus: \"" + name + "\" lässt sich nicht lesen");
    if (text.size() > largest_file)
        throw UsageError("--aus: \"" + name + "\" ist größer als 64 KB");
    return text;
}

std::string file_text(const std::string &name) {
    const std::filesystem::path path(std::u8string(name.begin(), name.end()));
    std::error_code error;
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    if (!file && errno == ENOENT)
        throw UsageError("--aus: \"" + name + "\" gibt es nicht");
    if (!file || std::filesystem::is_directory(path, error))
        throw UsageError("--aus: \"" + name + "\" lässt sich nicht lesen. " +
                         german_reason(file ? EISDIR : errno));
    return whole_text(file, name);
}

void take_lines(Call &call, std::string text, const std::string &source) {
    if (text.starts_with("\xEF\xBB\xBF"))
        text.erase(0, 3);
    if (text.find('\0') != std::string::npos || !valid_utf8(text))
        throw UsageError("--aus: " + source + " ist kein Text (UTF-8)");
    std::istringstream lines(text);
    Values values;
    std::string line;
    for (int number = 1; read_line(lines, line); ++number) {
        if (line.empty() || line.starts_with('#'))
            continue;
        const auto equals = line.find('=');
        const std::string name = line.substr(0, equals);
        const std::string from = source + ", Zeile " + std::to_string(number) + ": ";
        if (equals == std::string::npos)
            throw UsageError(from + "\"" + line + "\" hat nicht die Form name=wert");
        if (!find_option(*call.job, "--" + name))
            throw UsageError(from + "\"" + name + "\" ist keine Angabe von " + call.job->name);
        if (!values.emplace("--" + name, Given{line.substr(equals + 1), from + name}).second)
            throw UsageError(from + name + " ist doppelt angegeben");
    }
    call.values.merge(values); // what the call itself gives stays
}

} // namespace

Call parse_call(const std::vector<std::string> &all) {
    Call call;
    Arguments arguments(all);
    while (arguments.next()) {
        const std::string name = arguments.name();
        const auto flag = [&](bool &of) {
            arguments.once();
            arguments.no_value();
            of = true;
        };
        if (name == "--help" || name == "-h") {
            call.help = true;
        } else if (name == "--vorschlaege") {
            flag(call.completion);
        } else if (name == "--mitschnitt") {
            flag(call.trace);
        } else if (name == "--trotzdem") {
            flag(call.despite);
        } else if (name == "--speichern") {
            flag(call.save);
        } else if (name == "--aus") {
            arguments.once();
            call.file = arguments.value();
        } else if (name == "--port") {
            take_any_port(arguments, call);
        } else if (take_common_option(arguments, call.common)) {
            continue;
        } else if (find_option(name)) {
            arguments.once();
            call.values[name] = {arguments.value(), name};
        } else if (!call.job && !name.starts_with("-")) {
            call.job = find_job(name);
            if (!call.job)
                throw UsageError("Unbekannter Auftrag \"" + name + "\", siehe telvox-cli --help");
        } else {
            arguments.refuse();
        }
    }
    if (call.help || call.completion || call.common.version)
        return call;
    if (!call.job)
        throw UsageError("Auftrag fehlt, siehe telvox-cli --help");
    check_options(call);
    return call;
}

void complete_call(Call &call, std::istream &standard_input) {
    for (auto &[name, given] : call.values) {
        if (!find_option(*call.job, name)->secret || given.value != "-")
            continue;
        if (!read_line(standard_input, given.value))
            throw UsageError(name + ": die Standardeingabe ist zu Ende");
        if (!valid_utf8(given.value))
            throw UsageError(name + ": kein gültiger Text (UTF-8)");
    }
    if (call.file.empty())
        return;
    const bool piped = call.file == "-";
    take_lines(call, piped ? whole_text(standard_input, "-") : file_text(call.file),
               piped ? "Standardeingabe" : call.file);
    call.file.clear();
    check_options(call);
}

} // namespace telvox::cli
