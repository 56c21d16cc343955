#pragma once

namespace telvox {

extern const char *const program_version; ///< "1.0.0", from the build

} // namespace telvox
