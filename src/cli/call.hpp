#pragma once

#include "operation/profile.hpp"
#include "ports/common_options.hpp"

#include <istream>
#include <optional>
#include <string>
#include <vector>

namespace telvox::cli {

using namespace operation;

/// What a call asks for.
struct Call : Order {
    CommonOptions common;
    std::string file; ///< "--aus": more values; "-" is standard input
    std::string list; ///< for a job that takes its work from a file: the file
    Profile profile;  ///< "--aus" of a list, for each row what its job takes
    bool trace = false;
    bool despite = false; ///< "--trotzdem": questions are answered Ja
    /// "--teil 2/4": of a list every fourth row from the second on; several computers share its work so.
    struct Share {
        std::size_t number = 1, of = 1;
    } share;
    bool json = false;                         ///< "--json": events of a list as lines that a script reads
    bool again = false;                        ///< "--laufend": done again and again until the user ends it
    std::string record;                        ///< "--nachweis": the file that gets the record; empty: none
    std::optional<std::string> done_by, place; ///< "--ausgefuehrt-von", "--ort": what stands in it
    bool repeat = false;                       ///< "--wiederholen": rows whose outcome nobody knows too
    bool help = false;
    bool completion = false; ///< "--vorschlaege": what the shell can complete

    /// The job is done at every free port.
    [[nodiscard]] bool everywhere() const { return job && job->everywhere && !find(job->also_needs); }
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
