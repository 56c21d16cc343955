#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace telvox {

/// A table as a spreadsheet saves it (CSV). Rows without any text are left out.
struct Table {
    struct Row {
        std::size_t line; ///< of the file, counted from 1, in which the row begins
        std::vector<std::string> fields;
    };
    std::string source; ///< the file's name, as messages name it
    std::vector<Row> rows;
};

/// Takes the bytes of a table: UTF-8, with or without its mark, or else Windows-1252; separated by ";", or by
/// "," if the first line has no ";", or by what an Excel line "sep=;" says; fields in quotes may hold
/// separators, doubled quotes and line breaks (any of CR LF, LF and CR; "\n" in the field). Throws UsageError
/// naming the line for what is no text, for a quote that does not end, and for more than `most_rows` below
/// the first.
[[nodiscard]] Table parse_table(std::string_view bytes, std::string source, std::size_t most_rows);

/// Reads a table from a file.
[[nodiscard]] Table read_table(const std::filesystem::path &file, std::size_t most_rows);

/// All bytes of a file. Throws UsageError where it cannot be read, or is larger than any table (8 MB).
[[nodiscard]] std::string table_bytes(const std::filesystem::path &file);

/// Fields as one row of a table, separated by ";", without a line's end. What a table cannot hold becomes
/// "?", line breaks become blanks.
[[nodiscard]] std::string table_row(std::span<const std::string> fields);

/// An apostrophe makes a cell that a spreadsheet would compute a text; it is taken off again, and only where
/// it was put.
[[nodiscard]] std::string kept_a_text(const std::string &text);
[[nodiscard]] std::string as_it_was(const std::string &cell);

/// Whether bytes are a table of this program: UTF-8 under this line of names, which begins with the mark and
/// ends with CR LF; an editor may have changed both.
[[nodiscard]] bool is_table_under(std::string_view header, std::string_view bytes);

/// How messages name a place: "pumpen.csv, Zeile 3, Spalte typ"; without a column, of the whole line.
[[nodiscard]] std::string place(const std::string &source, std::size_t line, const std::string &column = {});

/// A text without the blanks around it.
[[nodiscard]] std::string trimmed(std::string_view text);

} // namespace telvox
