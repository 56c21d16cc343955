#include "operation/record_pages.hpp"

#include <map>
#include <memory>
#include <numeric>

namespace telvox::operation {

namespace {

RecordCover cover_of(const ListRecord &list) {
    RecordCover cover{.list = list.list.source, .counts = {{"Geräte", list.rows.size()}}, .not_done = {}};
    for (const auto &count : list.results.counts(list.rows))
        cover.counts.push_back(count);
    for (const std::size_t row : list.rows)
        if (const auto &last = list.results.last(row); !list.results.done(row))
            cover.not_done.push_back(label_of(list.list.rows[row]) + ": " +
                                     (last ? word_of(last->outcome) : "offen"));
    return cover;
}

/// How a row stands, and with what was done for it in this session; else with what the result file says.
DeviceRecord device_of(const ListRecord &list, std::size_t row, const std::vector<DoneJob> *done) {
    const auto &last = list.results.last(row);
    DeviceRecord device{
        .name = label_of(list.list.rows[row]), .note = last ? word_of(last->outcome) : "offen", .jobs = {}};
    if (last && last->outcome == RowOutcome::differs)
        device.note += ": " + last->message;
    if (done)
        device.jobs = *done;
    else if (last)
        device.jobs.push_back({.line = {.time = last->time,
                                        .imei = last->imei,
                                        .port = last->port,
                                        .job = list.list.rows[row].job,
                                        .outcome = last->outcome,
                                        .message = last->message}});
    return device;
}

} // namespace

RecordPages record_of(std::span<const DoneJob> jobs, RecordFrame frame) {
    auto devices = std::make_shared<const std::vector<DeviceRecord>>(by_device(jobs));
    return {.count = devices->size(), .page = [devices, frame = std::move(frame)](std::size_t page) {
                return record_page(frame, devices->at(page));
            }};
}

std::vector<std::size_t> all_rows(const DeviceList &list) {
    std::vector<std::size_t> rows(list.rows.size());
    std::iota(rows.begin(), rows.end(), 0);
    return rows;
}

RecordPages record_of(const ListRecord &list, std::span<const DoneJob> jobs, RecordFrame frame) {
    auto done = std::make_shared<std::map<std::string, std::vector<DoneJob>>>();
    for (const DoneJob &job : jobs)
        if (!job.device.empty())
            (*done)[job.device].push_back(job);
    return {.count = list.rows.size() + 1, .page = [=](std::size_t page) {
                if (page == 0)
                    return record_page(frame, cover_of(list));
                const std::size_t row = list.rows[page - 1];
                const auto here = done->find(label_of(list.list.rows[row]));
                return record_page(frame,
                                   device_of(list, row, here == done->end() ? nullptr : &here->second));
            }};
}

} // namespace telvox::operation
