#include "core/version.hpp"

namespace telvox {

const char *const program_version = TELVOX_VERSION;

} // namespace telvox
