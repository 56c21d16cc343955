#pragma once

#include "core/lists/table_file.hpp"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace telvox {

/// Devices that are to be done one after the other, a row each.
struct DeviceList {
    struct Row {
        std::size_t line;               ///< of the file
        std::string name;               ///< free; may be empty, or that of another row too
        std::string job;                ///< as the command line names it
        std::vector<std::string> cells; ///< by column; empty: nothing given
    };
    std::string source;               ///< the file's name, as messages name it
    std::vector<std::string> columns; ///< names of options
    std::vector<Row> rows;
};

inline constexpr std::size_t most_devices = 10000;
/// Columns that are no option, and the job of a row that names none.
inline constexpr std::string_view name_column = "name";
inline constexpr std::string_view job_column = "auftrag";
inline constexpr std::string_view default_job = "parametrieren";

/// The option that a column's name (in small letters) means, empty if none.
using ColumnOption = std::function<std::string(std::string_view name)>;

/// Takes a list from a table whose first row names the columns. Nothing is guessed: an unknown or doubled
/// column, a row with too few or too many fields and a line break in a cell throw UsageError that names line
/// and column of all of them. Empty fields beyond the last column, which spreadsheets add, are none.
[[nodiscard]] DeviceList device_list(const Table &table, const ColumnOption &option_of);

/// Reads a list from a file.
[[nodiscard]] DeviceList read_device_list(const std::filesystem::path &file, const ColumnOption &option_of);

/// How a row is called: "Zeile 3, Pumpwerk Süd", or "Zeile 3" without a name.
[[nodiscard]] std::string label_of(const DeviceList::Row &row);

} // namespace telvox
