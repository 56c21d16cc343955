#pragma once

#include "core/serial_format.hpp"
#include "simulator/device.hpp"

#include <deque>
#include <optional>
#include <string>
#include <string_view>

namespace telvox::simulator {

/// One direction of a serial line. Bytes take the time that the format gives them and arrive in small pieces,
/// as a receive buffer hands them out.
class Wire {
  public:
    /// Bytes that one piece holds at most.
    static constexpr std::size_t piece = 8;
    /// Bytes that can be under way; what is sent beyond them is lost, as in a full transmit buffer.
    static constexpr std::size_t capacity = 4096;

    /// Sets the pace of what is sent from now on.
    void format(const SerialFormat &format);
    void send(std::string_view bytes, Time now);
    /// When the next piece has arrived completely.
    [[nodiscard]] std::optional<Time> next() const;
    /// Takes the piece that arrives next; empty when there is none.
    std::string take();
    /// Takes everything that has arrived by now.
    std::string take_until(Time now);
    /// Loses what is under way.
    void clear();

  private:
    using Exact = std::chrono::microseconds;
    struct Piece {
        Time arrives;
        std::string bytes;
    };

    Exact byte_time_{1042};
    Exact free_at_{0}; ///< when the line has finished what it was given
    std::size_t under_way_ = 0;
    std::deque<Piece> pieces_;
};

} // namespace telvox::simulator
