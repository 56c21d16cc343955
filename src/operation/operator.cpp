#include "operation/operator.hpp"

#include "core/port_choice.hpp"
#include "core/serial_format.hpp"
#include "core/text.hpp"
#include "core/usage_error.hpp"

#include <algorithm>
#include <iterator>
#include <sstream>

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
    throw UsageError(given.from + ": \"" + given.value + "\" gibt es nicht (" + known + ")");
}

std::vector<std::string> split(const std::string &text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

void check_format(const Given &given) {
    if (!parse_format(given.value))
        throw UsageError(given.from + ": \"" + given.value +
                         "\" ist keine Angabe wie 2400,e,8,1 (Baudrate, Parität, Daten- und Stoppbits)");
}

std::string no_such_format(const std::string &value) {
    return ": \"" + value + "\" steht in den Einstellungen nicht zur Wahl";
}

/// Why a field keeps another text than it was given.
std::string why_not(const Option &option, const std::string &value, const std::string &kept,
                    KeyFilter accepts, std::size_t limit) {
    Characters characters(value);
    for (auto c = characters.next(); !c.empty(); c = characters.next())
        if (!accepts(code_point(c)))
            return rule_of(accepts) + (c == "+" ? "; + als 00 eingeben" : "");
    if (limit != 0 && length(value) > limit)
        return "mehr als " + std::to_string(limit) + " Zeichen";
    if (limit != 0 && length(func_Text_prüfen(value)) > limit)
        return "mehr als " + std::to_string(limit) + " Zeichen (ß zählt als zwei)";
    return option.secret ? "nicht möglich" : "nicht möglich, daraus würde \"" + kept + "\"";
}

} // namespace

bool Operator::work(const Order &order) {
    Values values = order.values;
    if (const std::string variant = variant_for(order); !variant.empty())
        values.emplace("--typ", Given{variant, "--typ"});
    fill_main_window(values);
    if (order.save && !save_formats(order))
        return false;
    open_dialog(order);
    press(order);
    return true;
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
    for (const char *name : {"--verbindung", "--typ", "--verbindung"})
        choose_given(name);
    fill(alarm_options(), values);
    fill(way_options(), values);
}

bool Operator::keep(const Order &order) {
    if (!order.job->afterwards)
        return true;
    auto &button = dynamic_cast<Button &>(order.job->afterwards(program_.desk));
    program_.click(button);
    return !button.form->open;
}

std::string Operator::variant_for(const Order &order) {
    const std::vector<std::string> possible = split(order.job->variants);
    const Given *variant = order.find("--typ");
    if (possible.empty() || (!variant && possible.size() == 1))
        return only_variant(*order.job);
    std::string words;
    for (const std::string &word : possible)
        words += (words.empty() ? "" : " oder ") + word;
    if (!variant)
        throw UsageError(std::string(order.job->name) + ": --typ " + words + " fehlt");
    const Word &chosen = word_of(*find_option("--typ"), *variant);
    if (std::find(possible.begin(), possible.end(), chosen.word) == possible.end())
        throw UsageError(std::string(order.job->name) + " gibt es nur mit --typ " + words);
    return chosen.word;
}

void Operator::fill(std::span<const Option> options, const Values &values) {
    const auto given_of = [&](const Option &option) {
        const std::string_view name(option.name);
        return name == "--typ" || name == "--verbindung" ? nullptr : find(values, option.name);
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
    if (auto *box = dynamic_cast<TextBox *>(&field))
        return enter(option, *box, given);
    if (auto *check = dynamic_cast<CheckBox *>(&field))
        return tick(option, *check, given);
    auto &list = dynamic_cast<ComboBox &>(field);
    list.editable ? type(option, list, given) : choose_port(list, given);
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

void Operator::tick(const Option &option, CheckBox &box, const Given &given) {
    const bool on = same_word(given.value, "ein");
    if (!on && !same_word(given.value, "aus"))
        throw UsageError(given.from + ": \"" + given.value + "\" gibt es nicht (ein, aus)");
    if (box.value == on)
        return;
    unlock(option, box, given);
    program_.set(box, on);
}

void Operator::enter(const Option &option, TextBox &box, const Given &given) {
    if (box.text == given.value)
        return;
    unlock(option, box, given);
    program_.enter(box, given.value);
    program_.leave(box);
    if (box.text != given.value)
        throw UsageError(given.from + ": " +
                         why_not(option, given.value, box.text, box.accepts, box.max_length));
}

void Operator::type(const Option &option, ComboBox &list, const Given &given) {
    if (list.text == given.value)
        return;
    unlock(option, list, given);
    program_.select(list, given.value);
    if (list.text != given.value)
        throw UsageError(given.from + ": " +
                         why_not(option, given.value, list.text, list.accepts, list.max_length));
}

void Operator::choose_port(ComboBox &list, const Given &given) {
    require_usable(given.from, list);
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
        throw UsageError(
            given.from + ": \"" + given.value +
            "\" ist weder eine COM-Nummer von 1 bis 15 noch ein vorhandenes Gerät, für das eine frei ist");
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
        throw UsageError(given.from + no_such_format(given.value));
}

void Operator::pick(const Pick &pick, const Given &given) {
    const auto found = entries_with(pick.entries(program_.desk), given.value);
    if (found.empty())
        throw UsageError(given.from + ": kein Eintrag der Liste enthält \"" + given.value + "\"");
    std::string labels;
    for (const ServiceNumber &entry : found)
        labels += (labels.empty() ? " " : "; ") + single_spaced(entry.label);
    if (found.size() > 1)
        throw UsageError(given.from + ": mehrere Einträge enthalten \"" + given.value + "\":" + labels);
    auto &opens = dynamic_cast<Button &>(pick.opens(program_.desk));
    require_usable(given.from, opens);
    program_.click(opens);
    auto &list = dynamic_cast<ListBox &>(pick.list(program_.desk));
    require_usable(given.from, list); // the other list opens for the other variants
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
    const auto check = [&](const char *option, const SerialCombos &combos) {
        const Given *given = form.open ? order.find(option) : nullptr;
        if (given && combos.settings() != given->value)
            throw UsageError(given->from + no_such_format(given->value));
    };
    check("--com-direkt", form.direkt);
    check("--com-fern", form.fern);
}

void Operator::unlock(const Option &option, const Control &field, const Given &given) {
    for (const ControlOf need : option.needs) {
        if (field.usable())
            return;
        Control &control = need(program_.desk);
        require_usable(given.from, control);
        if (auto *button = dynamic_cast<OptionButton *>(&control))
            program_.choose(*button);
        else
            program_.set(dynamic_cast<CheckBox &>(control), true);
    }
    require_usable(given.from, field);
}

void Operator::require_usable(const std::string &what, const Control &control) const {
    if (control.usable())
        return;
    std::string situation;
    for (const char *name : {"--typ", "--verbindung", "--nachricht"}) {
        const std::string word = value_of(*find_option(name), program_.desk);
        if (word != "sms")
            situation += (situation.empty() ? "" : " ") + std::string(name) + " " + word;
    }
    throw UsageError(what + " gibt es nicht mit " + situation);
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
