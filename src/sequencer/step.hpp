#pragma once

#include "core/session.hpp"
#include "core/timer.hpp"
#include "link/reply.hpp"

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <type_traits>

namespace telvox {

struct Desk;

/// A text of a table row: fixed, or built from the inputs at the moment it is needed.
class RowText {
  public:
    constexpr RowText() = default;
    constexpr RowText(const char *fixed) : fixed_(fixed) {}
    template <class Build>
    requires std::convertible_to<Build, std::string (*)(const Desk &)>
    constexpr RowText(Build build) : build_(build) {}

    [[nodiscard]] constexpr bool given() const { return fixed_ || build_; }
    [[nodiscard]] std::string operator()(const Desk &desk) const {
        return build_ ? build_(desk) : std::string(fixed_);
    }

  private:
    const char *fixed_ = nullptr;
    std::string (*build_)(const Desk &) = nullptr;
};

enum class Write {
    line, ///< a command line: one carriage return follows
    raw,  ///< written as it is
};

/// How a step ends its job.
enum class End {
    no,
    drop,    ///< drain, DTR off, close the port
    hang_up, ///< hang up the local modem first
    failed,  ///< no success: the line ends by the way of the connection
};

/// What becomes of a step that would send on a line that has fallen, where the local modem would take the
/// command for its own.
enum class OnFall {
    fails,    ///< the job ends with a message
    skipped,  ///< the work is done and the device may have hung up itself: the job goes on with the next step
    reported, ///< it is sent; the flag that the step or a later one awaits says what is wrong
};

/// What is told of a call that has fallen.
inline constexpr const char *call_has_fallen = "Die Verbindung zum Telvox-A wurde unterbrochen.";

/// One step of a dialogue: what one tick does. Of several rows with the same number the first whose condition
/// holds is the step.
struct Step {
    Counter number = 0;
    bool (*when)(const Desk &) = nullptr; ///< condition on the inputs; none: always
    RowText status = {};                  ///< status text; none: unchanged
    void (*act)(Desk &) = nullptr;        ///< done before sending
    FlagOf sets = nullptr;                ///< job flag set before sending
    FlagOf clears = nullptr;              ///< job flag cleared before sending
    Counter reads = 0;                    ///< number of the read command that is then outstanding
    RowText format = {}; ///< settings text of the line, applied before sending, once all output has left
    RowText send = {};
    Write as = Write::line;
    milliseconds wait{0};    ///< time until the next tick, and so the time allowed for the reply; 0 keeps it
    FlagOf awaits = nullptr; ///< armed; still set at the next tick, it is reported as an error
    OnFall on_fall = OnFall::fails;
    std::size_t (*times)(const Desk &) = nullptr; ///< how often a row runs that names itself as the next
    Counter next = 0; ///< the counter afterwards; 0 waits for a reply row to move it
    End end = End::no;
    RowText message = {}; ///< box at the end
};

template <class Row> constexpr std::array<Row, 1> rows_of(const Row &row) { return {row}; }
template <class Row, std::size_t N>
constexpr const std::array<Row, N> &rows_of(const std::array<Row, N> &rows) {
    return rows;
}

/// Joins rows and arrays of rows to one table, so that what several tables share stands once.
template <class First, class... Others> consteval auto table(const First &first, const Others &...others) {
    using Rows = std::remove_cvref_t<decltype(rows_of(first))>;
    constexpr std::size_t size =
        (std::tuple_size_v<Rows> + ... + std::tuple_size_v<std::remove_cvref_t<decltype(rows_of(others))>>);
    std::array<typename Rows::value_type, size> joined{};
    auto at = std::ranges::copy(rows_of(first), joined.begin()).out;
    ((at = std::ranges::copy(rows_of(others), at).out), ...);
    return joined;
}

/// The step table of one job.
struct Job {
    const char *name = ""; ///< for whoever reads a fault of a table
    CounterOf counter = nullptr;
    std::span<const Step> steps = {};
};

/// Everything that is particular to one device variant.
struct Family {
    const char *name = ""; ///< of the variant, as it is called to the user
    std::span<const Job> jobs = {};
    std::span<const Reply> replies = {};
    bool guesses = false; ///< asks what a device may not know, so a rejection is an answer like others
};

/// The tables of the job that runs, or could: those of the chosen variant.
using Families = const Family &(*)(const Desk &);

} // namespace telvox
