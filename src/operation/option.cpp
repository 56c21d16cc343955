#include "operation/option.hpp"

#include "core/serial_format.hpp"

#include <cctype>
#include <vector>

namespace telvox::operation {

namespace {

/// A device may have anything in store; a line of output has one line.
std::string kept(const Control &control) {
    const auto *field = dynamic_cast<const TextField *>(&control);
    return field ? field->filtered(field->text) : control.holds();
}

} // namespace

std::string value_of(const Option &option, Desk &desk) {
    for (const Word &word : option.words)
        if (dynamic_cast<const OptionButton &>(word.button(desk)).value)
            return word.word;
    if (option.format) { // the port gets the usual format where the session holds none that it could have
        const std::string &held = desk.session.*option.format;
        const bool remote = option.format == &Session::strCOMparameter_fern;
        return parse_format(held) ? held : remote ? default_fern : default_direkt;
    }
    if (option.combos)
        return (desk.frmEinstellungen.*option.combos).settings();
    if (option.pick)
        return option.pick->taken(desk);
    return option.field ? kept(option.field(desk)) : std::string();
}

std::string value_lines(std::span<const Option> options, Desk &desk) {
    std::string lines;
    for (const Option &option : options)
        lines += std::string(option.name) + "=" + value_of(option, desk) + "\n";
    lines.pop_back();
    return lines;
}

std::string rule_of(KeyFilter accepts) {
    if (accepts(U'Z') && accepts(U' '))
        return "keine Steuerzeichen";
    std::vector<std::string> kinds;
    if (accepts(U'9'))
        kinds.emplace_back("Ziffern");
    if (accepts(U'A'))
        kinds.emplace_back(accepts(U'Z') ? "Buchstaben" : "A bis F");
    for (char32_t c = U'!'; c <= U'~'; ++c)
        if (const char mark = static_cast<char>(c);
            !std::isalnum(static_cast<unsigned char>(mark)) && accepts(c))
            kinds.emplace_back(1, mark);
    std::string rule = "nur ";
    for (std::size_t i = 0; i < kinds.size(); ++i)
        rule += (i == 0 ? "" : i + 1 == kinds.size() ? " und " : ", ") + kinds[i];
    return rule;
}

} // namespace telvox::operation
