#pragma once

#include <functional>

namespace telvox::cli {

/// From now on Ctrl-C and the system's request to end arrive as an event, with the exit code that they call
/// for. A second one ends the program at once.
void on_interrupt(std::function<void(int exit_code)> handler);

} // namespace telvox::cli
