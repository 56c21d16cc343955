#include "cli/call.hpp"

#include "core/files/files.hpp"
#include "core/usage_error.hpp"

#include <charconv>

namespace telvox::cli {

namespace {

/// An option of another job is refused, one that the job cannot do without is missed.
void check_options(const Call &call) {
    if (call.again && !call.job->repeats)
        throw UsageError("--laufend gehört nur zu signal");
    if (call.job->file) {
        if (call.list.empty())
            throw UsageError(std::string(call.job->name) + ": " + call.job->file + " fehlt");
        if (call.save)
            throw UsageError(std::string("--speichern gehört nicht zu ") + call.job->name);
        return; // what its rows take is theirs to say
    }
    if (call.job->look && !call.record.empty())
        throw UsageError(std::string("--nachweis gehört nicht zu ") + call.job->name);
    for (const auto &[given, option] : {std::pair{call.repeat, "--wiederholen"},
                                        {call.json && !call.everywhere(), "--json"},
                                        {call.share.of > 1, "--teil"}})
        if (given)
            throw UsageError(std::string(option) + " gehört nur zu liste");
    for (const auto &[given, option] :
         {std::pair{call.save, "--speichern"}, {!call.record.empty(), "--nachweis"}})
        if (given && call.everywhere())
            throw UsageError(std::string(option) + " gehört zu einer --schnittstelle");
    for (const auto &[name, given] : call.values)
        if (!find_option(*call.job, name))
            throw UsageError(given.from, (name == "port" ? " erwartet N=GERÄT; ein TCP-Port" : "") +
                                             std::string(" gehört nur zu ") + jobs_with(name));
    if (!call.file.empty() || call.everywhere())
        return;
    if (const char *missing = missing_option(call))
        throw UsageError(std::string(call.job->name) + ": --" + missing + " fehlt");
}

/// "--port N=GERÄT" names a device to every job; without "=" it is a value like others, the TCP port.
void take_any_port(Arguments &arguments, Call &call) {
    const std::string value = arguments.value();
    if (value.find('=') != std::string::npos)
        return take_port(value, call.common);
    arguments.once();
    call.values["port"] = {value, {.name = "port"}};
}

Call::Share parse_share(const std::string &text) {
    constexpr std::size_t most = 99;
    Call::Share share{.number = 0, .of = 0};
    const char *const end = text.data() + text.size();
    const auto number = std::from_chars(text.data(), end, share.number);
    if (number.ec == std::errc{} && number.ptr != end && *number.ptr == '/') {
        const auto of = std::from_chars(number.ptr + 1, end, share.of);
        if (of.ec == std::errc{} && of.ptr == end && share.number > 0 && share.number <= share.of &&
            share.of <= most)
            return share;
    }
    throw UsageError("--teil erwartet eine Angabe wie 2/4: den zweiten von vier Teilen");
}

/// Throws UsageError for a file that is no profile, or none for the job.
void take_profile(Call &call, const std::string &text, const std::string &source) {
    if (call.job->file)
        return void(call.profile = parse_profile(text, source));
    add(call, parse_profile(text, source, call.job));
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
        } else if (name == "--json") {
            flag(call.json);
        } else if (name == "--laufend") {
            flag(call.again);
        } else if (name == "--nachweis") {
            arguments.once();
            call.record = arguments.value();
        } else if (name == "--ausgefuehrt-von") {
            arguments.once();
            call.done_by = arguments.value();
        } else if (name == "--ort") {
            arguments.once();
            call.place = arguments.value();
        } else if (name == "--teil") {
            arguments.once();
            call.share = parse_share(arguments.value());
        } else if (name == "--wiederholen") {
            flag(call.repeat);
        } else if (name == "--aus") {
            arguments.once();
            call.file = arguments.value();
        } else if (name == "--port") {
            take_any_port(arguments, call);
        } else if (take_common_option(arguments, call.common)) {
            continue;
        } else if (name.starts_with("--") && find_option(name.substr(2))) {
            arguments.once();
            const Option &option = *find_option(name.substr(2));
            call.values[option.name] = {option.bare ? arguments.value_or("ein") : arguments.value(),
                                        {.name = option.name}};
        } else if (!call.job && !name.starts_with("-")) {
            call.job = find_job(name);
            if (!call.job)
                throw UsageError("Unbekannter Auftrag \"" + name + "\", siehe telvox-cli --help");
        } else if (call.job && call.job->file && call.list.empty() && !name.starts_with("-")) {
            call.list = name;
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
        if (!find_option(name)->secret || given.value != "-")
            continue;
        if (!read_line(standard_input, given.value))
            throw UsageError(given.from, ": die Standardeingabe ist zu Ende");
        if (!valid_utf8(given.value))
            throw UsageError(given.from, ": kein gültiger Text (UTF-8)");
    }
    if (call.file.empty())
        return;
    const std::string source = call.file == "-" ? "Standardeingabe" : call.file;
    try {
        take_profile(
            call, call.file == "-" ? profile_of_stream(standard_input, source) : profile_of_file(call.file),
            source);
    } catch (const UsageError &error) {
        throw UsageError(std::string("--aus: ") + error.what());
    }
    call.file.clear();
    check_options(call);
}

} // namespace telvox::cli
