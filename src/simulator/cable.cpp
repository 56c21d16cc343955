#include "simulator/cable.hpp"

namespace telvox::simulator {

void Cable::open(bool on, Time now) {
    run(now);
    // The host drains before it closes, so what it wrote still reaches the device.
    while (to_unit_.next())
        hear();
    open_ = on;
    plug_ = Plug::works;
    to_host_.clear();
    unit_->release(now);
}

void Cable::format(const SerialFormat &format, Time now) {
    run(now);
    host_ = format;
}

// The cable has no wire for it.
void Cable::dtr(bool, Time now) { run(now); }

void Cable::receive(std::string_view bytes, Time now) {
    run(now);
    if (const auto fault = unit_->fault_at(bytes); fault == Fault::jams || fault == Fault::unplugs)
        plug_ = fault == Fault::jams ? Plug::jammed : Plug::pulled;
    if (open_ && plug_ == Plug::works)
        to_unit_.send(bytes, host_, now);
}

std::string Cable::transmit(Time now) {
    run(now);
    return to_host_.take_until(now, host_);
}

bool Cable::carrier(Time) { return false; }

std::optional<Time> Cable::next() const {
    return earlier(earlier(to_unit_.next(), unit_->next()), to_host_.next());
}

void Cable::run(Time now) {
    while (true) {
        const auto heard = to_unit_.next();
        const auto said = unit_->next();
        const auto first = earlier(heard, said);
        if (!first || *first > now)
            return;
        if (heard == first) {
            hear();
            continue;
        }
        const SerialFormat spoken = unit_->format();
        if (const auto saying = unit_->take(); open_)
            to_host_.send(saying.bytes, spoken, saying.at);
    }
}

void Cable::hear() {
    const auto piece = to_unit_.take();
    unit_->adapt(piece.format);
    for (const char byte : piece.format == unit_->format() ? piece.bytes : noise(piece.bytes))
        unit_->hear(byte, piece.arrives);
}

} // namespace telvox::simulator
