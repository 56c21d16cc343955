#include "operation/order.hpp"

namespace telvox::operation {

void add(Order &order, const Values &values) {
    for (const auto &[name, given] : values)
        if (find_option(*order.job, name))
            order.values.emplace(name, given);
}

const char *missing_option(const Order &order, const Values &base) {
    const auto missing = [&](const char *name) {
        const Given *held = find(base, name);
        return !order.find(name) && (!held || held->value.empty());
    };
    for (const Option &option : order.job->options)
        if (option.required && missing(option.name))
            return option.name;
    const char *also = order.job->also_needs;
    return also && missing(also) ? also : nullptr;
}

} // namespace telvox::operation
