#pragma once

#include "core/lists/result_file.hpp"
#include "operation/profile.hpp"

#include <string>
#include <string_view>

namespace telvox::operation {

/// The option that a column means, by its own name or as the window calls it ("Empfänger"); a list may have a
/// column for every option of every job.
[[nodiscard]] std::string column_option(std::string_view name);
[[nodiscard]] DeviceList read_list(const std::filesystem::path &file);

/// What holds for each row whose own cell says nothing: what the call gives before what a profile gives.
struct ForAllRows {
    Values values;
    Profile profile;
};

/// What a row asks for. Of what holds for all rows it gets what its job takes; a port without a word of the
/// way means the way that it belongs to. A cell that the job does not take is refused, and so is a job that
/// there is not or that needs no device; what it cannot do without must be there, or in the form (`base`).
/// Throws UsageError, naming line and column.
[[nodiscard]] Order order_of(const DeviceList &list, const DeviceList::Row &row, const ForAllRows &all,
                             const Values &base = {});

/// A row as a question names it: "Zeile 2 (Süd)".
[[nodiscard]] std::string named(const DeviceList::Row &row);

/// The row at whose device, by its IMEI, another row's job was done before; empty if there was none.
[[nodiscard]] std::string device_of_other_row(const DeviceList &list, const ResultFile &results,
                                              std::size_t row, const std::string &imei);

/// Throws UsageError for a value that holds for all rows and that no row's job takes.
void check_taken(const ForAllRows &all, const DeviceList &list);

} // namespace telvox::operation
