#pragma once

#include "link/serial_port.hpp"
#include "ports/line.hpp"
#include "ports/port_map.hpp"

#include <QObject>
#include <optional>

namespace telvox {

/// The serial port on Qt: whatever stands behind the chosen number, a port of the system or a simulated
/// device. Events wait until the running handler has ended. A loss is reported once; until then the port has
/// reported it as often as it likes, and is closed.
class QtSerialPort final : public QObject, public SerialPort {
  public:
    explicit QtSerialPort(PortMap &ports) : ports_(ports) {}

    /// Who hears the events.
    std::function<void(CommEvent)> comm_event = [](CommEvent) {};

    void CommPort(int number) override { number_ = number; }
    [[nodiscard]] int CommPort() const override { return number_; }
    void Settings(const SerialFormat &format) override;
    std::string PortOpen(bool open) override;
    [[nodiscard]] bool PortOpen() const override { return line_ != nullptr; }
    /// Why the last opening failed; empty if it did not.
    [[nodiscard]] const os::Refusal &refusal() const { return refusal_; }
    void DTREnable(bool on) override;
    void Output(std::string_view bytes) override;
    std::string Input() override;
    bool drain(milliseconds limit) override;
    void watch_carrier(bool on) override;

  private:
    void report(CommEvent event);
    void deliver();
    void close();

    PortMap &ports_;
    int number_ = 0;
    SerialFormat format_;
    std::unique_ptr<Line> line_;
    os::Refusal refusal_;
    /// Reported by the open line, not yet delivered.
    struct {
        bool data = false, lost = false;
        std::optional<CommEvent> carrier; ///< the last change
        [[nodiscard]] bool any() const { return data || carrier || lost; }
    } waiting_;
};

} // namespace telvox
