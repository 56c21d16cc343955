#include "core/records/history.hpp"

#include "core/files/files.hpp"
#include "core/files/system_error.hpp"
#include "core/text.hpp"
#include "core/usage_error.hpp"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <iterator>
#include <thread>

namespace telvox {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view header = "\xEF\xBB\xBFzeit;typ;imei;anschluss;auftrag;ergebnis;meldung\r\n";
constexpr std::size_t columns = 7;
/// Above that the oldest lines go, and with them a tenth, so that not every job writes the whole file anew.
constexpr std::size_t largest_file = 4 * 1024 * 1024;
constexpr std::size_t left_behind = History::most_lines / 10 * 9;
constexpr std::size_t longest_message = 1000;
constexpr int tries_while_busy = 20;
/// More lines than any other program has put into the file.
constexpr std::size_t most_read = 200'000;

std::string row_of(const HistoryLine &line) {
    std::vector<std::string> cells = cells_of(line);
    cells.back() = first_characters(joined_lines(line.message), longest_message);
    for (std::string &cell : cells)
        cell = kept_a_text(cell);
    return table_row(cells) + "\r\n";
}

/// Where the newest lines begin, so many of them and so many bytes at most.
std::size_t newest(std::string_view rows, std::size_t lines, std::size_t bytes) {
    std::size_t begin = rows.size();
    while (begin > 0 && lines-- > 0) {
        const auto before = rows.find_last_of('\n', begin - 2);
        const std::size_t from = before == std::string_view::npos || begin < 2 ? 0 : before + 1;
        if (rows.size() - from > bytes)
            break;
        begin = from;
    }
    return begin;
}

} // namespace

std::vector<std::string> cells_of(const HistoryLine &line) {
    return {line.time,   line.variant, line.imei, line.port, line.job, written_word(line.outcome),
            line.message};
}

std::string history_table(const std::vector<HistoryLine> &lines) {
    std::string table(header);
    for (const HistoryLine &line : lines)
        table += row_of(line);
    return table;
}

/// Returns 0, the error number, or -1 for a file that is something else.
int History::write(std::string_view rows) {
    std::error_code error;
    fs::create_directories(file_.parent_path(), error);
    std::string anew;
    {
        AppendFile file;
        if (const int failed = file.open(file_, header); failed != 0)
            return failed;
        const FileContent content = read_file(file_, 2 * largest_file);
        if (content.error != 0)
            return content.error;
        const std::string_view all = content.bytes;
        const std::string_view whole = all.substr(0, all.rfind('\n') + 1);
        if (header.starts_with(all)) { // its making was not finished
            const int cut = file.cut(0);
            return cut != 0 ? cut : file.append(std::string(header).append(rows));
        }
        if (!content.whole || !is_table_under(header, whole))
            return -1;
        const auto lines = static_cast<std::size_t>(std::count(whole.begin(), whole.end(), '\n')) - 1 +
                           static_cast<std::size_t>(std::count(rows.begin(), rows.end(), '\n'));
        if (lines <= most_lines && whole.size() + rows.size() <= largest_file) {
            const int cut = whole.size() == all.size() ? 0 : file.cut(whole.size());
            return cut != 0 ? cut : file.append(rows);
        }
        const std::string_view old = whole.substr(whole.find('\n') + 1);
        anew =
            std::string(header).append(old.substr(newest(old, left_behind, largest_file / 2))).append(rows);
    } // on Windows nobody replaces a file that is open
    return replace_file(file_, anew);
}

std::string History::append(const std::vector<HistoryLine> &lines) {
    std::transform(lines.begin(), lines.end(), std::back_inserter(waiting_), row_of);
    if (waiting_.size() > most_lines / 10) // nobody can write there
        waiting_.erase(waiting_.begin(), waiting_.end() - most_lines / 10);
    if (waiting_.empty())
        return "";
    std::string rows;
    for (const std::string &row : waiting_)
        rows += row;
    int failed = write(rows);
    // Another program of this user adds a line of its own; who keeps the file open longer is not waited for
    // again.
    for (int tries = 0; failed == EBUSY && tries < tries_while_busy && waiting_.size() == lines.size();
         ++tries) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        failed = write(rows);
    }
    if (failed == 0)
        waiting_.clear();
    return failed == 0 ? ""
                       : "Der Verlauf \"" + text_of(file_) + "\" ließ sich nicht schreiben. " +
                             (failed < 0 ? "Die Datei ist keine, die dieses Programm geschrieben hat."
                                         : german_reason(failed));
}

std::vector<HistoryLine> History::lines() const {
    std::error_code error;
    if (!fs::exists(file_, error))
        return {};
    const std::string bytes = table_bytes(file_);
    const std::string_view whole = std::string_view(bytes).substr(0, bytes.rfind('\n') + 1);
    if (!is_table_under(header, whole))
        throw UsageError("\"" + text_of(file_) + "\" ist kein Verlauf, den dieses Programm geschrieben hat.");
    std::vector<HistoryLine> lines;
    for (Table::Row &row : parse_table(whole, text_of(file_.filename()), most_read).rows) {
        const auto outcome = row.fields.size() == columns ? written_outcome(row.fields[5]) : std::nullopt;
        if (!outcome)
            continue;
        for (std::string &field : row.fields)
            field = as_it_was(field);
        lines.push_back({row.fields[0], row.fields[1], row.fields[2], row.fields[3], row.fields[4], *outcome,
                         std::move(row.fields[6])});
    }
    return lines;
}

} // namespace telvox
