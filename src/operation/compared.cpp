#include "operation/compared.hpp"

#include "link/mask.hpp"

namespace telvox::operation {

Values all_values(std::span<const Option> options, Desk &desk) {
    Values values;
    for (const Option &option : options) {
        const std::string value = value_of(option, desk);
        values[option.name] = {option.means ? option.means(value) : value, {}};
    }
    return values;
}

std::vector<Compared> compare(std::span<const Option> options, const Values &wanted, const Values &found) {
    std::vector<Compared> compared;
    for (const Option &option : options)
        if (const Given *value = find(wanted, option.name))
            compared.push_back({&option, value->value, found.at(option.name).value});
    return compared;
}

std::string shown(const Option &option, const std::string &value) {
    return value.empty() ? "leer" : option.secret ? Mask::hidden : value;
}

std::string differences(const std::vector<Compared> &compared, const char *between) {
    std::string lines;
    for (const auto &one : compared)
        if (one.differs())
            lines += (lines.empty() ? "" : between) + std::string(one.option->title) + ": " +
                     shown(*one.option, one.found) + " → " + shown(*one.option, one.wanted);
    return lines;
}

std::string deviations(const std::vector<Compared> &compared) {
    std::string lines;
    for (const auto &one : compared)
        if (one.differs())
            lines += (lines.empty() ? "" : "\r") + std::string(one.option->title) + ": soll " +
                     shown(*one.option, one.wanted) + ", ist " + shown(*one.option, one.found);
    return lines;
}

} // namespace telvox::operation
