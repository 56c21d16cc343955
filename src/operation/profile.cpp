#include "operation/profile.hpp"

#include "core/files/files.hpp"
#include "core/lists/table_file.hpp"
#include "core/text.hpp"
#include "core/usage_error.hpp"

#include <sstream>

namespace telvox::operation {

namespace {

/// A profile is some lines; whatever is longer was not meant.
constexpr std::size_t largest_file = 65536;

constexpr std::string_view first_line = "# Telvox-A Profil\n";

/// The one dialog that has a name, nullptr if none has; several are refused.
const Section *dialog_with(const std::string &name, const std::string &from) {
    const Section *found = nullptr;
    for (const Section &section : sections()) {
        if (!find_option(section.options, name))
            continue;
        if (found)
            throw UsageError(from + "\"" + name + "\" gibt es mehrmals; es gehört hinter eine Zeile [" +
                             found->name + "] oder [" + section.name + "]");
        found = &section;
    }
    return found;
}

bool of_main_window(const std::string &name) {
    return find_option(way_options(), name) || find_option(alarm_options(), name) ||
           find_option(around_options(), name);
}

/// Reads one line after the other.
class Reader {
  public:
    Reader(const std::string &source, const JobCommand *job) : source_(source), job_(job) {}

    void take(const std::string &line) {
        where_ = source_ + ", Zeile " + std::to_string(++number_);
        if (line.empty() || line.starts_with('#'))
            return;
        const auto equals = line.find('=');
        if (line.starts_with('[') && line.ends_with(']'))
            begin(line.substr(1, line.size() - 2));
        else if (equals == std::string::npos)
            throw UsageError(where_ + ": " + "\"" + line + "\" hat nicht die Form name=wert");
        else
            take(line.substr(0, equals), line.substr(equals + 1));
    }
    Profile profile;

  private:
    void begin(const std::string &name) {
        section_ = find_section(name);
        if (!section_)
            throw UsageError(where_ + ": " + "den Abschnitt [" + name + "] gibt es nicht");
    }

    void take(const std::string &name, const std::string &value) {
        const Place from{.kind = Place::Kind::file, .name = name, .where = where_};
        if (!values_for(name).emplace(name, Given{value, from}).second)
            throw UsageError(from, " ist doppelt angegeben");
    }

    Values &values_for(const std::string &name) {
        if (section_) {
            if (!find_option(section_->options, name))
                throw UsageError(where_ + ": " + "\"" + name + "\" gibt es nicht in [" + section_->name +
                                 "]");
            return profile.dialogs[section_];
        }
        if (job_ ? find_option(*job_, name) != nullptr : of_main_window(name))
            return profile.main;
        if (job_)
            throw UsageError(where_ + ": " + "\"" + name + "\" ist keine Angabe von " + job_->name);
        if (const Section *dialog = dialog_with(name, where_ + ": "))
            return profile.dialogs[dialog];
        throw UsageError(where_ + ": " + "\"" + name + "\" gibt es nicht");
    }

    const std::string &source_;
    const JobCommand *job_;
    const Section *section_ = nullptr;
    std::string where_;
    int number_ = 0;
};

/// Whether the user could reach a control, its window open.
bool reachable(const Control &control) {
    return control.enabled && control.visible && (!control.within || reachable(*control.within));
}

/// Whether what an option says can be said of the windows as they are.
bool has_value(const Option &option, Desk &desk) {
    if (option.format)
        return true;
    if (option.field) {
        const Control &field = option.field(desk);
        const auto *list = dynamic_cast<const ComboBox *>(&field);
        return reachable(field) && !(list && !list->editable && list->text.empty());
    }
    for (const Word &word : option.words)
        if (const auto &button = dynamic_cast<const OptionButton &>(word.button(desk)); button.value)
            return reachable(button);
    return option.pick && reachable(option.pick->opens(desk)) && !value_of(option, desk).empty();
}

/// A text without the mark that an editor may have put before it. PowerShell's ">" writes UTF-16.
std::string checked(std::string text, const std::string &source) {
    if (text.starts_with("\xEF\xBB\xBF"))
        text.erase(0, 3);
    else if (text.starts_with("\xFF\xFE"))
        text = from_utf16(text.substr(2));
    if (text.find('\0') != std::string::npos || !valid_utf8(text))
        throw UsageError(source + " ist kein Text (UTF-8).");
    return text;
}

void append(std::string &text, std::span<const Option> options, const Values &values) {
    for (const Option &option : options)
        if (const auto found = values.find(option.name); found != values.end())
            text += std::string(option.name) + "=" +
                    (option.means ? option.means(found->second.value) : found->second.value) + "\n";
}

} // namespace

std::string profile_of_stream(std::istream &stream, const std::string &source) {
    std::string text(largest_file + 1, '\0');
    stream.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(stream.gcount()));
    if (stream.bad())
        throw UsageError(source + " lässt sich nicht lesen.");
    if (text.size() > largest_file)
        throw UsageError(source + " ist größer als 64 KB.");
    return checked(std::move(text), source);
}

std::string profile_of_file(const std::string &path) {
    return checked(whole_file(path_of(path), largest_file), "\"" + path + "\"");
}

Profile parse_profile(const std::string &text, const std::string &source, const JobCommand *job) {
    Reader reader(source, job);
    std::istringstream lines(text);
    for (std::string line; read_line(lines, line);)
        reader.take(line);
    return std::move(reader.profile);
}

void add(Order &order, const Profile &profile) {
    if (const Section *section = section_of(*order.job))
        if (const auto dialog = profile.dialogs.find(section); dialog != profile.dialogs.end())
            add(order, dialog->second);
    add(order, profile.main);
}

Values values_of(std::span<const Option> options, Desk &desk, bool secrets) {
    Values values;
    for (const Option &option : options)
        if ((!option.secret || secrets) && has_value(option, desk))
            values[option.name] = {value_of(option, desk), {}};
    return values;
}

Values main_window_values(Desk &desk, bool with_ports) {
    Values values;
    for (const std::span<const Option> options : {way_options(), alarm_options()})
        for (const Option &option : options) {
            const bool port = option.field && dynamic_cast<const ComboBox *>(&option.field(desk));
            const bool locked = option.field && option.needs.empty() && !option.field(desk).holds().empty();
            if (port ? with_ports && locked : has_value(option, desk) || locked)
                values[option.name] = {value_of(option, desk), {}};
        }
    return values;
}

std::string as_row(const Values &values) {
    std::vector<std::string> fields;
    for (const auto &[name, given] : values)
        fields.push_back(name + "=" + (find_option(name)->secret ? Mask::hidden : given.value));
    return table_row(fields);
}

Values values_of_row(const std::string &row) {
    Values values;
    for (const Table::Row &line : parse_table("sep=;\n" + row, "", 1).rows)
        for (const std::string &field : line.fields)
            values[field.substr(0, field.find('='))] = {field.substr(field.find('=') + 1), {}};
    return values;
}

std::string profile_text(Desk &desk, const Profile &known, bool secrets) {
    std::string text(first_line);
    append(text, way_options(), values_of(way_options(), desk, secrets));
    append(text, alarm_options(), values_of(alarm_options(), desk, secrets));
    append(text, around_options(), known.main); // no window holds it
    for (const Section &section : sections()) {
        const auto in_profile = known.dialogs.find(&section);
        Values values;
        if (section.form(desk).was_open)
            values = values_of(section.options, desk, secrets);
        else if (in_profile != known.dialogs.end())
            values = in_profile->second;
        for (const Option &option : section.options)
            if (option.secret && !secrets)
                values.erase(option.name);
        if (values.empty())
            continue;
        text += std::string("\n[") + section.name + "]\n";
        append(text, section.options, values);
    }
    return text;
}

} // namespace telvox::operation
