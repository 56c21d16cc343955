#pragma once

#include "operation/order.hpp"

#include <span>
#include <string>
#include <vector>

namespace telvox::operation {

/// A setting as it is wanted and as a device has it, both as a dialog shows them.
struct Compared {
    const Option *option;
    std::string wanted, found;

    [[nodiscard]] bool differs() const { return wanted != found; }
};

/// What a dialog's fields hold, also those that are locked; secrets too.
[[nodiscard]] Values all_values(std::span<const Option> options, Desk &desk);

/// Two sets of values side by side, as far as there is a wanted one.
[[nodiscard]] std::vector<Compared> compare(std::span<const Option> options, const Values &wanted,
                                            const Values &found);

/// A value for the eye: "***" for a secret, "leer" for nothing.
[[nodiscard]] std::string shown(const Option &option, const std::string &value);

/// The settings that differ, from what was found to what is wanted: "APN: internet.alt → internet.neu".
[[nodiscard]] std::string differences(const std::vector<Compared> &compared, const char *between);

/// The same for who checks: "APN: soll internet.neu, ist internet.alt", a line each.
[[nodiscard]] std::string deviations(const std::vector<Compared> &compared);

} // namespace telvox::operation
