#pragma once

#include "core/lists/device_list.hpp"
#include "core/record_printer.hpp"
#include "core/records/service_record.hpp"

#include <span>

namespace telvox::operation {

/// A page for each device that the jobs were done at.
[[nodiscard]] RecordPages record_of(std::span<const DoneJob> jobs, RecordFrame frame);

/// A list that a record is made of; all of it outlives the record's pages.
struct ListRecord {
    const DeviceList &list;
    const ResultFile &results;
    std::vector<std::size_t> rows; ///< that it tells of
};
[[nodiscard]] std::vector<std::size_t> all_rows(const DeviceList &list);

/// A cover sheet, then a page for each row: with what was done in this session, else what the result file
/// says.
[[nodiscard]] RecordPages record_of(const ListRecord &list, std::span<const DoneJob> jobs, RecordFrame frame);

} // namespace telvox::operation
