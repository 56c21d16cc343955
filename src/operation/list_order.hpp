#pragma once

#include "core/lists/device_list.hpp"
#include "operation/profile.hpp"

#include <string_view>

namespace telvox::operation {

/// A list may have a column for every option of every job.
[[nodiscard]] bool is_column(std::string_view name);
[[nodiscard]] DeviceList read_list(const std::filesystem::path &file);

/// What holds for each row whose own cell says nothing: what the call gives before what a profile gives.
struct ForAllRows {
    Values values;
    Profile profile;
};

/// What a row itself asks for. A cell that its job does not take is refused, and so is a job that there is
/// not or that needs no device. Throws UsageError, naming line and column.
[[nodiscard]] Order cells_of(const DeviceList &list, const DeviceList::Row &row);

/// What a row asks for. Of what holds for all rows it gets what its job takes; what it cannot do without must
/// be there. Throws UsageError, naming line and column.
[[nodiscard]] Order order_of(const DeviceList &list, const DeviceList::Row &row, const ForAllRows &all);

/// Throws UsageError for a value that holds for all rows and that no row's job takes.
void check_taken(const ForAllRows &all, const DeviceList &list);

} // namespace telvox::operation
