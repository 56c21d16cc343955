#pragma once

#include "core/serial_format.hpp"
#include "simulator/device.hpp"

#include <deque>
#include <optional>
#include <string>
#include <string_view>

namespace telvox::simulator {

/// What bytes become for a receiver with another format than theirs: as many bytes that mean nothing.
[[nodiscard]] std::string noise(std::string_view bytes);

/// One direction of a serial line. Bytes take the time that the sender's format gives them and arrive in
/// small pieces, as a receive buffer hands them out.
class Wire {
  public:
    /// Bytes that one piece holds at most.
    static constexpr std::size_t piece = 8;
    /// Bytes that can be under way; what is sent beyond them is lost, as in a full transmit buffer.
    static constexpr std::size_t capacity = 4096;

    struct Piece {
        Time arrives;
        SerialFormat format; ///< that it was sent in
        std::string bytes;
    };

    void send(std::string_view bytes, const SerialFormat &format, Time now);
    /// When the next piece has arrived completely.
    [[nodiscard]] std::optional<Time> next() const;
    /// Takes the piece that arrives next; only when there is a next.
    Piece take();
    /// Takes everything that has arrived by now, as a receiver with this format gets it.
    std::string take_until(Time now, const SerialFormat &receiver);
    /// Loses what is under way.
    void clear();

  private:
    using Exact = std::chrono::microseconds;
    Exact free_at_{0}; ///< when the line has finished what it was given
    std::size_t under_way_ = 0;
    std::deque<Piece> pieces_;
};

} // namespace telvox::simulator
