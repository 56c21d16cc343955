#include "link/mask.hpp"

#include "core/text.hpp"

#include <algorithm>

namespace telvox {

namespace {

/// Commands and labels behind which a secret stands up to the end of the line.
constexpr std::string_view carriers[] = {
    "AT**PIN=", "AT**PPPPW=", "AT**IPTPW=", "AT**IPTKEYF=", "AT**IPTKEYC=",
    "PPPPW:",   "IPTPW:",     "IPTKEYF:",   "IPTKEYC:"};
/// A shorter one stands in too many words to be told from them.
constexpr std::size_t shortest_found = 3;

} // namespace

std::vector<std::string> Mask::on_the_line() const {
    std::vector<std::string> all;
    for (const std::string &secret : secrets_())
        if (!secret.empty())
            all.push_back(to_line(secret));
    return all;
}

std::string Mask::sent(std::string_view bytes) {
    const bool character = bytes.size() == 1 && static_cast<unsigned char>(bytes[0]) >= 0x20;
    const std::string so_far = (typing_ ? typed_ : "") + std::string(bytes);
    const std::vector<std::string> secrets = on_the_line();
    const bool was_typing = typing_;
    typing_ = character && std::any_of(secrets.begin(), secrets.end(),
                                       [&](const std::string &secret) { return secret.starts_with(so_far); });
    if (!typing_)
        return line(bytes);
    if (!was_typing)
        echoed_ = 0;
    typed_ = so_far;
    return was_typing ? "" : hidden;
}

std::string Mask::received(char byte) {
    if (byte == '\r' || byte == '\n') {
        if (!typing_)
            typed_.clear();
    } else if (echoed_ < typed_.size() && byte == typed_[echoed_]) {
        return echoed_++ == 0 ? hidden : "";
    }
    return {byte};
}

std::string Mask::line(std::string_view bytes) const {
    std::string shown(bytes);
    for (const std::string_view carrier : carriers)
        if (const auto at = shown.find(carrier); at != std::string::npos) {
            const auto value = std::min(shown.find_first_not_of(' ', at + carrier.size()), shown.size());
            const auto end = std::min(shown.find_first_of("\r\n", value), shown.size());
            if (value != end)
                shown.replace(value, end - value, hidden);
        }
    for (const std::string &secret : on_the_line())
        for (auto at = shown.find(secret); secret.size() >= shortest_found && at != std::string::npos;
             at = shown.find(secret, at + std::string_view(hidden).size()))
            shown.replace(at, secret.size(), hidden);
    return shown;
}

} // namespace telvox
