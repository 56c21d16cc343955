#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace telvox {

/// `strCOM_Eingang`: everything received since it was last emptied, as bytes of the line. It answers where a
/// text stands in the whole, but reads each byte only once per text, so a noisy line costs time in proportion
/// to its bytes.
class ReceiveBuffer {
  public:
    static constexpr std::size_t npos = std::string::npos;
    /// No device answers one command with more; what comes beyond is dropped until the buffer is emptied.
    static constexpr std::size_t capacity = 4u << 20;

    void append(std::string_view bytes);
    void clear();
    /// Position of the first occurrence of a text, npos if there is none. `text` must outlive the buffer (the
    /// texts are those of the reply tables).
    [[nodiscard]] std::size_t find(std::string_view text);
    [[nodiscard]] bool contains(std::string_view text) { return find(text) != npos; }
    [[nodiscard]] std::string_view text() const { return bytes_; }

  private:
    struct Search {
        std::string_view text;
        std::size_t scanned = 0; ///< no occurrence starts before this position
        std::size_t found = npos;
    };

    std::string bytes_;
    std::vector<Search> searches_;
};

} // namespace telvox
