#include "ui/form.hpp"

#include "core/text.hpp"

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
bool dialling_characters(char32_t c) { return digits_plus(c) || c == U'*' || c == U'#'; }

std::string TextField::filtered(std::string_view input) const {
    std::string kept;
    Characters characters(input);
    std::size_t count = 0;
    for (auto c = characters.next(); !c.empty() && (max_length == 0 || count < max_length);
         c = characters.next()) {
        if (!accepts(code_point(c)))
            continue;
        kept += c;
        ++count;
    }
    return kept;
}

void ComboBox::write(std::string_view input) {
    text = filtered(input);
    changed();
}

void Form::load() {
    if (!open)
        reset();
    wants_front = open;
    open = true;
}

} // namespace telvox
