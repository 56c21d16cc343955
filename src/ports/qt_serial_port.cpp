#include "ports/qt_serial_port.hpp"

#include <utility>

namespace telvox {

void QtSerialPort::Settings(const SerialFormat &format) {
    format_ = format;
    if (line_)
        line_->format(format);
}

std::string QtSerialPort::PortOpen(bool open) {
    if (!open || line_) {
        if (!open)
            close();
        return {};
    }
    refusal_ = {};
    Port *port = ports_.find(number_);
    if (!port)
        return (refusal_ = port_absent).sentence;
    const auto reporter = [this](CommEvent event) { report(event); };
    auto [line, cause] = port->simulated ? open_simulated_line(*port->simulated, format_, reporter)
                                         : open_system_line(port->device, format_, reporter);
    line_ = std::move(line);
    return (refusal_ = cause).sentence;
}

void QtSerialPort::DTREnable(bool on) {
    if (line_)
        line_->dtr(on);
}

void QtSerialPort::Output(std::string_view bytes) {
    if (line_)
        line_->write(bytes);
}

std::string QtSerialPort::Input() { return line_ ? line_->read() : std::string(); }

bool QtSerialPort::drain(milliseconds limit) { return !line_ || line_->drain(limit); }

void QtSerialPort::watch_carrier(bool on) {
    if (line_)
        line_->watch_carrier(on);
}

void QtSerialPort::report(CommEvent event) {
    if (!waiting_.any())
        QMetaObject::invokeMethod(
            this, [this] { deliver(); }, Qt::QueuedConnection);
    if (event == CommEvent::carrier_rise || event == CommEvent::carrier_fall)
        waiting_.carrier = event;
    else
        (event == CommEvent::data ? waiting_.data : waiting_.lost) = true;
}

void QtSerialPort::deliver() {
    // A handler may close the port, and then the rest is about a line that is gone.
    // Data that came with a change of the carrier came from the other side of it: a modem that has lost its
    // call speaks for itself.
    if (const auto change = std::exchange(waiting_.carrier, {}))
        comm_event(*change);
    if (std::exchange(waiting_.data, false))
        comm_event(CommEvent::data);
    if (waiting_.lost) {
        close();
        comm_event(CommEvent::lost);
    }
}

void QtSerialPort::close() {
    line_.reset();
    waiting_ = {};
}

} // namespace telvox
