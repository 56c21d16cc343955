#include "ui/port_lists.hpp"

#include "core/port_choice.hpp"

#include <algorithm>

namespace telvox {

void connect_port_lists(Desk &desk, PortScan &scan) {
    desk.frmModem.cobModem_Port.got_focus =
        desk.frmModem.cobSchnittstelle.got_focus = [&] { prz_freie_Schnittstellen(desk, scan); };
}

namespace {

/// "COM 1 (/dev/ttyUSB0): keine Berechtigung"
std::string refused(const PortInfo &port) {
    return port_entry(port.number) + (port.device.empty() ? "" : " (" + port.device + ")") + ": " +
           port.in_short;
}

void fill(ComboBox &list, const std::vector<std::string> &entries) {
    list.items = entries;
    const bool nothing_chosen = list.text.empty();
    if (std::find(entries.begin(), entries.end(), list.text) == entries.end())
        list.text.clear();
    if (nothing_chosen && entries.size() == 1)
        list.write(entries.front());
}

} // namespace

void prz_freie_Schnittstellen(Desk &desk, PortScan &scan) {
    desk.observers.tell(&Observer::wants_ports);
    desk.ports = scan.ports();
    std::vector<std::string> entries, tool_tips;
    std::string refusals;
    for (const PortInfo &port : desk.ports) {
        if (!port.refusal.empty()) {
            refusals += "\r" + refused(port);
            continue;
        }
        entries.push_back(port_entry(port.number));
        tool_tips.push_back(port.device + (port.device.empty() || port.description.empty() ? "" : "\n") +
                            port.description);
    }
    std::string tool_tip = refusals.empty() ? "" : "Nicht verfügbar:" + refusals;
    std::replace(tool_tip.begin(), tool_tip.end(), '\r', '\n');
    for (ComboBox *list : {&desk.frmModem.cobModem_Port, &desk.frmModem.cobSchnittstelle}) {
        fill(*list, entries);
        list->item_tool_tips = tool_tips;
        list->tool_tip = tool_tip;
    }
    if (entries.empty())
        desk.outbox.show({.text = "Kein COM-Port verfügbar" + (refusals.empty() ? "" : "\r" + refusals),
                          .title = port_error_title,
                          .icon = Icon::exclamation});
}

} // namespace telvox
