#include "link/mask.hpp"

#include "core/text.hpp"

#include <algorithm>

namespace telvox {

namespace {

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
        return line(bytes).text;
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

Mask::Shown Mask::line(std::string_view bytes, std::string_view before) const {
    const std::string all = std::string(before) + std::string(bytes);
    std::vector<bool> secret(all.size());
    Shown shown;
    for (const std::string &carrier : carriers_)
        for (auto at = all.find(carrier); at != std::string::npos; at = all.find(carrier, at + 1)) {
            const auto value = std::min(all.find_first_not_of(' ', at + carrier.size()), all.size());
            const auto end = std::min(all.find_first_of("\r\n", value), all.size());
            std::fill(secret.begin() + static_cast<std::ptrdiff_t>(value),
                      secret.begin() + static_cast<std::ptrdiff_t>(end), true);
            shown.open |= end == all.size();
        }
    for (const std::string &known : on_the_line())
        for (auto at = all.find(known); known.size() >= shortest_found && at != std::string::npos;
             at = all.find(known, at + known.size()))
            std::fill_n(secret.begin() + static_cast<std::ptrdiff_t>(at), known.size(), true);
    for (std::size_t i = before.size(); i < all.size(); ++i) {
        if (!secret[i])
            shown.text += all[i];
        else if (i == before.size() || !secret[i - 1])
            shown.text += hidden;
    }
    return shown;
}

} // namespace telvox
