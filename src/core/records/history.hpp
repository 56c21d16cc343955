#pragma once

#include "core/lists/result_file.hpp"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace telvox {

/// A job that has ended, as the history tells of it: without secrets, in the words of the windows.
struct HistoryLine {
    std::string time;    ///< local_time
    std::string variant; ///< "GSM"
    std::string imei;    ///< empty: nobody has asked the device
    std::string port;    ///< "COM 3", "COM 6, Rufnummer 0541123", "Netzwerk"
    std::string job;     ///< "Modem konfigurieren"
    RowOutcome outcome{};
    std::string message; ///< on one line
};

/// As texts, in the order of the file's columns: zeit, typ, imei, anschluss, auftrag, ergebnis, meldung.
[[nodiscard]] std::vector<std::string> cells_of(const HistoryLine &line);

/// Lines as the file holds them, under the columns' names.
[[nodiscard]] std::string history_table(const std::vector<HistoryLine> &lines);

/// The jobs that were done here, in a table that every program of this user adds to. It is open only while
/// something is added. A line that was not written to its end is taken off; the oldest go where there are too
/// many.
class History {
  public:
    static constexpr std::size_t most_lines = 10'000;
    static constexpr const char *file_name = "verlauf.csv";

    explicit History(std::filesystem::path file) : file_(std::move(file)) {}

    /// Adds lines, on the disk when it returns. Returns why they could not be written (German), empty when
    /// they were; they come with the next ones then.
    [[nodiscard]] std::string append(const std::vector<HistoryLine> &lines);
    /// All lines, the oldest first; of a file with other lines between them those that are the history's.
    /// None where there is no file. Throws UsageError for one that is something else or cannot be read.
    [[nodiscard]] std::vector<HistoryLine> lines() const;
    [[nodiscard]] const std::filesystem::path &file() const { return file_; }

  private:
    [[nodiscard]] int write(std::string_view rows);

    std::filesystem::path file_;
    std::vector<std::string> waiting_; ///< rows that are not in the file yet
};

} // namespace telvox
