#pragma once

#include "core/records/service_record.hpp"
#include "ui/desk.hpp"

namespace telvox::operation {

/// Settings under the windows' captions.
using Settings = std::vector<std::pair<std::string, std::string>>;

/// What the job that has just been started by this button sends its device, as it will get it; secrets are
/// "gesetzt" or "leer". None for a job that only asks.
[[nodiscard]] Settings sent_by(const Button &button, const Desk &desk);
/// What the job of this button that has just ended has read.
[[nodiscard]] Settings read_by(const Button &button, const Desk &desk);

} // namespace telvox::operation
