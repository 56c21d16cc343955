#include "simulator/cable.hpp"

namespace telvox::simulator {

Cable::Cable(std::shared_ptr<Unit> unit, const SerialFormat &own)
    : unit_(std::move(unit)), own_(own), host_(own) {
    to_unit_.format(own_);
    to_host_.format(own_);
}

void Cable::open(bool on, Time now) {
    run(now);
    // The host drains before it closes, so what it wrote still reaches the device.
    while (const auto arrives = to_unit_.next()) {
        for (const char byte : to_unit_.take())
            unit_->hear(byte, *arrives);
    }
    open_ = on;
    to_host_.clear();
    unit_->release();
}

void Cable::format(const SerialFormat &format, Time now) {
    run(now);
    host_ = format;
    if (understood()) {
        to_unit_.format(format);
        to_host_.format(format);
    }
}

// The cable has no wire for it.
void Cable::dtr(bool, Time now) { run(now); }

void Cable::receive(std::string_view bytes, Time now) {
    run(now);
    if (open_ && understood())
        to_unit_.send(bytes, now);
}

std::string Cable::transmit(Time now) {
    run(now);
    return to_host_.take_until(now);
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
            for (const char byte : to_unit_.take())
                unit_->hear(byte, *first);
        } else if (const auto saying = unit_->take(); open_ && understood()) {
            to_host_.send(saying.bytes, saying.at);
        }
    }
}

} // namespace telvox::simulator
