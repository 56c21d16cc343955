#include "core/lists/result_file.hpp"

#include "core/files/files.hpp"
#include "core/files/system_error.hpp"
#include "core/text.hpp"
#include "core/usage_error.hpp"

#include <algorithm>
#include <array>
#include <map>

namespace telvox {

namespace fs = std::filesystem;

namespace {

/// With the mark by which spreadsheets know UTF-8.
constexpr std::string_view header = "\xEF\xBB\xBFzeile;name;zeit;schnittstelle;ergebnis;meldung;imei\r\n";
constexpr std::size_t columns = 7;
/// Files of earlier versions have all columns but the last one.
constexpr std::string_view last_column = ";imei";
constexpr std::size_t most_attempts = 200000;

constexpr std::array<std::pair<RowOutcome, const char *>, 7> words = {{
    {RowOutcome::succeeded, "erfolgreich"},
    {RowOutcome::objected, "mit Ablehnungen"},
    {RowOutcome::failed, "fehlgeschlagen"},
    {RowOutcome::cancelled, "abgebrochen"},
    {RowOutcome::skipped, "übersprungen"},
    {RowOutcome::begun, "begonnen"},
    {RowOutcome::differs, "abweichend"},
}};

/// The names of the columns, with the mark before them or without.
bool is_heading(std::string_view line) {
    std::string_view names = header.substr(3, header.size() - 5);
    if (line.starts_with(header.substr(0, 3)))
        line.remove_prefix(3);
    return line == names || line == names.substr(0, names.size() - last_column.size());
}

/// UTF-8 under the columns' names; an editor may have changed the mark and the lines' ends.
bool is_result_table(std::string_view bytes) {
    return is_heading(bytes.substr(0, bytes.find_first_of("\r\n"))) && valid_utf8(bytes);
}

/// What a row is known by where its name is not enough.
std::string with_line(const std::string &line, const std::string &name) { return name + "\n" + line; }

std::string refused(const fs::path &path, const std::string &why) {
    return "Die Ergebnisdatei \"" + text_of(path) + "\" " + why;
}

} // namespace

RowOutcome row_outcome(Outcome outcome) {
    return outcome == Outcome::succeeded   ? RowOutcome::succeeded
           : outcome == Outcome::objected  ? RowOutcome::objected
           : outcome == Outcome::cancelled ? RowOutcome::cancelled
           : outcome == Outcome::differs   ? RowOutcome::differs
                                           : RowOutcome::failed;
}

const char *written_word(RowOutcome outcome) { return words.at(static_cast<std::size_t>(outcome)).second; }

std::optional<RowOutcome> written_outcome(std::string_view word) {
    const auto known =
        std::find_if(words.begin(), words.end(), [&](const auto &outcome) { return word == outcome.second; });
    return known == words.end() ? std::nullopt : std::optional(known->first);
}

const char *word_of(RowOutcome outcome) {
    return outcome == RowOutcome::begun ? "begonnen, Ausgang unbekannt" : written_word(outcome);
}

bool is_done(RowOutcome outcome) {
    return outcome == RowOutcome::succeeded || outcome == RowOutcome::objected ||
           outcome == RowOutcome::skipped;
}

std::string local_time(std::time_t time) {
    std::array<char, 32> text{};
    const std::tm *local = std::localtime(&time);
    const auto size = local ? std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", local) : 0;
    return {text.data(), size};
}

fs::path result_path(const fs::path &list) {
    fs::path path = list;
    return path.replace_filename(list.stem().concat("-ergebnis.csv"));
}

ResultFile::ResultFile(const fs::path &path, const DeviceList &list) : last_(list.rows.size()) {
    for (const DeviceList::Row &row : list.rows)
        rows_.push_back({row.line, row.name});
    const auto check = [&](int failed) {
        if (failed != 0)
            throw UsageError(refused(path, "lässt sich nicht schreiben. " + german_reason(failed)));
    };
    check(file_.open(path, header));
    const std::string all = table_bytes(path);
    // Some file systems leave zeros where the power went off.
    const std::string_view bytes = std::string_view(all).substr(0, all.find_last_not_of('\0') + 1);
    if (bytes != header && header.starts_with(bytes)) { // its making was not finished
        check(file_.cut(0));
        check(file_.append(header));
        return;
    }
    const std::size_t whole = bytes.rfind('\n') + 1;
    const std::string_view lines = bytes.substr(0, whole);
    if (!is_result_table(lines))
        throw UsageError(refused(path, "ist keine, die dieses Programm geschrieben hat."));
    read(parse_table(lines, text_of(path.filename()), most_attempts));
    check(whole != all.size() ? file_.cut(whole) : 0);
}

void ResultFile::read(const Table &table) {
    std::map<std::string, std::size_t> uses;
    for (const Identity &row : rows_)
        ++uses[row.name];
    std::map<std::string, std::size_t> by_identity;
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        const bool named = !rows_[i].name.empty() && uses[rows_[i].name] == 1;
        by_identity[named ? rows_[i].name : with_line(std::to_string(rows_[i].line), rows_[i].name)] = i;
    }
    for (auto row = table.rows.begin() + 1; row != table.rows.end(); ++row) {
        const std::size_t size = row->fields.size();
        if (is_heading(table_row(row->fields))) // several files were put together
            continue;
        const auto outcome = size == columns || size == columns - 1 ? written_outcome(row->fields[4])
                                                                    : std::optional<RowOutcome>();
        if (!outcome)
            throw UsageError(place(table.source, row->line) + ": das ist kein Ergebnis");
        const std::string name = as_it_was(row->fields[1]);
        auto found = by_identity.find(name);
        if (found == by_identity.end())
            found = by_identity.find(with_line(row->fields[0], name));
        if (found != by_identity.end())
            last_[found->second] = {.outcome = *outcome,
                                    .time = row->fields[2],
                                    .port = as_it_was(row->fields[3]),
                                    .message = as_it_was(row->fields[5]),
                                    .imei = size == columns ? row->fields[6] : ""};
    }
}

std::string ResultFile::append(std::size_t row, Attempt attempt) {
    return append({{row, std::move(attempt)}});
}

std::string ResultFile::append(std::vector<std::pair<std::size_t, Attempt>> attempts) {
    std::string lines;
    for (auto &[row, attempt] : attempts) {
        const Identity &of = rows_.at(row);
        const std::array<std::string, columns> fields = {std::to_string(of.line),
                                                         kept_a_text(of.name),
                                                         attempt.time,
                                                         kept_a_text(attempt.port),
                                                         written_word(attempt.outcome),
                                                         kept_a_text(attempt.message),
                                                         attempt.imei};
        lines += table_row(fields) + "\r\n";
        last_[row] = std::move(attempt);
    }
    const int failed = file_.append(lines);
    return failed == 0 ? "" : "Das Ergebnis ließ sich nicht aufschreiben. " + german_reason(failed);
}

std::vector<std::pair<std::string, std::size_t>>
ResultFile::counts(const std::vector<std::size_t> &rows) const {
    constexpr RowOutcome in_order[] = {RowOutcome::succeeded, RowOutcome::objected,  RowOutcome::differs,
                                       RowOutcome::failed,    RowOutcome::cancelled, RowOutcome::skipped,
                                       RowOutcome::begun};
    std::map<RowOutcome, std::size_t> count;
    std::size_t open = 0;
    for (const std::size_t row : rows)
        ++(last(row) ? count[last(row)->outcome] : open);
    std::vector<std::pair<std::string, std::size_t>> counts;
    for (const RowOutcome outcome : in_order)
        if (count.contains(outcome))
            counts.emplace_back(word_of(outcome), count[outcome]);
    if (open > 0)
        counts.emplace_back("offen", open);
    return counts;
}

} // namespace telvox
