#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace telvox {

/// What counts as an answer to a ping.
enum class PingRule {
    any_answer,      ///< any line that tells of one, also of a router that knows no way
    echo_of_address, ///< only a real echo: with a time to live, from the address that was asked
};

struct PingResult {
    bool answered = false;
    /// Lines of answers and of time-outs; of an output without any all that it says.
    std::vector<std::string> lines;
};

/// Reads the output of the system's ping, that of Windows or of Linux, in German or English.
[[nodiscard]] PingResult evaluate_ping(std::string_view output, PingRule rule, std::string_view address);

} // namespace telvox
