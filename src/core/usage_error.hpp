#pragma once

#include "core/text.hpp"

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace telvox {

/// Where a value was given, for whoever must correct it.
struct Place {
    enum class Kind { call, file, table };

    Kind kind = Kind::call;
    std::string name;  ///< of the value, "apn"; empty: the whole line
    std::string where; ///< file and line: "pumpen.csv, Zeile 3"

    /// Another value at this place as its writer calls it: "--typ", "typ", "Spalte typ".
    [[nodiscard]] std::string named(std::string_view other) const {
        return (kind == Kind::call ? "--" : kind == Kind::table ? "Spalte " : "") + std::string(other);
    }
    /// "--apn", "profil.telvox, Zeile 2: apn", "pumpen.csv, Zeile 3, Spalte apn".
    [[nodiscard]] std::string text() const {
        const char *between = kind == Kind::table ? ", " : ": ";
        return where + (where.empty() || name.empty() ? "" : between) + (name.empty() ? "" : named(name));
    }
};

/// What somebody asked for in words, in a call or a file, cannot be done; `what()` says why (German), in one
/// line that does a terminal no harm; of several mistakes in a line each, joined by carriage returns.
struct UsageError : std::runtime_error {
    explicit UsageError(std::string_view why) : std::runtime_error(one_line(why)) {}
    /// `why` follows the place's text as it is: ": nur Ziffern".
    UsageError(const Place &at, std::string_view why)
        : std::runtime_error(one_line(at.text() + std::string(why))), place(at) {}

    std::optional<Place> place; ///< of the mistake, where it is at one

  protected:
    struct Lines {
        std::string text;
    };
    explicit UsageError(const Lines &lines) : std::runtime_error(lines.text) {}
};

/// Mistakes that are told together.
class Mistakes {
  public:
    static constexpr std::size_t most = 20; ///< that are told

    void add(std::string_view mistake) {
        if (++count_ <= most)
            lines_ += (lines_.empty() ? "" : "\r") + one_line(mistake);
    }
    [[nodiscard]] bool many() const { return count_ >= most; }
    /// Throws UsageError if there are any.
    void check() const {
        struct Several : UsageError {
            explicit Several(std::string text) : UsageError(Lines{std::move(text)}) {}
        };
        if (count_ != 0)
            throw Several(lines_ + (count_ > most ? "\rund weitere" : ""));
    }

  private:
    std::string lines_;
    std::size_t count_ = 0;
};

} // namespace telvox
