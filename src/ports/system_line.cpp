#include "ports/line.hpp"
#include "ports/os.hpp"

#include <QDeadlineTimer>
#include <QSerialPort>
#include <QThread>
#include <QTimer>
#include <utility>

namespace telvox {

namespace {

constexpr std::chrono::milliseconds carrier_poll{200};
constexpr std::chrono::milliseconds port_poll{100};
constexpr unsigned long drain_poll_ms = 2;

QSerialPort::Parity parity_of(char letter) {
    return letter == 'e'   ? QSerialPort::EvenParity
           : letter == 'o' ? QSerialPort::OddParity
                           : QSerialPort::NoParity;
}

void apply(QSerialPort &port, const SerialFormat &format) {
    port.setBaudRate(format.baud);
    port.setParity(parity_of(format.parity));
    port.setDataBits(static_cast<QSerialPort::DataBits>(format.data_bits));
    port.setStopBits(static_cast<QSerialPort::StopBits>(format.stop_bits));
}

/// A line over a port of the system.
class SystemLine final : public QObject, public Line {
  public:
    explicit SystemLine(Report report) : report_(std::move(report)) {}

    ~SystemLine() override {
        port_.disconnect(this);
        if (!port_.isOpen())
            return;
        // What still waits would hold the closing up for as long as the system thinks fit.
        if (port_.bytesToWrite() > 0 || os::output_pending(port_.handle()))
            port_.clear(QSerialPort::Output);
        port_.close();
    }

    /// Returns why it could not be opened, empty when it was.
    os::Refusal open(const std::string &device, const SerialFormat &format) {
        if (const os::Refusal refusal = os::refusal(device); !refusal.empty())
            return refusal;
        // One device, one lock: behind all links, as other programs that lock ports see it.
        port_.setPortName(QString::fromStdString(os::real_name(device)));
        apply(port_, format); // before opening, or the first bytes run in another format
        if (!port_.open(QIODevice::ReadWrite))
            return cause_of_failure();
        if (!os::claim(port_.handle()))
            return port_busy;
        port_.setDataTerminalReady(true);
        // The devices use no flow control; an adapter that powers its line driver from RTS needs it on.
        port_.setRequestToSend(true);
        port_.clearError(); // a port without these pins is one all the same
        watch();
        return {};
    }

    void format(const SerialFormat &format) override { apply(port_, format); }
    void dtr(bool on) override { port_.setDataTerminalReady(on); }
    void write(std::string_view bytes) override {
        port_.write(bytes.data(), static_cast<qint64>(bytes.size()));
    }
    std::string read() override { return std::exchange(untold_, {}) + port_.readAll().toStdString(); }

    bool drain(milliseconds limit) override {
        const QDeadlineTimer deadline(limit);
        const auto left = [&] { return static_cast<int>(deadline.remainingTime()); };
        while (port_.bytesToWrite() > 0 && left() > 0)
            if (!port_.waitForBytesWritten(left()))
                return false;
        bool pending = os::output_pending(port_.handle());
        for (; pending && left() > 0; pending = os::output_pending(port_.handle()))
            QThread::msleep(drain_poll_ms);
        return port_.bytesToWrite() == 0 && !pending;
    }

    void watch_carrier(bool on) override {
        if (on == carrier_watch_.isActive())
            return;
        carrier_ = carrier();
        on ? carrier_watch_.start(carrier_poll) : carrier_watch_.stop();
    }

  private:
    void watch() {
        connect(&port_, &QSerialPort::readyRead, this, [this] {
            waiting_ = 0;
            if (carrier_watch_.isActive())
                look_at_carrier(); // not later than the words that a modem has for it
            report_(CommEvent::data);
        });
        connect(&port_, &QSerialPort::errorOccurred, this, [this](QSerialPort::SerialPortError error) {
            if (error == QSerialPort::ResourceError || error == QSerialPort::ReadError ||
                error == QSerialPort::WriteError || error == QSerialPort::DeviceNotFoundError)
                report_(CommEvent::lost);
        });
        connect(&carrier_watch_, &QTimer::timeout, this, [this] { look_at_carrier(); });
        connect(&port_watch_, &QTimer::timeout, this, [this] {
            if (os::hung_up(port_.handle()))
                report_(CommEvent::lost);
            else
                look_for_untold();
        });
        port_watch_.setTimerType(Qt::CoarseTimer);
        port_watch_.start(port_poll);
    }

    /// Bytes that waited for a whole turn of the watch, while nothing was told of, will not be told of.
    void look_for_untold() {
        const std::size_t before = std::exchange(waiting_, os::input_waiting(port_.handle()));
        if (before == 0 || waiting_ == 0)
            return;
        untold_ += port_.readAll().toStdString() + os::take_input(port_.handle(), std::exchange(waiting_, 0));
        report_(CommEvent::data);
    }

    void look_at_carrier() {
        if (const bool now = carrier(); now != carrier_) {
            carrier_ = now;
            report_(carrier_ ? CommEvent::carrier_rise : CommEvent::carrier_fall);
        }
    }

    [[nodiscard]] bool carrier() { return port_.pinoutSignals() & QSerialPort::DataCarrierDetectSignal; }

    [[nodiscard]] os::Refusal cause_of_failure() const {
        switch (port_.error()) {
        case QSerialPort::DeviceNotFoundError:
            return port_absent;
        case QSerialPort::PermissionError: // the user's rights are checked before, so it is a lock
        case QSerialPort::OpenError:
            return port_busy;
        default:
            return port_unusable;
        }
    }

    Report report_;
    QSerialPort port_;
    QTimer carrier_watch_;
    QTimer port_watch_;
    std::size_t waiting_ = 0; ///< at the last turn of that watch, and nothing told of since
    std::string untold_;
    bool carrier_ = false;
};

} // namespace

Opened open_system_line(const std::string &device, const SerialFormat &format, Report report) {
    auto line = std::make_unique<SystemLine>(std::move(report));
    if (const os::Refusal cause = line->open(device, format); !cause.empty())
        return {nullptr, cause};
    return {std::move(line), {}};
}

} // namespace telvox
