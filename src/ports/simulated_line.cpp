#include "ports/line.hpp"

#include <QObject>
#include <QTimer>
#include <algorithm>

namespace telvox {

namespace {

/// A line to a simulated device. Between two events of the device nothing runs.
class SimulatedLine final : public QObject, public Line {
  public:
    SimulatedLine(SimulatedPort &port, const SerialFormat &format, Report report)
        : port_(port), device_(*port.device), report_(std::move(report)) {
        wake_.setSingleShot(true);
        wake_.setTimerType(Qt::PreciseTimer);
        connect(&wake_, &QTimer::timeout, this, [this] { collect(); });
        port_.in_use = true;
        device_.format(format, now());
        device_.open(true, now());
        sleep();
    }

    ~SimulatedLine() override {
        device_.open(false, now());
        port_.in_use = false;
    }

    void format(const SerialFormat &format) override {
        device_.format(format, now());
        sleep();
    }

    void dtr(bool on) override {
        device_.dtr(on, now());
        sleep();
    }

    void write(std::string_view bytes) override {
        device_.receive(bytes, now());
        if (device_.plug() == simulator::Plug::pulled)
            report_(CommEvent::lost);
        sleep();
    }

    std::string read() override { return std::exchange(received_, {}); }

    /// The device has every byte as soon as it is written.
    bool drain(milliseconds) override { return device_.plug() != simulator::Plug::jammed; }

    void watch_carrier(bool on) override {
        if (on && !watches_carrier_)
            carrier_ = device_.carrier(now());
        watches_carrier_ = on;
    }

  private:
    [[nodiscard]] simulator::Time now() const { return simulator::Time(port_.clock.elapsed()); }

    void collect() {
        received_ += device_.transmit(now());
        if (!received_.empty())
            report_(CommEvent::data);
        if (const bool carrier = device_.carrier(now()); watches_carrier_ && carrier != carrier_) {
            carrier_ = carrier;
            report_(carrier_ ? CommEvent::carrier_rise : CommEvent::carrier_fall);
        }
        sleep();
    }

    /// Until the device next has something.
    void sleep() {
        const auto next = device_.next();
        if (!next)
            return wake_.stop();
        wake_.start(std::max(*next - now(), simulator::Time(1)));
    }

    SimulatedPort &port_;
    simulator::Device &device_;
    Report report_;
    QTimer wake_;
    std::string received_;
    bool watches_carrier_ = false;
    bool carrier_ = false;
};

} // namespace

Opened open_simulated_line(SimulatedPort &port, const SerialFormat &format, Report report) {
    if (port.in_use || port.device->plug() == simulator::Plug::occupied)
        return {nullptr, port_busy};
    return {std::make_unique<SimulatedLine>(port, format, std::move(report)), {}};
}

} // namespace telvox
