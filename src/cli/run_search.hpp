#pragma once

#include "cli/call.hpp"
#include "cli/output.hpp"

class QCoreApplication;

namespace telvox::cli {

/// Asks all free ports which device is there, and prints what was found. Returns the exit code.
int run_search(QCoreApplication &application, const Call &call, Outputs &out);

} // namespace telvox::cli
