#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace telvox {

/// Keeps PIN, passwords and keys out of a dialogue that is shown: in the commands and answers that carry
/// them, wherever else one of the known ones stands, and where a device is given one character by character.
/// What is shown in their place is "***".
class Mask {
  public:
    static constexpr const char *hidden = "***";

    /// `secrets`: what nobody may read, as it is now (UTF-8). `carriers`: commands and labels behind which a
    /// secret stands up to the end of the line, as "AT**PIN=" and "PPPPW:".
    Mask(std::function<std::vector<std::string>()> secrets, std::vector<std::string> carriers)
        : secrets_(std::move(secrets)), carriers_(std::move(carriers)) {}

    /// What may be shown of bytes that are sent; empty for the further characters of one that is typed.
    [[nodiscard]] std::string sent(std::string_view bytes);
    /// What may be shown of a byte that came: itself, or of an echo of what was typed its first "***".
    [[nodiscard]] std::string received(char byte);
    struct Shown {
        std::string text;
        bool open = false; ///< what comes next belongs to a secret, up to the end of the line
    };
    /// What may be shown of a piece of a line that came behind another piece of it.
    [[nodiscard]] Shown line(std::string_view bytes, std::string_view before = {}) const;
    /// A secret is being typed: what comes is its echo, and belongs together.
    [[nodiscard]] bool typing() const { return typing_; }

  private:
    [[nodiscard]] std::vector<std::string> on_the_line() const;

    std::function<std::vector<std::string>()> secrets_;
    std::vector<std::string> carriers_;
    std::string typed_;      ///< of a secret that is sent one character at a time
    std::size_t echoed_ = 0; ///< characters of it that came back
    bool typing_ = false;
};

} // namespace telvox
