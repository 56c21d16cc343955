#pragma once

#include "operation/option.hpp"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace telvox::operation {

/// One job of the command line: the button that starts it, the way there, and the fields of its window.
struct JobCommand {
    const char *name;
    const char *help;
    std::span<const ModemType> variants = {}; ///< that have it; empty: all. A single one need not be given
    ControlOf button = nullptr;
    ControlOf menu = nullptr; ///< opens the dialog that the button is in
    std::span<const Option> options = {};
    /// What is done beside the job, in no window's field.
    std::span<const Option> around = {};
    const char *reads = nullptr;      ///< job that reads what this one writes
    ControlOf verify = nullptr;       ///< tick of its dialog: read again after the restart
    bool compares = false;            ///< what it reads is compared with its dialog's values
    const char *also_needs = nullptr; ///< option of the main window without which there is no job
    bool leaves_busy = false; ///< the device dials afterwards, or speaks another format: nobody asks it then
    bool everywhere = false;  ///< without that option a call does it at all ports
    ControlOf afterwards = nullptr;          ///< button that keeps what the job has brought
    std::string (*result)(Desk &) = nullptr; ///< what a query found out, to be printed
    ControlOf repeats = nullptr;             ///< tick that has it done again and again
    /// For a job that only tells something: what happens in place of a button.
    void (*look)(Telvox &) = nullptr;
    const char *file = nullptr; ///< what its file is, for the one that takes jobs from it
};

/// A dialog's part of a profile.
struct Section {
    const char *name;
    Form &(*form)(Desk &);
    std::span<const Option> options;
    ControlOf menu; ///< opens the dialog
};

[[nodiscard]] std::span<const Section> sections();
[[nodiscard]] const Section *find_section(std::string_view name);
/// The part that a job takes its options from, nullptr if it has none.
[[nodiscard]] const Section *section_of(const JobCommand &job);

/// How "typ" names a variant, and several: "gsm oder gprs".
[[nodiscard]] const char *word_of(ModemType variant);
[[nodiscard]] std::string words_of(std::span<const ModemType> variants, const char *between);

[[nodiscard]] std::span<const JobCommand> job_commands();
/// What a query has found out, on one line; empty for other jobs. It is kept in files, so without passwords
/// and keys.
[[nodiscard]] std::string found_out(const JobCommand &job, Desk &desk);
[[nodiscard]] const JobCommand *find_job(std::string_view name);

/// Variant and way, which every job has, and the fields of the main window.
[[nodiscard]] std::span<const Option> way_options();
[[nodiscard]] std::span<const Option> alarm_options();
/// What can be asked for beside a job.
[[nodiscard]] std::span<const Option> around_options();

[[nodiscard]] const Option *find_option(std::span<const Option> options, std::string_view name);
/// The job's option of this name: one of its own or of the main window's; nullptr if it has none.
[[nodiscard]] const Option *find_option(const JobCommand &job, std::string_view name);
/// Any job's option of this name.
[[nodiscard]] const Option *find_option(std::string_view name);
/// The jobs that have an option of their own of this name, "a, b".
[[nodiscard]] std::string jobs_with(std::string_view option);

} // namespace telvox::operation
