#include "simulator/line_collector.hpp"

#include <utility>

namespace telvox::simulator {

std::optional<std::string> LineCollector::add(char byte) {
    if (byte == '\r') {
        const bool lost = std::exchange(too_long_, false);
        std::string line = std::exchange(line_, {});
        return lost ? std::nullopt : std::optional{std::move(line)};
    }
    if (static_cast<unsigned char>(byte) < ' ')
        return std::nullopt;
    if (line_.size() < limit)
        line_ += byte;
    else
        too_long_ = true;
    return std::nullopt;
}

void LineCollector::clear() {
    line_.clear();
    too_long_ = false;
}

} // namespace telvox::simulator
