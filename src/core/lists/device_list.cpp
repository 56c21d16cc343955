#include "core/lists/device_list.hpp"

#include "core/text.hpp"
#include "core/usage_error.hpp"

#include <algorithm>

namespace telvox {

namespace {

std::vector<std::string> column_names(const Table &table, const ColumnOption &option_of) {
    std::vector<std::string> names;
    Mistakes mistakes;
    const Table::Row &header = table.rows.front();
    const std::string where = place(table.source, header.line) + ": ";
    for (const std::string &field : header.fields)
        names.push_back(in_small_letters(trimmed(field)));
    while (names.back().empty()) // a row without any text is none
        names.pop_back();
    for (auto name = names.begin(); name != names.end(); ++name) {
        const std::string written = *name;
        if (written.empty())
            mistakes.add(where + "Spalte " + std::to_string(name - names.begin() + 1) + " hat keinen Namen");
        else if (written != name_column && written != job_column && (*name = option_of(written)).empty())
            mistakes.add(where + "eine Spalte \"" + first_characters(written, 40) +
                         "\" gibt es nicht; die erste Zeile benennt die Spalten");
        else if (std::find(names.begin(), name, *name) != name)
            mistakes.add(where + "Spalte " + written + " ist doppelt");
    }
    mistakes.check();
    return names;
}

void check_fields(const Table &table, const Table::Row &row, const std::vector<std::string> &names,
                  Mistakes &mistakes) {
    const auto filled = std::find_if(row.fields.rbegin(), row.fields.rend(),
                                     [](const std::string &field) { return !trimmed(field).empty(); });
    const std::string counted =
        ": " + std::to_string(row.fields.size()) + " Felder statt " + std::to_string(names.size());
    if (row.fields.size() < names.size())
        return mistakes.add(place(table.source, row.line) + counted + ", Spalte " + names[row.fields.size()] +
                            " fehlt");
    if (row.fields.rend() - filled > static_cast<std::ptrdiff_t>(names.size()))
        mistakes.add(place(table.source, row.line) + counted + ", hinter Spalte " + names.back() +
                     " steht noch etwas");
    for (std::size_t i = 0; i < names.size(); ++i)
        if (row.fields[i].find('\n') != std::string::npos)
            mistakes.add(place(table.source, row.line, names[i]) + ": in der Zelle ist ein Zeilenumbruch");
}

} // namespace

DeviceList device_list(const Table &table, const ColumnOption &option_of) {
    if (table.rows.empty())
        throw UsageError(table.source + ": die Tabelle ist leer");
    const std::vector<std::string> names = column_names(table, option_of);
    if (table.rows.size() == 1)
        throw UsageError(table.source + ": unter der Kopfzeile steht keine Zeile");
    DeviceList list{.source = table.source, .columns = {}, .rows = {}};
    const auto is_option = [](const std::string &name) { return name != name_column && name != job_column; };
    std::copy_if(names.begin(), names.end(), std::back_inserter(list.columns), is_option);
    Mistakes mistakes;
    for (auto row = table.rows.begin() + 1; row != table.rows.end(); ++row)
        check_fields(table, *row, names, mistakes);
    mistakes.check();
    for (auto row = table.rows.begin() + 1; row != table.rows.end(); ++row) {
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

DeviceList read_device_list(const std::filesystem::path &file, const ColumnOption &option_of) {
    return device_list(read_table(file, most_devices), option_of);
}

std::string label_of(const DeviceList::Row &row) {
    return "Zeile " + std::to_string(row.line) + (row.name.empty() ? "" : ", " + row.name);
}

} // namespace telvox
