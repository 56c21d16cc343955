#include "operation/list_order.hpp"

#include "core/usage_error.hpp"

#include <algorithm>
#include <set>

namespace telvox::operation {

namespace {

const JobCommand &job_of(const DeviceList &list, const DeviceList::Row &row) {
    const JobCommand *job = find_job(row.job);
    if (!job || !job->button)
        throw UsageError(place(list.source, row.line, std::string(job_column)) + ": den Auftrag \"" +
                         row.job + "\" gibt es nicht" + (job ? " in einer Liste" : ""));
    return *job;
}

} // namespace

bool is_column(std::string_view name) { return find_option(option_name(name)) != nullptr; }

DeviceList read_list(const std::filesystem::path &file) { return read_device_list(file, is_column); }

Order cells_of(const DeviceList &list, const DeviceList::Row &row) {
    Order order{.job = &job_of(list, row)};
    if (const std::string variant = only_variant(*order.job); !variant.empty())
        order.values["--typ"] = {variant, place(list.source, row.line)};
    for (std::size_t i = 0; i < list.columns.size(); ++i) {
        if (row.cells[i].empty())
            continue;
        const std::string name = option_name(list.columns[i]),
                          from = place(list.source, row.line, list.columns[i]);
        if (!find_option(*order.job, name))
            throw UsageError(from + ": das gehört nicht zum Auftrag " + order.job->name);
        order.values[name] = {row.cells[i], from};
    }
    return order;
}

Order order_of(const DeviceList &list, const DeviceList::Row &row, const ForAllRows &all) {
    Order order = cells_of(list, row);
    add(order, all.values);
    add(order, all.profile);
    if (const char *missing = missing_option(order))
        throw UsageError(place(list.source, row.line) + ": " + order.job->name + " braucht " +
                         name_in_file(missing));
    return order;
}

void check_taken(const ForAllRows &all, const DeviceList &list) {
    std::set<std::string> jobs;
    for (const DeviceList::Row &row : list.rows)
        jobs.insert(row.job);
    for (const auto &[name, given] : all.values)
        if (std::none_of(jobs.begin(), jobs.end(), [&, &option = name](const std::string &job) {
                return find_job(job) && find_option(*find_job(job), option);
            }))
            throw UsageError(given.from + " gehört nur zu " + jobs_with(name));
}

} // namespace telvox::operation
