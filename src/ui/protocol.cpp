#include "ui/jobs.hpp"

namespace telvox {

void connect_protocol(Desk &desk) {
    TickEntry &entry = desk.frmModem.mnuProtokoll;
    desk.remembered = read_remembered(desk.folders.settings);
    entry.value = desk.remembered.protocol;
    entry.clicked = [&desk, &entry] {
        desk.remembered.protocol = entry.value = !entry.value;
        write_remembered(desk.folders.settings, desk.remembered);
    };
}

} // namespace telvox
