#include "core/ip_address.hpp"

#include "core/text.hpp"

#include <algorithm>

namespace telvox {

bool func_IP_pruefen(std::string_view text) {
    return text.size() >= 7 && std::count(text.begin(), text.end(), '.') == 3 && !text.starts_with('.') &&
           !text.ends_with('.') && text.find("..") == std::string_view::npos;
}

bool valid_address(std::string_view text) {
    bool valid = func_IP_pruefen(text);
    for (std::size_t begin = 0, end = 0; valid && end != std::string_view::npos; begin = end + 1) {
        end = text.find('.', begin);
        const std::string_view field = text.substr(begin, end - begin);
        valid =
            field.find_first_not_of("0123456789") == std::string_view::npos && !number_exceeds(field, 255);
    }
    return valid;
}

} // namespace telvox
