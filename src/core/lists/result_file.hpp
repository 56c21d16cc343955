#pragma once

#include "core/files/append_file.hpp"
#include "core/lists/device_list.hpp"
#include "core/session.hpp"

#include <ctime>
#include <optional>
#include <utility>

namespace telvox {

/// How an attempt at a row came out; `begun` where nobody noted that: the program was killed meanwhile, and
/// the device may have been changed.
enum class RowOutcome { succeeded, objected, failed, cancelled, skipped, begun, differs };
/// What a job's outcome is for its row.
[[nodiscard]] RowOutcome row_outcome(Outcome outcome);

/// As files hold it, and back; nothing for a word that is none.
[[nodiscard]] const char *written_word(RowOutcome outcome);
[[nodiscard]] std::optional<RowOutcome> written_outcome(std::string_view word);
/// As the user reads it.
[[nodiscard]] const char *word_of(RowOutcome outcome);
/// Whether the row needs no further attempt.
[[nodiscard]] bool is_done(RowOutcome outcome);

/// One attempt at a row, its begin, or its being skipped.
struct Attempt {
    RowOutcome outcome{};
    std::string time;      ///< "2026-11-23 14:05:09"; see local_time
    std::string port;      ///< as the list or the port list names it
    std::string message;   ///< one or more lines; read back it has one
    std::string imei = {}; ///< of the device that it was done at, where it told it
};

/// Local time as result files write it.
[[nodiscard]] std::string local_time(std::time_t time);

/// Where a list's results stand: "pumpen-ergebnis.csv" beside "pumpen.csv".
[[nodiscard]] std::filesystem::path result_path(const std::filesystem::path &list);

/// The results of a list: a table beside it that gets a line when an attempt begins and one when it has
/// ended, on the disk before anything else happens, so that what a laptop that dies has done, or was about to
/// do, is not done again unasked. A row is known by its name if no other row of the list has it, else by name
/// and line.
class ResultFile {
  public:
    /// Opens the file and reads what it holds; a last line that was not written to its end is taken off.
    /// Throws UsageError for a file that is something else, that another program has open or that cannot be
    /// written.
    ResultFile(const std::filesystem::path &path, const DeviceList &list);

    /// The row's last attempt; none if there was none.
    [[nodiscard]] const std::optional<Attempt> &last(std::size_t row) const { return last_.at(row); }
    [[nodiscard]] bool done(std::size_t row) const { return last(row) && is_done(last(row)->outcome); }
    /// How many of these rows came out how, "offen" where nobody tried; what there is none of is left out.
    [[nodiscard]] std::vector<std::pair<std::string, std::size_t>>
    counts(const std::vector<std::size_t> &rows) const;
    /// Notes an attempt, or that one begins. Returns why it could not be written (German), empty when it was;
    /// it counts as the last one all the same.
    [[nodiscard]] std::string append(std::size_t row, Attempt attempt);
    /// Notes attempts that ended, or begin, together: the disk is waited for once.
    [[nodiscard]] std::string append(std::vector<std::pair<std::size_t, Attempt>> attempts);

  private:
    struct Identity {
        std::size_t line;
        std::string name;
    };

    void read(const Table &table);

    std::vector<Identity> rows_;
    std::vector<std::optional<Attempt>> last_;
    AppendFile file_;
};

} // namespace telvox
