#include "simulator/wire.hpp"

#include <algorithm>

namespace telvox::simulator {

std::string noise(std::string_view bytes) {
    std::string heard{bytes};
    for (char &byte : heard)
        byte = static_cast<char>(0x80 | (byte * 5 + 3));
    return heard;
}

void Wire::send(std::string_view bytes, const SerialFormat &format, Time now) {
    const int start_bit = 1;
    const int bits = start_bit + format.data_bits + (format.parity == 'n' ? 0 : 1) + format.stop_bits;
    const Exact byte_time{1'000'000LL * bits / std::max(format.baud, 1)};
    bytes = bytes.substr(0, capacity - under_way_);
    under_way_ += bytes.size();
    free_at_ = std::max(free_at_, Exact{now});
    while (!bytes.empty()) {
        const auto part = bytes.substr(0, piece);
        free_at_ += byte_time * static_cast<int>(part.size());
        pieces_.push_back({std::chrono::ceil<Time>(free_at_), format, std::string{part}});
        bytes.remove_prefix(part.size());
    }
}

std::optional<Time> Wire::next() const {
    return pieces_.empty() ? std::nullopt : std::optional{pieces_.front().arrives};
}

Wire::Piece Wire::take() {
    Piece taken = std::move(pieces_.front());
    pieces_.pop_front();
    under_way_ -= taken.bytes.size();
    return taken;
}

std::string Wire::take_until(Time now, const SerialFormat &receiver) {
    std::string heard;
    while (!pieces_.empty() && pieces_.front().arrives <= now) {
        const Piece taken = take();
        heard += taken.format == receiver ? taken.bytes : noise(taken.bytes);
    }
    return heard;
}

void Wire::clear() {
    pieces_.clear();
    under_way_ = 0;
    free_at_ = Exact{0};
}

} // namespace telvox::simulator
