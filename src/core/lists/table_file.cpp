#include "core/lists/table_file.hpp"

#include "core/files/files.hpp"
#include "core/text.hpp"
#include "core/usage_error.hpp"

#include <algorithm>

namespace telvox {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t largest_file = 8 * 1024 * 1024;
/// More columns than any device has values.
constexpr std::size_t most_fields = 256;
constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
constexpr std::string_view line_ends = "\r\n";

[[noreturn]] void refuse(const std::string &where, std::string_view why) {
    throw UsageError(where + ": " + std::string(why));
}

/// No control characters, of either range, and none that stands for a byte without meaning.
bool belongs_to_a_text(char32_t point) {
    const bool control = point < 0x20 || (point >= 0x7F && point < 0xA0);
    return !control && point != 0xFFFD;
}

/// The line of a place in a text, counted from 1.
std::size_t line_of(std::string_view text, std::size_t at) {
    std::size_t line = 1;
    for (std::size_t i = 0; i < at; ++i)
        line += text[i] == '\n' || (text[i] == '\r' && text[i + 1] != '\n') ? 1 : 0;
    return line;
}

/// The text behind the bytes, made sure to be one.
std::string decoded(std::string_view bytes, const std::string &source) {
    if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF"))
        refuse(place(source, 1), "die Datei ist in UTF-16 gespeichert, gebraucht wird CSV in UTF-8");
    const bool marked = bytes.starts_with(byte_order_mark);
    if (marked)
        bytes.remove_prefix(byte_order_mark.size());
    std::string text = marked || valid_utf8(bytes) ? std::string(bytes) : from_line(bytes);
    Characters characters(text);
    for (auto c = characters.next(); !c.empty(); c = characters.next())
        if (c != "\r" && c != "\n" && c != "\t" && !belongs_to_a_text(code_point(c)))
            refuse(place(source, line_of(text, static_cast<std::size_t>(c.data() - text.data()))),
                   "das ist kein Text, gebraucht wird eine Tabelle als CSV");
    return text;
}

/// Takes the rows of a text one after the other.
class Reader {
  public:
    Reader(std::string_view text, const std::string &source) : rest_(text), source_(source) {
        std::string_view first = rest_.substr(0, rest_.find_first_of(line_ends));
        if (first.starts_with("sep=") || first.starts_with("\"sep=")) {
            const auto named = first.find('=') + 1;
            if (named == first.size() || (first[named] != ';' && first[named] != ','))
                refuse(place(source_, line_), "als Trennzeichen gehen nur ; und ,");
            separator_ = first[named];
            rest_.remove_prefix(first.size());
            end_line();
        } else {
            separator_ =
                first.find(';') == std::string_view::npos && first.find(',') != std::string_view::npos ? ','
                                                                                                       : ';';
        }
    }

    [[nodiscard]] bool at_end() const { return rest_.empty(); }

    Table::Row row() {
        Table::Row row{.line = line_, .fields = {}};
        for (;;) {
            if (row.fields.size() == most_fields)
                refuse(place(source_, line_), "mehr als " + std::to_string(most_fields) + " Felder");
            row.fields.push_back(field());
            if (!rest_.starts_with(separator_))
                break;
            rest_.remove_prefix(1);
        }
        end_line();
        return row;
    }

  private:
    std::string field() {
        if (rest_.starts_with('"'))
            return quoted_field();
        const std::string ends{separator_, '\r', '\n'};
        const std::string_view field = rest_.substr(0, rest_.find_first_of(ends));
        rest_.remove_prefix(field.size());
        return std::string(field);
    }

    std::string quoted_field() {
        const std::size_t begin = line_;
        std::string field;
        for (rest_.remove_prefix(1);; rest_.remove_prefix(1)) {
            const auto plain = rest_.substr(0, rest_.find_first_of("\"\r\n"));
            field += plain;
            rest_.remove_prefix(plain.size());
            if (rest_.empty())
                refuse(place(source_, begin), "ein Anführungszeichen wird nicht geschlossen");
            if (rest_.starts_with("\r\n"))
                rest_.remove_prefix(1);
            if (!rest_.starts_with('"')) {
                field += '\n';
                ++line_;
                continue;
            }
            rest_.remove_prefix(1);
            if (!rest_.starts_with('"'))
                break;
            field += '"';
        }
        if (!rest_.empty() && rest_[0] != separator_ && rest_[0] != '\r' && rest_[0] != '\n')
            refuse(place(source_, line_), "hinter einem schließenden Anführungszeichen steht noch Text");
        return field;
    }

    void end_line() {
        rest_.remove_prefix(rest_.starts_with("\r\n") ? 2 : rest_.empty() ? 0 : 1);
        ++line_;
    }

    std::string_view rest_;
    const std::string &source_;
    std::size_t line_ = 1;
    char separator_;
};

/// A field as it stands in a row: quoted where it must be, or where some spreadsheet would split it and
/// compute what stands behind.
std::string written(std::string_view text) {
    const std::string line = joined_lines(text);
    std::string plain;
    Characters characters(line);
    for (auto c = characters.next(); !c.empty(); c = characters.next())
        plain += c == "\t" || belongs_to_a_text(code_point(c)) ? c : "?";
    if (plain.find_first_of(";,\t\"") == std::string::npos)
        return plain;
    for (auto at = plain.find('"'); at != std::string::npos; at = plain.find('"', at + 2))
        plain.insert(at, 1, '"');
    return '"' + plain + '"';
}

/// Whether a spreadsheet would compute the cell, or the cell looks like one that was kept from it.
bool like_a_formula(std::string_view text) {
    const auto first = text.find_first_not_of('\'');
    return first != std::string_view::npos &&
           std::string_view("=+-@\t").find(text[first]) != std::string_view::npos;
}

} // namespace

std::string kept_a_text(const std::string &text) { return like_a_formula(text) ? "'" + text : text; }

std::string as_it_was(const std::string &cell) {
    return cell.starts_with('\'') && like_a_formula(cell) ? cell.substr(1) : cell;
}

bool is_table_under(std::string_view header, std::string_view bytes) {
    if (bytes.starts_with(byte_order_mark))
        bytes.remove_prefix(byte_order_mark.size());
    header.remove_prefix(byte_order_mark.size());
    return bytes.substr(0, bytes.find_first_of(line_ends)) == header.substr(0, header.size() - 2) &&
           valid_utf8(bytes);
}

Table parse_table(std::string_view bytes, std::string source, std::size_t most_rows) {
    Table table{.source = std::move(source), .rows = {}};
    const std::string text = decoded(bytes, table.source);
    for (Reader reader(text, table.source); !reader.at_end();) {
        Table::Row row = reader.row();
        if (std::all_of(row.fields.begin(), row.fields.end(),
                        [](const std::string &field) { return trimmed(field).empty(); }))
            continue;
        if (table.rows.size() > most_rows)
            refuse(place(table.source, row.line), "mehr als " + std::to_string(most_rows) + " Zeilen");
        table.rows.push_back(std::move(row));
    }
    return table;
}

Table read_table(const fs::path &file, std::size_t most_rows) {
    return parse_table(table_bytes(file), text_of(file.filename()), most_rows);
}

std::string table_bytes(const fs::path &file) { return whole_file(file, largest_file); }

std::string table_row(std::span<const std::string> fields) {
    std::string row;
    for (const std::string &field : fields)
        row += (row.empty() && &field == fields.data() ? "" : ";") + written(field);
    return row;
}

std::string place(const std::string &source, std::size_t line, const std::string &column) {
    return source + ", Zeile " + std::to_string(line) + (column.empty() ? "" : ", Spalte " + column);
}

std::string trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    const auto begin = text.find_first_not_of(blanks);
    return begin == std::string_view::npos
               ? std::string()
               : std::string(text.substr(begin, text.find_last_not_of(blanks) + 1 - begin));
}

} // namespace telvox
