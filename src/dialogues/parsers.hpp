#pragma once

#include <optional>
#include <string_view>

/// Values in the devices' answers: text in, value out, nothing while it is not complete.
namespace telvox::dialogues {

/// Field strength in "+CSQ: 17,0": one or two digits up to the comma. 99 means that the device does not know
/// it.
[[nodiscard]] std::optional<int> parse_signal(std::string_view text);

} // namespace telvox::dialogues
