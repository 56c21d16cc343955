#pragma once

#include "simulator/ethernet.hpp"

#include <map>
#include <vector>

namespace telvox::simulator {

/// A TCP connection into the simulated network, seen from the host. At its far end a module asks for user
/// name and password and then takes commands at its prompt.
class Connection {
  public:
    enum class State {
        connecting, ///< no answer yet; for ever where nobody has the address
        open,
        rejected,
        closed, ///< by either side; what came before can still be taken
    };

    /// `module`: who has the address, null for nobody.
    Connection(std::shared_ptr<Ethernet> module, int port, Time now);
    ~Connection() { close(); }
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    [[nodiscard]] State state(Time now) const;
    /// Bytes that the host sent; those for a connection that is not open are lost.
    void receive(std::string_view bytes, Time now);
    /// Takes the bytes that have reached the host by now: one packet, or several that lay together.
    std::string transmit(Time now);
    /// When `state` or `transmit` next has something new.
    [[nodiscard]] std::optional<Time> next() const;
    /// The host closes.
    void close();

  private:
    enum class Asks { user, password, command };
    struct Packet {
        Time arrives;
        std::string bytes;
    };

    /// Takes a byte of the host's; whether it is text and not part of an answer to an option request.
    bool is_text(char byte);
    void run_line(const std::string &line, Time at);
    void run_command(const std::string &line, Time at);
    bool misbehaves(std::string_view step, Time at);
    void say(std::string_view text, Time at);
    void end(Time at);

    std::shared_ptr<Ethernet> module_;
    Time answered_at_; ///< when the host knows whether it is open or rejected
    bool accepted_ = false;
    bool closed_by_host_ = false;
    std::optional<Time> ends_; ///< when the module closes it
    Time seen_;                ///< up to here the host has looked
    Time flood_at_;
    std::deque<Packet> packets_;
    Asks asks_ = Asks::user;
    std::string user_;
    int failures_ = 0;
    std::string option_; ///< the begin of an answer to an option request
    LineCollector line_;
};

/// The network of the simulated modules: bytes and time, no socket. All calls are answered from the modules'
/// present state.
class Network {
  public:
    explicit Network(std::vector<std::shared_ptr<Ethernet>> modules) : modules_(std::move(modules)) {}

    /// Sends one echo request; the time until its answer, or nothing when none comes.
    std::optional<Time> ping(std::string_view address, Time now);
    /// Sets the host's static entry of an address; the MAC address with "-" or ":", in either case. False,
    /// and nothing set, when one of them is not well-formed.
    bool bind(std::string_view address, std::string_view mac);
    /// Opens a connection; how it went shows in its state.
    std::unique_ptr<Connection> connect(std::string_view address, int port, Time now);

  private:
    std::shared_ptr<Ethernet> module_at(std::string_view address, Time now);

    std::vector<std::shared_ptr<Ethernet>> modules_;
    std::map<std::string, std::string, std::less<>> bound_; ///< MAC address by address
    int pings_ = 0;
};

} // namespace telvox::simulator
