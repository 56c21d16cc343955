#include "ui/port_lists.hpp"

#include "core/port_choice.hpp"

#include <algorithm>

namespace telvox {

void connect_port_lists(Desk &desk, const Link &link, PortScan &scan) {
    desk.frmModem.cobModem_Port.got_focus =
        desk.frmModem.cobSchnittstelle.got_focus = [&] { prz_freie_Schnittstellen(desk, link, scan); };
}

void prz_freie_Schnittstellen(Desk &desk, const Link &link, PortScan &scan) {
    if (link.comSeriell.PortOpen())
        return; // a hang-up still runs: its port is taken, but it is there
    desk.ports = scan.ports();
    std::vector<std::string> entries, tool_tips;
    for (const PortInfo &port : desk.ports) {
        desk.session.bytePortzaehler = static_cast<Counter>(port.number);
        if (!port.refusal.empty())
            continue;
        entries.push_back(port_entry(port.number));
        tool_tips.push_back(port.device + (port.device.empty() || port.description.empty() ? "" : "\n") +
                            port.description);
    }
    for (ComboBox *list : {&desk.frmModem.cobModem_Port, &desk.frmModem.cobSchnittstelle}) {
        list->items = entries;
        list->item_tool_tips = tool_tips;
        if (std::find(entries.begin(), entries.end(), list->text) == entries.end())
            list->text.clear();
    }
    if (entries.empty())
        desk.outbox.show(
            {.text = "Kein COM-Port verfügbar", .title = port_error_title, .icon = Icon::exclamation});
}

} // namespace telvox
