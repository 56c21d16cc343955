#include "link/receive_buffer.hpp"

#include <algorithm>

namespace telvox {

void ReceiveBuffer::append(std::string_view bytes) {
    bytes_ += bytes.substr(0, capacity - std::min(capacity, bytes_.size()));
}

void ReceiveBuffer::clear() {
    bytes_.clear();
    searches_.clear();
}

std::size_t ReceiveBuffer::find(std::string_view text) {
    auto search =
        std::find_if(searches_.begin(), searches_.end(), [&](const Search &s) { return s.text == text; });
    if (search == searches_.end())
        search = searches_.insert(searches_.end(), Search{.text = text});
    if (search->found == npos && bytes_.size() >= search->scanned + text.size()) {
        search->found = bytes_.find(text, search->scanned);
        search->scanned = bytes_.size() + 1 - std::max<std::size_t>(text.size(), 1);
    }
    return search->found;
}

} // namespace telvox
