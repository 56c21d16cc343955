#include "operation/operator.hpp"

#include "core/port_choice.hpp"
#include "core/serial_format.hpp"
#include "core/text.hpp"
#include "core/usage_error.hpp"
#include "operation/profile.hpp"

#include <algorithm>

namespace telvox::operation {

namespace {

bool same_word(std::string_view typed, std::string_view word) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 0x20) : c; };
    return std::equal(typed.begin(), typed.end(), word.begin(), word.end(),
                      [&](char t, char w) { return lower(t) == w; });
}

OptionButton &button_of(const Word &word, Desk &desk) {
    return dynamic_cast<OptionButton &>(word.button(desk));
}

/// The word that a value is. Throws UsageError, naming those that there are.
const Word &word_of(const Option &option, const Given &given) {
    std::string known;
    for (const Word &word : option.words) {
        if (same_word(given.value, word.word))
            return word;
        known += (known.empty() ? "" : ", ") + std::string(word.word);
    }
    throw UsageError(given.from, ": \"" + given.value + "\" gibt es nicht (" + known + ")");
}

void check_format(const Given &given) {
    if (!parse_format(given.value))
        throw UsageError(given.from,
                         ": \"" + given.value +
                             "\" ist keine Angabe wie 2400,e,8,1 (Baudrate, Parität, Daten- und Stoppbits)");
}

std::string no_such_format(const std::string &value) {
    return ": \"" + value + "\" steht in den Einstellungen nicht zur Wahl";
}

/// Why a field keeps another text than it was given.
std::string why_not(const Option &option, const std::string &value, const TextField &field) {
    Characters characters(value);
    for (auto c = characters.next(); !c.empty(); c = characters.next())
        if (!field.accepts(code_point(c)))
            return rule_of(field.accepts) + (c == "+" ? "; + als 00 eingeben" : "");
    const std::size_t limit = field.max_length;
    if (limit != 0 && length(value) > limit)
        return "mehr als " + std::to_string(limit) + " Zeichen";
    if (limit != 0 && field.counted(value) > limit)
        return "mehr als " + std::to_string(limit) + " Zeichen (ß zählt als zwei)";
    return option.secret ? "nicht möglich" : "nicht möglich, daraus würde \"" + field.text + "\"";
}

bool is_number(const TextField &field) {
    return field.phone_number || field.accepts == digits_plus || field.accepts == digits;
}

/// What goes into a field: in numbers blanks only help to read.
std::string plain(const Control &field, std::string value) {
    if (const auto *text = dynamic_cast<const TextField *>(&field); text && is_number(*text))
        std::erase(value, ' ');
    return value;
}

} // namespace

bool Operator::begin(const Order &order) {
    fill_main_window(with_variant(order));
    return !order.save || save_formats(order);
}

bool Operator::work(const Order &order) {
    if (!begin(order))
        return false;
    open_dialog(order);
    press(order);
    return true;
}

void Operator::fill_in(const Order &order) {
    fill_main_window(with_variant(order));
    open_dialog(order);
}

void Operator::open_dialog(const Order &order) {
    if (order.job->menu && !order.job->button(program_.desk).form->open) {
        auto &entry = dynamic_cast<MenuEntry &>(order.job->menu(program_.desk));
        require_usable(order.job->name, entry);
        program_.click(entry);
        check_formats_shown(order);
    }
    fill(order.job->options, order.values);
}

void Operator::press(const Order &order) {
    pressed_ = true;
    if (order.job->look)
        return order.job->look(program_);
    auto &button = dynamic_cast<Button &>(order.job->button(program_.desk));
    require_usable(order.job->name, button);
    program_.click(button);
}

void Operator::fill_main_window(const Values &values) {
    const auto choose_given = [&](const char *name) {
        if (const Given *given = find(values, name))
            choose(*find_option(name), *given);
    };
    // A variant may depend on the way or reset it, so the way is chosen before it and, if reset, after it.
    for (const char *name : {"verbindung", "typ", "verbindung"})
        choose_given(name);
    fill(alarm_options(), values);
    fill(way_options(), values);
}

void Operator::begin_with(const Values &base) {
    program_.begin_again(as_row(base), [&] {
        for (const char *name : {"verbindung", "typ", "verbindung"})
            if (const Given *given = find(base, name))
                put_back(*find_option(name), *given);
        for (const std::span<const Option> options : {alarm_options(), way_options()})
            for (const Option &option : options)
                if (const Given *given = find(base, option.name); given && !is_switch(option.name))
                    put_back(option, *given);
    });
}

/// A field that is locked gets its text all the same: it had it.
void Operator::put_back(const Option &option, const Given &given) {
    try {
        put(option, given);
    } catch (const UsageError &) {
        auto *field = option.field ? dynamic_cast<TextField *>(&option.field(program_.desk)) : nullptr;
        if (!field)
            return;
        if (const auto port = parse_port_number(given.value); port && dynamic_cast<ComboBox *>(field))
            program_.offer_port(*port);
        field->text = field->filtered(given.value);
    }
}

bool Operator::keep(const Order &order) {
    if (!order.job->afterwards)
        return true;
    auto &button = dynamic_cast<Button &>(order.job->afterwards(program_.desk));
    program_.click(button);
    return !button.form->open;
}

/// The order's values, and the variant where its job has only one and none is given or chosen.
Values Operator::with_variant(const Order &order) {
    Values values = order.values;
    const std::span<const ModemType> possible = order.job->variants;
    const Option &option = *find_option("typ");
    const Given *variant = order.find("typ");
    const std::string chosen = variant ? word_of(option, *variant).word : value_of(option, program_.desk);
    if (possible.empty() || std::any_of(possible.begin(), possible.end(),
                                        [&](ModemType type) { return chosen == operation::word_of(type); }))
        return values;
    const std::string only =
        std::string(order.job->name) + " gibt es nur mit typ " + words_of(possible, " oder ");
    if (variant)
        throw UsageError(variant->from, ": " + only);
    if (possible.size() > 1)
        throw UsageError(only);
    values.emplace("typ", Given{operation::word_of(possible.front()), {}});
    return values;
}

void Operator::fill(std::span<const Option> options, const Values &values) {
    const auto given_of = [&](const Option &option) {
        return is_switch(option.name) ? nullptr : find(values, option.name);
    };
    for (const Option &option : options)
        if (const Given *given = given_of(option))
            put(option, *given);
    // Filling a field may have switched on what it needs; what was asked for has the last word, the outermost
    // switch last of all.
    for (auto option = options.rbegin(); option != options.rend(); ++option)
        if (const Given *given = given_of(*option))
            put_again(*option, *given);
}

void Operator::put(const Option &option, const Given &given) {
    if (!option.words.empty())
        return choose(option, given);
    if (option.format)
        return set_format(option, given);
    if (option.combos)
        return set_combos(option, given);
    if (option.pick)
        return pick(*option.pick, given);
    Control &field = option.field(program_.desk);
    if (auto *list = dynamic_cast<ComboBox *>(&field); list && !list->editable)
        return choose_port(option, *list, given);
    enter(option, field, given);
}

void Operator::put_again(const Option &option, const Given &given) {
    const bool check = option.field && dynamic_cast<CheckBox *>(&option.field(program_.desk));
    if (check || !option.words.empty())
        put(option, given);
}

void Operator::choose(const Option &option, const Given &given) {
    OptionButton &button = button_of(word_of(option, given), program_.desk);
    if (button.value)
        return;
    unlock(option, button, given);
    program_.choose(button);
}

void Operator::enter(const Option &option, Control &field, const Given &given) {
    const auto *text = dynamic_cast<const TextField *>(&field);
    const std::string value = plain(field, given.value);
    if (!text && !same_word(value, "ein") && !same_word(value, "aus"))
        throw UsageError(given.from, ": \"" + value + "\" gibt es nicht (ein, aus)");
    const std::string wanted = text ? value : in_small_letters(value);
    if (field.holds() == wanted)
        return;
    unlock(option, field, given);
    program_.put(field, wanted);
    if (field.holds() != wanted)
        throw UsageError(given.from, ": " + why_not(option, wanted, *text));
}

void Operator::choose_port(const Option &option, ComboBox &list, const Given &given) {
    unlock(option, list, given);
    const int number = port_number(given);
    program_.offer_port(number);
    program_.select(list, port_entry(number));
}

int Operator::port_number(const Given &given) {
    if (const auto number = parse_port_number(given.value))
        return *number;
    // Anything else is a device; one that is not there would get a number that says nothing to anybody.
    const bool numeric = given.value.find_first_not_of("0123456789") == std::string::npos;
    const bool device = !numeric && !same_word(given.value.substr(0, 3), "com");
    const int number = device ? ports_.number_of(given.value) : 0;
    if (number == 0)
        throw UsageError(given.from, ": \"" + given.value +
                                         "\" ist weder eine COM-Nummer von 1 bis 15 noch ein vorhandenes "
                                         "Gerät, für das eine frei ist");
    paths_[port_entry(number)] = given.value;
    return number;
}

void Operator::set_format(const Option &option, const Given &given) {
    check_format(given);
    program_.set_format(option.format, given.value);
}

void Operator::set_combos(const Option &option, const Given &given) {
    check_format(given);
    const SerialCombos &combos = program_.desk.frmEinstellungen.*option.combos;
    unlock(option, combos.baud, given);
    const SerialFormat format = *parse_format(given.value);
    program_.select(combos.baud, std::to_string(format.baud));
    program_.select(combos.bits, std::to_string(format.data_bits));
    for (const std::string &parity : combos.parity.items)
        if (parity.front() == format.parity)
            program_.select(combos.parity, parity);
    program_.select(combos.stop, std::to_string(format.stop_bits));
    if (combos.settings() != given.value)
        throw UsageError(given.from, no_such_format(given.value));
}

void Operator::pick(const Pick &pick, const Given &given) {
    const auto found = entries_with(pick.entries(program_.desk), given.value);
    if (found.empty())
        throw UsageError(given.from, ": kein Eintrag der Liste enthält \"" + given.value + "\"");
    std::string labels;
    for (const ServiceNumber &entry : found)
        labels += (labels.empty() ? " " : "; ") + single_spaced(entry.label);
    if (found.size() > 1)
        throw UsageError(given.from, ": mehrere Einträge enthalten \"" + given.value + "\":" + labels);
    auto &opens = dynamic_cast<Button &>(pick.opens(program_.desk));
    auto &list = dynamic_cast<ListBox &>(pick.list(program_.desk));
    program_.click(opens);
    if (!list.usable()) { // locked, or the other list has opened, for the other variants
        for (Form *form : {static_cast<Form *>(&program_.desk.frmService_Center),
                           static_cast<Form *>(&program_.desk.frmServicenummer)})
            program_.dismiss(*form);
        throw UsageError(given.from, not_with(given.from));
    }
    const auto entry = std::find(list.items.begin(), list.items.end(), found[0].label);
    program_.select(list, static_cast<int>(entry - list.items.begin()));
    program_.click(dynamic_cast<Button &>(pick.ok(program_.desk)));
}

bool Operator::save_formats(const Order &order) {
    FrmEinstellungen &form = program_.desk.frmEinstellungen;
    program_.click(program_.desk.frmModem.mnuEinstellungen);
    check_formats_shown(order);
    program_.click(form.cmdOK);
    return !form.open;
}

void Operator::check_formats_shown(const Order &order) const {
    const FrmEinstellungen &form = program_.desk.frmEinstellungen;
    const Given *given = form.open ? order.find("com-direkt") : nullptr;
    if (given && form.direkt.settings() != given->value)
        throw UsageError(given->from, no_such_format(given->value));
}

void Operator::unlock(const Option &option, const Control &field, const Given &given) {
    for (const ControlOf need : option.needs) {
        if (field.usable())
            return;
        Control &control = need(program_.desk);
        if (!control.usable())
            throw UsageError(given.from, not_with(given.from));
        program_.put(control, "ein");
    }
    if (field.usable())
        return;
    const bool other_way = option.way && value_of(*find_option("verbindung"), program_.desk) != option.way;
    throw UsageError(given.from, other_way
                                     ? std::string(": gehört ") + option.belongs_to + "; " +
                                           given.from.named("verbindung") + " auf " + option.way + " setzen"
                                     : not_with(given.from));
}

void Operator::require_usable(const std::string &job, const Control &control) const {
    if (!control.usable())
        throw UsageError(job + not_with({}));
}

/// " gibt es nicht mit --typ gsm --verbindung direkt"
std::string Operator::not_with(const Place &from) const {
    const bool call = from.kind == Place::Kind::call;
    std::string situation;
    for (const char *name : {"typ", "verbindung", "nachricht"})
        if (const std::string word = value_of(*find_option(name), program_.desk); word != "sms")
            situation += (situation.empty() ? ""
                          : call            ? " "
                                            : ", ") +
                         (call ? from.named(name) : name) + " " + word;
    return " gibt es nicht mit " + situation;
}

std::string Operator::by_path(std::string message) const {
    for (const auto &[entry, path] : paths_) {
        const auto at = message.find(entry);
        const auto behind = at == std::string::npos ? at : at + entry.size();
        if (behind != std::string::npos &&
            (behind == message.size() || message[behind] < '0' || message[behind] > '9'))
            message.replace(at, entry.size(), path);
    }
    return message;
}

std::string Operator::named_by_check(const Order &order) const {
    for (const std::span<const Option> options : {order.job->options, way_options(), alarm_options()})
        for (const Option &option : options)
            if (option.field)
                if (const Control &field = option.field(program_.desk); field.form->wants_focus == &field)
                    return option.name;
    return {};
}

} // namespace telvox::operation
