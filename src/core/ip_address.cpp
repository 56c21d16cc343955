#include "core/ip_address.hpp"

#include <algorithm>

namespace telvox {

bool func_IP_pruefen(std::string_view text) {
    return text.size() >= 7 && std::count(text.begin(), text.end(), '.') == 3 && !text.starts_with('.') &&
           !text.ends_with('.') && text.find("..") == std::string_view::npos;
}

} // namespace telvox
