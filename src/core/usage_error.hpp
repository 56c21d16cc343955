#pragma once

#include "core/text.hpp"

#include <stdexcept>
#include <string_view>

namespace telvox {

/// What somebody asked for in words, in a call or a file, cannot be done; `what()` is one line (German) that
/// says why.
struct UsageError : std::runtime_error {
    explicit UsageError(std::string_view why) : std::runtime_error(one_line(why)) {}
};

} // namespace telvox
