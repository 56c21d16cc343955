#include "ui/snapshot.hpp"

namespace telvox {

Snapshot::Snapshot(Desk &desk) {
    keep(desk.session);
    keep(desk.ports);
    for (Form *form : desk.forms) {
        keep(form->open);
        keep(form->was_open);
        keep(form->wants_focus);
        keep(form->wants_front);
        for (Control *control : form->controls())
            keep_control(*control);
    }
}

Snapshot::Snapshot(std::span<Control *const> controls) {
    for (Control *control : controls)
        keep_control(*control);
}

void Snapshot::restore() const {
    for (const auto &restorer : restorers_)
        restorer();
}

void Snapshot::keep_control(Control &control) {
    keep(control.caption);
    keep(control.tool_tip);
    keep(control.enabled);
    keep(control.visible);
    if (auto *option = dynamic_cast<OptionButton *>(&control))
        keep(option->value);
    if (auto *check = dynamic_cast<CheckBox *>(&control))
        keep(check->value);
    if (auto *field = dynamic_cast<TextField *>(&control)) {
        keep(field->text);
        keep(field->max_length);
    }
    if (auto *list = dynamic_cast<ComboBox *>(&control)) {
        keep(list->items);
        keep(list->item_tool_tips);
    }
    if (auto *list = dynamic_cast<ListBox *>(&control)) {
        keep(list->items);
        keep(list->selected);
    }
    if (auto *picture = dynamic_cast<Picture *>(&control))
        keep(picture->file);
    if (auto *bar = dynamic_cast<ProgressBar *>(&control)) {
        keep(bar->value);
        keep(bar->maximum);
    }
    if (auto *panel = dynamic_cast<StatusPanel *>(&control))
        keep(panel->text);
}

} // namespace telvox
