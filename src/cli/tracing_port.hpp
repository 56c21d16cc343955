#pragma once

#include "link/serial_port.hpp"

#include <functional>
#include <string>
#include <string_view>

namespace telvox::cli {

/// Shows the dialogue on a port line by line while it passes it on: "-> " what was sent, "<- " what came.
class TracingPort final : public SerialPort {
  public:
    using Print = std::function<void(const std::string &line)>;
    TracingPort(SerialPort &port, Print print) : port_(port), print_(std::move(print)) {}

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
    void flush();

    SerialPort &port_;
    Print print_;
    std::string line_; ///< received, not yet ended
};

/// Bytes of the line as one line of text: control characters as "\x1B".
[[nodiscard]] std::string visible(std::string_view bytes);

} // namespace telvox::cli
