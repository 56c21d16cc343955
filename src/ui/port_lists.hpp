#pragma once

#include "core/port_scan.hpp"
#include "ui/desk.hpp"

namespace telvox {

/// Fills both port lists with the ports that can be opened at this moment. A chosen port that is still there
/// stays chosen; where nothing was, a single port is chosen. A box says so if there is none, and why those
/// that are there cannot be opened; where others can, the lists' tool tip says it.
void prz_freie_Schnittstellen(Desk &desk, PortScan &scan);

/// Has the lists filled when they get the focus or are opened.
void connect_port_lists(Desk &desk, PortScan &scan);

} // namespace telvox
