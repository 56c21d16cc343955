#pragma once

#include "ui/desk.hpp"

#include <span>
#include <string>
#include <string_view>

namespace telvox::cli {

/// One job of the command line: the button that starts it, and the way there.
struct JobCommand {
    const char *name;
    const char *help;
    Button &(*button)(Desk &);
    MenuEntry FrmModem::*menu = nullptr;     ///< opens the dialog that the button is in
    const char *own_option = nullptr;        ///< option that belongs to this job alone
    std::string (*result)(Desk &) = nullptr; ///< what a query found out, to be printed
};

[[nodiscard]] std::span<const JobCommand> job_commands();
[[nodiscard]] const JobCommand *find_job(std::string_view name);

} // namespace telvox::cli
