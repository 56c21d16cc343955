#include "operation/list_order.hpp"

#include "core/usage_error.hpp"

#include <algorithm>
#include <set>

namespace telvox::operation {

namespace {

Place cell(const DeviceList &list, const DeviceList::Row &row, std::string column) {
    return {.kind = Place::Kind::table, .name = std::move(column), .where = place(list.source, row.line)};
}

const JobCommand &job_of(const DeviceList &list, const DeviceList::Row &row) {
    const JobCommand *job = find_job(row.job);
    if (!job || !job->button)
        throw UsageError(cell(list, row, std::string(job_column)),
                         ": den Auftrag \"" + row.job + "\" gibt es nicht" + (job ? " in einer Liste" : ""));
    return *job;
}

/// The way that the row's port belongs to, where it names one port and no way.
void imply_way(Order &order, const Place &from) {
    const bool cable = order.find("schnittstelle"), modem = order.find("modemanschluss");
    if (cable != modem && !order.find("verbindung"))
        order.values["verbindung"] = {cable ? "direkt" : "fern", from};
}

} // namespace

std::string column_option(std::string_view name) {
    if (const Option *option = find_option(name))
        return option->name;
    for (const std::span<const Option> options : {way_options(), alarm_options()})
        for (const Option &option : options)
            if (name == option.caption)
                return option.name;
    return {};
}

DeviceList read_list(const std::filesystem::path &file) { return read_device_list(file, column_option); }

Order order_of(const DeviceList &list, const DeviceList::Row &row, const ForAllRows &all,
               const Values &base) {
    Order order{.job = &job_of(list, row)};
    if (order.job->variants.size() == 1)
        order.values["typ"] = {word_of(order.job->variants.front()), cell(list, row, "")};
    for (std::size_t i = 0; i < list.columns.size(); ++i) {
        if (row.cells[i].empty())
            continue;
        const Place from = cell(list, row, list.columns[i]);
        if (!find_option(*order.job, from.name))
            throw UsageError(from, std::string(": das gehört nicht zum Auftrag ") + order.job->name);
        order.values[from.name] = {row.cells[i], from};
    }
    if (!find(all.values, "verbindung") && !find(all.profile.main, "verbindung"))
        imply_way(order, cell(list, row, ""));
    add(order, all.values);
    add(order, all.profile);
    if (const char *missing = missing_option(order, base))
        throw UsageError(cell(list, row, ""),
                         std::string(": ") + order.job->name + " braucht Spalte " + missing);
    return order;
}

std::string named(const DeviceList::Row &row) {
    return "Zeile " + std::to_string(row.line) + (row.name.empty() ? "" : " (" + row.name + ")");
}

std::string device_of_other_row(const DeviceList &list, const ResultFile &results, std::size_t row,
                                const std::string &imei) {
    for (std::size_t other = 0; other < list.rows.size(); ++other) {
        const DeviceList::Row &of = list.rows[other];
        if (other != row && of.job == list.rows[row].job && results.last(other) &&
            results.last(other)->imei == imei)
            return named(of);
    }
    return {};
}

void check_taken(const ForAllRows &all, const DeviceList &list) {
    std::set<std::string> jobs;
    for (const DeviceList::Row &row : list.rows)
        jobs.insert(row.job);
    for (const auto &[name, given] : all.values)
        if (std::none_of(jobs.begin(), jobs.end(), [&, &option = name](const std::string &job) {
                return find_job(job) && find_option(*find_job(job), option);
            }))
            throw UsageError(given.from, " gehört nur zu " + jobs_with(name));
}

} // namespace telvox::operation
