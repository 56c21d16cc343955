#pragma once

#include "link/receive_buffer.hpp"
#include "link/serial_port.hpp"

#include <string>
#include <string_view>

namespace telvox {

/// The line to the device or to the local modem: the port `comSeriell`, and what came in.
class Link {
  public:
    explicit Link(SerialPort &port) : comSeriell(port) {}

    /// Sends one command line (UTF-8): the text and one carriage return, in one write. No line feed, nothing
    /// escaped, no waiting.
    void prz_Daten_senden(std::string_view strDaten);
    /// Writes text to the line as it is, for the escape "+++" and what is typed character by character.
    void send_raw(std::string_view text);

    SerialPort &comSeriell;
    ReceiveBuffer strCOM_Eingang;
};

} // namespace telvox
