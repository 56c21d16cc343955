#pragma once

#include "core/timer.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace telvox {

/// One TCP connection from this computer (port). Its owner reports what arrives to the program's
/// `Winsock_DataArrival`, never from inside a call. A connection that is refused, dropped or never made
/// reports nothing: whoever waits has a time-out anyway.
class TcpClient {
  public:
    virtual ~TcpClient() = default;
    /// Opens a connection to an address of digits and dots; one that was there is closed.
    virtual void connect(const std::string &address, int port) = 0;
    /// Sends bytes and returns at once; without a connection they are lost.
    virtual void send(std::string_view bytes) = 0;
    /// Closes at once; what still comes is not reported.
    virtual void close() = 0;
};

/// A program of the system and its arguments, handed over one by one: no shell ever reads them.
struct ShellCommand {
    std::string program;
    std::vector<std::string> arguments;
};

/// How a program came out.
struct ProcessEnd {
    std::string cause; ///< why it could not be started (German); empty: it was
    bool killed = false;
    int exit_status = 0;
    std::string output; ///< all that it said, at most 64 KB (UTF-8)
};

/// Runs the system's programs, hidden, one at a time (port). Its owner reports the end to the program's
/// `process_ended`, never from inside a call.
class Processes {
  public:
    /// Whose tools there are: those that Windows brings along, or Linux.
    enum class Tools { of_windows, of_linux };

    virtual ~Processes() = default;
    [[nodiscard]] virtual Tools tools() const = 0;
    /// Starts a program; one that runs longer than the limit is killed, and so is one that still runs.
    virtual void run(const ShellCommand &command, milliseconds limit) = 0;
    /// Ends the running program at once; nothing is reported.
    virtual void kill() = 0;
};

} // namespace telvox
