#pragma once

#include "simulator/escape_watch.hpp"
#include "simulator/unit.hpp"
#include "simulator/wire.hpp"

#include <map>
#include <memory>

namespace telvox::simulator {

/// Who answers a call, by the last digit of the number.
using Subscribers = std::map<char, std::shared_ptr<Unit>>;

/// A local modem on the telephone network. It takes the serial format of the host, dials, and carries bytes
/// to the device that answers. The carrier line is on as long as the call lasts.
class LocalModem final : public Device {
  public:
    /// A call that nobody takes is given up after this time.
    static constexpr Time ring_limit{45'000};

    explicit LocalModem(Subscribers subscribers);

    void open(bool on, Time now) override;
    void format(const SerialFormat &format, Time now) override;
    /// DTR off hangs up at once.
    void dtr(bool on, Time now) override;
    void receive(std::string_view bytes, Time now) override;
    std::string transmit(Time now) override;
    [[nodiscard]] bool carrier(Time now) override;
    [[nodiscard]] std::optional<Time> next() const override;

    /// Switch: the line breaks in mid-call.
    void drop_carrier(Time now);

    bool busy = false; ///< switch: whoever is called is engaged
    bool echo = false; ///< switch: command lines come back as they are typed

  private:
    enum class State { command, dialling, online, escaped };

    static const Command<LocalModem> commands[];

    void run(Time now);
    void hear(char byte, Time at);
    void run_line(std::string_view line);
    void timer_ran_out();
    void say(std::string_view text);
    Reply dial(std::string_view number);
    Reply go_online();
    void hang_up();
    void lose_carrier();

    Subscribers subscribers_;
    std::shared_ptr<Unit> called_; ///< device that rings or is in the call
    State state_ = State::command;
    Time now_{0};
    std::optional<Time> timer_; ///< end of the ringing, or of the silence behind an escape
    EscapeWatch escape_;
    LineCollector line_;
    SerialFormat host_;
    Wire from_host_;
    Wire to_host_;
    bool open_ = false;
};

} // namespace telvox::simulator
