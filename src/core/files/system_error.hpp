#pragma once

#include <string>

namespace telvox {

/// Why the system could not read or write a file: a German sentence for every value of `errno`, whatever
/// language the system itself speaks.
[[nodiscard]] std::string german_reason(int error);

} // namespace telvox
