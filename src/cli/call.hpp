#pragma once

#include "cli/jobs.hpp"
#include "ports/common_options.hpp"

#include <map>
#include <string>
#include <vector>

namespace telvox::cli {

/// What a call asks for.
struct Call {
    CommonOptions common;
    const JobCommand *job = nullptr;
    std::map<std::string, std::string> values; ///< by option, "--typ" and so on
    bool trace = false;
    bool help = false;

    /// The option's value, nullptr if it was not given.
    [[nodiscard]] const std::string *find(const std::string &option) const {
        const auto found = values.find(option);
        return found == values.end() ? nullptr : &found->second;
    }
};

/// Reads a call. Throws UsageError for one that is malformed; what the values mean is for the form to say.
[[nodiscard]] Call parse_call(const std::vector<std::string> &arguments);

[[nodiscard]] std::string help_text();

} // namespace telvox::cli
