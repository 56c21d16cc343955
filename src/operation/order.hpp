#pragma once

#include "core/usage_error.hpp"
#include "operation/jobs.hpp"

#include <map>
#include <string>

namespace telvox::operation {

/// A value and where it was given.
struct Given {
    std::string value;
    Place from;
};

/// By option, "typ" and so on: what a form holds, or what it is filled in with.
using Values = std::map<std::string, Given>;

/// The option's value, nullptr if it was not given.
[[nodiscard]] inline const Given *find(const Values &values, const std::string &option) {
    const auto found = values.find(option);
    return found == values.end() ? nullptr : &found->second;
}

/// A job that is to be done, and what its windows are filled in with.
struct Order {
    const JobCommand *job = nullptr;
    Values values;
    bool save = false; ///< the formats go into the settings file

    [[nodiscard]] const Given *find(const std::string &option) const {
        return operation::find(values, option);
    }
};

/// Adds what the order's job takes of the values; what the order says already stays.
void add(Order &order, const Values &values);

/// The option without which the order's job means nothing and that neither the order nor the form (`base`)
/// gives, nullptr if there is none.
[[nodiscard]] const char *missing_option(const Order &order, const Values &base = {});

} // namespace telvox::operation
