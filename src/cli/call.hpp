#pragma once

#include "cli/jobs.hpp"
#include "ports/common_options.hpp"

#include <istream>
#include <map>
#include <string>
#include <vector>

namespace telvox::cli {

/// A value and where it comes from, "--apn" or "datei:3: apn", for whoever must correct it.
struct Given {
    std::string value;
    std::string from;
};

/// What a call asks for.
struct Call {
    CommonOptions common;
    const JobCommand *job = nullptr;
    std::map<std::string, Given> values; ///< by option, "--typ" and so on
    std::string file;                    ///< "--aus": more values; "-" is standard input
    bool trace = false;
    bool despite = false; ///< "--trotzdem": questions are answered Ja
    bool save = false;    ///< "--speichern": the formats go into the settings file
    bool help = false;
    bool completion = false; ///< "--vorschlaege": what the shell can complete

    /// The option's value, nullptr if it was not given.
    [[nodiscard]] const Given *find(const std::string &option) const {
        const auto found = values.find(option);
        return found == values.end() ? nullptr : &found->second;
    }
};

/// Reads a call. Throws UsageError for one that is malformed; what the values mean is for the form to say.
[[nodiscard]] Call parse_call(const std::vector<std::string> &arguments);

/// Reads what the call leaves to be read: a secret given as "-" is a line of standard input, and the file of
/// "--aus" holds lines "name=wert", which options given beside it overrule. Throws UsageError.
void complete_call(Call &call, std::istream &standard_input);

/// The help about everything, or about one job.
[[nodiscard]] std::string help_text(const JobCommand *job);

/// What the shell can complete: a line per job with its options, then a line per option that takes a value,
/// with its words or with the value as the help writes it.
[[nodiscard]] std::string completion_list();

} // namespace telvox::cli
