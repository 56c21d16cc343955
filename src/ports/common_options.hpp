#pragma once

#include "core/files/settings_file.hpp"
#include "core/usage_error.hpp"
#include "simulator/situations.hpp"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace telvox {

/// What every program's call may say.
struct CommonOptions {
    std::map<int, std::string> ports; ///< devices named by "--port", by COM number
    std::string data_folder;          ///< "--datenordner"; empty: the usual folders
    bool simulator = false;
    std::vector<const simulator::Situation *>
        situations;       ///< "--simulator-fall": of the simulated GPRS devices
    bool version = false; ///< asks for nothing but the version
};

/// Reads a call's arguments one after the other. An option's value is the next argument, or stands behind
/// "=" in the same one; a value that begins with "--" has to, so a forgotten value is noticed. What is no
/// valid UTF-8 is refused: nobody could say which characters were meant.
class Arguments {
  public:
    explicit Arguments(std::vector<std::string> all) : all_(std::move(all)) {}

    /// Goes to the next argument; false at the end.
    bool next();
    [[nodiscard]] const std::string &name() const { return name_; }
    /// The option's value.
    std::string value();
    /// The value that is attached to the option by "="; without one what it stands for alone.
    std::string value_or(const char *alone);
    /// Refuses a value given to an option that takes none.
    void no_value() const;
    /// Refuses the option's second appearance.
    void once();
    [[noreturn]] void refuse() const; ///< nobody knows this argument

  private:
    std::vector<std::string> all_;
    std::size_t at_ = 0;
    std::string name_;
    std::optional<std::string> attached_;
    std::set<std::string> seen_;
};

/// Takes the current argument if it is one of the common options. Returns whether it was.
bool take_common_option(Arguments &arguments, CommonOptions &options);
/// Takes the value of "--port", "N=GERÄT".
void take_port(const std::string &value, CommonOptions &options);

/// The folders that a call asks for: its data folder before all others, or else the usual ones.
[[nodiscard]] DataFolders data_folders(const CommonOptions &options);

/// Lines of a help text about the common options.
[[nodiscard]] std::string common_options_help();

/// Name and version of a program, one line.
[[nodiscard]] std::string version_text(std::string_view program);

/// An option in a help text and, in the second column, what it is for, broken where the line is full.
[[nodiscard]] std::string help_line(const std::string &option, const std::string &purpose);

} // namespace telvox
