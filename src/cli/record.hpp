#pragma once

#include "cli/call.hpp"
#include "core/files/remembered.hpp"
#include "core/record_printer.hpp"
#include "core/records/service_record.hpp"

#include <span>
#include <string>

namespace telvox::cli {

/// Throws UsageError for a record that nobody could write, before anything is sent.
void check_record(const Call &call);

/// Who did it and where: as the call says, else as it was remembered.
[[nodiscard]] RecordFrame record_frame(const Call &call, const Remembered &remembered);

/// Writes the record that the call asks for. Returns why it could not be written
/// (German), empty when it was.
[[nodiscard]] std::string write_record(const Call &call, const RecordPages &pages);
/// Of the jobs that the call has done, where it asks for one.
[[nodiscard]] std::string write_record(const Call &call, std::span<const DoneJob> jobs,
                                       const Remembered &remembered);

} // namespace telvox::cli
