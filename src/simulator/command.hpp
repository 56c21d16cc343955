#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace telvox::simulator {

/// What a command leads to.
enum class Verdict {
    ok,    ///< accepted, "OK" where result codes are on
    error, ///< unknown or refused, "ERROR" where result codes are on
    asks,  ///< accepted, and its text is a question: no result code and no prompt behind it
};

struct Reply {
    std::string text{};
    Verdict verdict = Verdict::ok;
    bool drops_line = false;     ///< the device ends the call behind this reply
    bool changes_format = false; ///< behind this reply the device talks in the format it was told
};

inline const Reply refused{.verdict = Verdict::error};

/// Whether a command is its name alone or its name with a value behind it.
enum class Form { plain, value };

/// One command that a device knows.
template <class Target> struct Command {
    std::string_view name;
    Form form;
    Reply (*run)(Target &target, std::string_view value);
};

/// Runs the command of a table that a line names; nothing when the table has none.
template <class Target>
std::optional<Reply> run_command(std::span<const Command<Target>> table, Target &target,
                                 std::string_view line) {
    for (const auto &command : table) {
        if (command.form == Form::plain ? line == command.name : line.starts_with(command.name))
            return command.run(target, line.substr(command.name.size()));
    }
    return std::nullopt;
}

} // namespace telvox::simulator
