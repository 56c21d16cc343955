#pragma once

#include "cli/call.hpp"
#include "cli/output.hpp"

#include <QCoreApplication>

namespace telvox::cli {

/// Runs the rows of a list that are not done: those at different ports at the same time, those that share one
/// in the list's order. Each result is printed and kept as soon as it is there. Returns the exit code; throws
/// UsageError before anything is sent.
[[nodiscard]] int run_list(QCoreApplication &application, const Call &call, Outputs &out);

} // namespace telvox::cli
