#include "ui/form.hpp"

#include "core/text.hpp"
#include "link/mask.hpp"

#include <algorithm>
#include <utility>

namespace telvox {

Control::Control(Form &owner, const char *control_name, std::string control_caption, Control *around)
    : form(&owner), name(control_name), caption(std::move(control_caption)), within(around) {
    owner.controls_.push_back(this);
}

bool Control::usable() const { return form->open && enabled && visible && (!within || within->usable()); }

void OptionButton::choose() {
    for (Control *control : form->controls())
        if (auto *option = dynamic_cast<OptionButton *>(control); option && option->within == within)
            option->value = option == this;
    clicked();
}

bool OptionButton::take(std::string_view on) {
    if (on != "ein" || value)
        return false;
    choose();
    return true;
}

bool CheckBox::take(std::string_view on) {
    if (on != "ein" && on != "aus")
        return false;
    set(on == "ein");
    return true;
}

void CheckBox::set(bool on) {
    value = on;
    clicked();
}

bool any_character(char32_t c) {
    const bool control = c < 0x20 || (c >= 0x7F && c < 0xA0);
    const bool line_break = c == 0x2028 || c == 0x2029;
    return !control && !line_break && c != 0xFFFD;
}
bool digits(char32_t c) { return c >= U'0' && c <= U'9'; }
bool digits_dot(char32_t c) { return digits(c) || c == U'.'; }
bool digits_plus(char32_t c) { return digits(c) || c == U'+'; }
bool digits_star(char32_t c) { return digits(c) || c == U'*'; }
bool hexadecimal_dash(char32_t c) {
    return digits(c) || (c >= U'a' && c <= U'f') || (c >= U'A' && c <= U'F') || c == U'-';
}
bool dialling_characters(char32_t c) { return digits_plus(c) || c == U'*' || c == U'#'; }

namespace {

struct Refusal {
    KeyFilter filter;
    const char *text;
};
constexpr Refusal refusals[] = {{digits, "Nur Ziffern"},
                                {digits_plus, "Nur Ziffern und +"},
                                {digits_star, "Nur Ziffern und *"},
                                {dialling_characters, "Nur Ziffern, +, * und #"}};

/// An international number with "00" for its "+" and without the "(0)" that is not dialled with it; other
/// texts, and a "+" alone, as they are.
std::string without_plus(std::string_view number) {
    const auto plus = number.find_first_of("+0123456789");
    if (plus == std::string_view::npos || number[plus] != '+' ||
        number.find_first_of("0123456789", plus) == std::string_view::npos)
        return std::string(number);
    std::string plain = "00" + std::string(number.substr(plus + 1));
    constexpr std::string_view not_dialled = "(0)";
    if (const auto at = plain.find(not_dialled); at != std::string::npos)
        plain.erase(at, not_dialled.size());
    return plain;
}

} // namespace

std::string TextField::filtered(std::string_view input) const {
    return filtered(input, max_length != 0 ? max_length : std::string_view::npos);
}

std::string TextField::filtered(std::string_view input, std::size_t room) const {
    const std::string plain = phone_number ? without_plus(input) : std::string(input);
    std::string kept;
    Characters characters(plain);
    for (auto c = characters.next(); !c.empty(); c = characters.next()) {
        constexpr char32_t malformed = 0xFFFD;
        const char32_t point = code_point(c);
        if (point == malformed || !accepts(point))
            continue;
        const std::size_t needed = counted(c);
        if (needed > room)
            break;
        room -= needed;
        kept += c;
    }
    return kept;
}

std::size_t TextField::counted(std::string_view input) const {
    std::size_t count = 0;
    Characters characters(input);
    for (auto c = characters.next(); !c.empty(); c = characters.next())
        count += counts_as_sent ? length(func_Text_prüfen(c)) : 1;
    return count;
}

std::string TextField::refusal(std::string_view character) const {
    if (!filtered(character, std::string_view::npos).empty())
        return "Mehr als " + std::to_string(max_length) + " Zeichen passen nicht";
    if (phone_number && character == "+")
        return "Nur Ziffern; + als 00 eingeben";
    for (const Refusal &refusal : refusals)
        if (refusal.filter == accepts)
            return refusal.text;
    return "Dieses Zeichen passt hier nicht";
}

bool TextBox::take(std::string_view typed) {
    text = filtered(typed);
    lost_focus();
    return true;
}

Input TextBox::input() const { return {"enter", secret ? Mask::hidden : text}; }

void ComboBox::write(std::string_view typed) {
    text = filtered(typed);
    changed();
}

bool ComboBox::take(std::string_view entry) {
    if (!editable && std::find(items.begin(), items.end(), entry) == items.end())
        return false;
    write(entry);
    return true;
}

void Form::load() {
    if (!open)
        reset();
    wants_front = open;
    open = was_open = true;
}

} // namespace telvox
