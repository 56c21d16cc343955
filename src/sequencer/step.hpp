#pragma once

#include "core/session.hpp"
#include "core/timer.hpp"
#include "link/reply.hpp"

#include <span>
#include <string>

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
};

/// One step of a dialogue: what one tick does. Of several rows with the same number the first whose condition
/// holds is the step.
struct Step {
    Counter number = 0;
    bool (*when)(const Desk &) = nullptr; ///< condition on the inputs; none: always
    const char *status = nullptr;         ///< status text; none: unchanged
    void (*act)(Desk &) = nullptr;        ///< done before sending
    RowText send = {};
    Write as = Write::line;
    milliseconds wait{0};    ///< time until the next tick, and so the time allowed for the reply; 0 keeps it
    FlagOf awaits = nullptr; ///< armed; still set at the next tick, it is reported as an error
    Counter next = 0;        ///< the counter afterwards; 0 waits for a reply row to move it
    End end = End::no;
    const char *message = nullptr; ///< box at the end
};

/// The step table of one job.
struct Job {
    CounterOf counter = nullptr;
    std::span<const Step> steps = {};
};

/// Everything that is particular to one device variant.
struct Family {
    std::span<const Job> jobs = {};
    std::span<const Reply> replies = {};
};

/// The tables of a variant.
using Families = const Family &(*)(ModemType);

} // namespace telvox
