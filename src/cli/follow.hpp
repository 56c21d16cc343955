#pragma once

#include "cli/call.hpp"
#include "cli/output.hpp"
#include "operation/row_program.hpp"

namespace telvox::cli {

/// Tells what a program does that runs beside others: questions, what goes over its line if the call wants to
/// see it, and its log as it grows or when it has not ended well. Its `over` ends that.
void follow(RowProgram &row, const std::string &label, const Call &call, Outputs &out);

} // namespace telvox::cli
