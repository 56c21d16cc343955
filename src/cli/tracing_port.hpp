#pragma once

#include "cli/mask.hpp"
#include "core/timer.hpp"
#include "link/serial_port.hpp"

#include <functional>
#include <string>
#include <string_view>

namespace telvox::cli {

/// Shows the dialogue on a port line by line while it passes it on: the time in milliseconds, then "-> " and
/// what was sent, or "<- " and what came. Secrets stay hidden.
class TracingPort final : public SerialPort {
  public:
    using Print = std::function<void(const std::string &line)>;
    using Clock = std::function<milliseconds()>;
    TracingPort(SerialPort &port, Mask mask, Clock now, Print print)
        : port_(port), mask_(std::move(mask)), now_(std::move(now)), print_(std::move(print)) {}

    void CommPort(int number) override { port_.CommPort(number); }
    [[nodiscard]] int CommPort() const override { return port_.CommPort(); }
    void Settings(const SerialFormat &format) override { port_.Settings(format); }
    std::string PortOpen(bool open) override;
    [[nodiscard]] bool PortOpen() const override { return port_.PortOpen(); }
    void DTREnable(bool on) override { port_.DTREnable(on); }
    void Output(std::string_view bytes) override;
    std::string Input() override;
    void drain(milliseconds limit) override { port_.drain(limit); }
    void watch_carrier(bool on) override { port_.watch_carrier(on); }

  private:
    void received(char byte);
    void flush(bool line_ended);
    void show(milliseconds at, const char *direction, std::string_view bytes);

    SerialPort &port_;
    Mask mask_;
    Clock now_;
    Print print_;
    std::string line_;     ///< received, not yet ended
    milliseconds began_{}; ///< when its first byte came
    bool rest_is_secret_ = false;
};

/// Bytes of the line as one line of text: control characters as "\x1B".
[[nodiscard]] std::string visible(std::string_view bytes);

} // namespace telvox::cli
