#pragma once

#include "link/serial_port.hpp"
#include "sequencer/sequencer.hpp"
#include "ui/desk.hpp"

namespace telvox {

/// Gives the buttons and menu entries of all windows their click handlers. `scanner` is the port object that
/// the port lists try the ports with.
void connect_handlers(Desk &desk, Sequencer &sequencer, const Link &link, SerialPort &scanner);

/// Fills both port lists with the ports that can be opened at this moment, each tried with `scanner`, but
/// leaves them as they are while the session has its own port open. A chosen port that is still there stays
/// chosen. A box says so if there is none.
void prz_freie_Schnittstellen(Desk &desk, const Link &link, SerialPort &scanner);

} // namespace telvox
