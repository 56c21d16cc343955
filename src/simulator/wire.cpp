#include "simulator/wire.hpp"

#include <algorithm>

namespace telvox::simulator {

void Wire::format(const SerialFormat &format) {
    const int start_bit = 1;
    const int bits = start_bit + format.data_bits + (format.parity == 'n' ? 0 : 1) + format.stop_bits;
    byte_time_ = Exact{1'000'000LL * bits / std::max(format.baud, 1)};
}

void Wire::send(std::string_view bytes, Time now) {
    bytes = bytes.substr(0, capacity - under_way_);
    under_way_ += bytes.size();
    free_at_ = std::max(free_at_, Exact{now});
    while (!bytes.empty()) {
        const auto part = bytes.substr(0, piece);
        free_at_ += byte_time_ * static_cast<int>(part.size());
        pieces_.push_back({std::chrono::ceil<Time>(free_at_), std::string{part}});
        bytes.remove_prefix(part.size());
    }
}

std::optional<Time> Wire::next() const {
    return pieces_.empty() ? std::nullopt : std::optional{pieces_.front().arrives};
}

std::string Wire::take() {
    if (pieces_.empty())
        return {};
    std::string bytes = std::move(pieces_.front().bytes);
    pieces_.pop_front();
    under_way_ -= bytes.size();
    return bytes;
}

std::string Wire::take_until(Time now) {
    std::string bytes;
    while (!pieces_.empty() && pieces_.front().arrives <= now)
        bytes += take();
    return bytes;
}

void Wire::clear() {
    pieces_.clear();
    under_way_ = 0;
    free_at_ = Exact{0};
}

} // namespace telvox::simulator
