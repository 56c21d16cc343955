#include "core/lists/device_list.hpp"

#include "core/text.hpp"
#include "core/usage_error.hpp"

#include <algorithm>

namespace telvox {

namespace {

std::vector<std::string> column_names(const Table &table,
                                      const std::function<bool(std::string_view)> &known) {
    std::vector<std::string> names;
    const Table::Row &header = table.rows.front();
    const std::string where = place(table.source, header.line) + ": ";
    for (const std::string &field : header.fields)
        names.push_back(in_small_letters(trimmed(field)));
    while (names.back().empty()) // a row without any text is none
        names.pop_back();
    for (auto name = names.begin(); name != names.end(); ++name) {
        if (name->empty())
            throw UsageError(where + "Spalte " + std::to_string(name - names.begin() + 1) +
                             " hat keinen Namen");
        if (*name != name_column && *name != job_column && !known(*name))
            throw UsageError(where + "eine Spalte \"" + first_characters(*name, 40) +
                             "\" gibt es nicht; die erste Zeile benennt die Spalten");
        if (std::find(names.begin(), name, *name) != name)
            throw UsageError(where + "Spalte " + *name + " ist doppelt");
    }
    return names;
}

void check_fields(const Table &table, const Table::Row &row, const std::vector<std::string> &names) {
    const auto filled = std::find_if(row.fields.rbegin(), row.fields.rend(),
                                     [](const std::string &field) { return !trimmed(field).empty(); });
    const std::string counted =
        ": " + std::to_string(row.fields.size()) + " Felder statt " + std::to_string(names.size());
    if (row.fields.size() < names.size())
        throw UsageError(place(table.source, row.line) + counted + ", Spalte " + names[row.fields.size()] +
                         " fehlt");
    if (row.fields.rend() - filled > static_cast<std::ptrdiff_t>(names.size()))
        throw UsageError(place(table.source, row.line) + counted + ", hinter Spalte " + names.back() +
                         " steht noch etwas");
    for (std::size_t i = 0; i < names.size(); ++i)
        if (row.fields[i].find('\n') != std::string::npos)
            throw UsageError(place(table.source, row.line, names[i]) +
                             ": in der Zelle ist ein Zeilenumbruch");
}

} // namespace

DeviceList device_list(const Table &table, const std::function<bool(std::string_view)> &known) {
    if (table.rows.empty())
        throw UsageError(table.source + ": die Tabelle ist leer");
    const std::vector<std::string> names = column_names(table, known);
    if (table.rows.size() == 1)
        throw UsageError(table.source + ": unter der Kopfzeile steht keine Zeile");
    DeviceList list{.source = table.source, .columns = {}, .rows = {}};
    const auto is_option = [](const std::string &name) { return name != name_column && name != job_column; };
    std::copy_if(names.begin(), names.end(), std::back_inserter(list.columns), is_option);
    for (auto row = table.rows.begin() + 1; row != table.rows.end(); ++row) {
        check_fields(table, *row, names);
        DeviceList::Row device{.line = row->line, .name = {}, .job = {}, .cells = {}};
        for (std::size_t i = 0; i < names.size(); ++i) {
            const std::string text = trimmed(row->fields[i]);
            if (is_option(names[i]))
                device.cells.push_back(text.empty() ? text : row->fields[i]);
            else
                (names[i] == name_column ? device.name : device.job) = text;
        }
        device.job = device.job.empty() ? default_job : in_small_letters(device.job);
        list.rows.push_back(std::move(device));
    }
    return list;
}

DeviceList read_device_list(const std::filesystem::path &file,
                            const std::function<bool(std::string_view)> &known) {
    return device_list(read_table(file, most_devices), known);
}

std::string label_of(const DeviceList::Row &row) {
    return "Zeile " + std::to_string(row.line) + (row.name.empty() ? "" : ", " + row.name);
}

} // namespace telvox
