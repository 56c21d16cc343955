#include "telvox.hpp"

#include "core/port_choice.hpp"
#include "dialogues/families.hpp"
#include "ui/launches.hpp"

#include <algorithm>
#include <utility>

namespace telvox {

Telvox::Telvox(const Ports &ports, DataFolders folders)
    : ports_(ports),
      folders_(std::move(folders)),
      link_(ports.comSeriell),
      sequencer_({.desk = desk,
                  .panel = desk,
                  .jobs = desk.jobs,
                  .session = desk.session,
                  .link = link_,
                  .timer = ports.Timer1,
                  .outbox = desk.outbox,
                  .families = family_of}) {
    connect_handlers(desk, sequencer_, link_, ports_.scanner);
    sequencer_.prz_Initialisieren();
    prz_Einstellungen_laden(desk.session, folders_.settings);
    desk.frmModem.open = true;
    desk.frmModem.compute();
}

template <class Handler> void Telvox::event(Handler &&handler) {
    handler();
    if (ports_.comSeriell.PortOpen())
        ports_.comSeriell.watch_carrier(desk.jobs.boolAnwahl_Fehler || desk.jobs.carrier_up);
    desk.frmModem.compute();
    redraw();
    for (const Message &message : desk.outbox.take())
        ports_.boxes.show(message);
}

void Telvox::click(Button &button) {
    if (button.usable())
        event([&] { button.clicked(); });
}

void Telvox::click(MenuEntry &entry) {
    if (entry.usable())
        event([&] { entry.clicked(); });
}

void Telvox::choose(OptionButton &option) {
    if (option.usable())
        event([&] { option.choose(); });
}

void Telvox::set(CheckBox &box, bool on) {
    if (box.usable())
        event([&] { box.set(on); });
}

void Telvox::enter(TextBox &box, std::string_view input) {
    if (box.usable() && !box.read_only)
        event([&] { box.text = box.filtered(input); });
}

void Telvox::select(ComboBox &list, std::string_view entry) {
    if (list.usable() && std::find(list.items.begin(), list.items.end(), entry) != list.items.end())
        event([&] { list.text = entry; });
}

void Telvox::focus(ComboBox &list) {
    if (list.usable())
        event([&] { list.got_focus(); });
}

void Telvox::close(Form &form) {
    if (form.cancel)
        click(*form.cancel);
    else
        event([&] { form.unload(); });
}

void Telvox::Timer1_Timer() {
    event([&] { sequencer_.Timer1_Timer(); });
}

void Telvox::comSeriell_OnComm(CommEvent reason) {
    event([&] { sequencer_.comSeriell_OnComm(reason); });
}

void Telvox::offer_port(int number) {
    event([&] {
        for (ComboBox *list : {&desk.frmModem.cobModem_Port, &desk.frmModem.cobSchnittstelle})
            list->items.push_back(port_entry(number));
    });
}

void Telvox::Form_Unload() {
    ports_.Timer1.Enabled(false);
    sequencer_.close_port();
}

} // namespace telvox
