#pragma once

#include "core/timer.hpp"
#include "link/reply.hpp"

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <type_traits>

namespace telvox {

/// A text of a table row: fixed, or built when it is needed; or a fixed beginning and the value behind it.
class RowText {
  public:
    using Build = std::string (*)(const JobContext &);

    constexpr RowText() = default;
    constexpr RowText(const char *fixed) : fixed_(fixed) {}
    constexpr RowText(const char *fixed, Build value) : fixed_(fixed), build_(value) {}
    template <class Lambda>
    requires std::convertible_to<Lambda, Build>
    constexpr RowText(Lambda build) : build_(build) {}

    [[nodiscard]] constexpr bool given() const { return fixed_ || build_; }
    /// What it always begins with; nullptr: nothing.
    [[nodiscard]] constexpr const char *fixed() const { return fixed_; }
    [[nodiscard]] std::string operator()(const JobContext &job) const {
        return (fixed_ ? std::string(fixed_) : std::string()) + (build_ ? build_(job) : std::string());
    }

  private:
    const char *fixed_ = nullptr;
    Build build_ = nullptr;
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

/// One step of a dialogue: what one tick does, and what answers it. A script gives the steps their numbers by
/// their places; a step with a condition and the one behind it share a number, and the first whose condition
/// holds is the step.
struct Step {
    Counter number = 0;                         ///< by its place
    bool (*when)(const JobContext &) = nullptr; ///< none: always
    RowText status = {};                        ///< status text; none: unchanged
    void (*act)(const JobContext &) = nullptr;  ///< done before sending
    RowText format = {}; ///< settings text of the line, applied before sending, once all output has left
    RowText send = {};
    Write as = Write::line;
    milliseconds wait{0}; ///< time until the next tick, and so the time allowed for the reply; 0 keeps it
    OnFall on_fall = OnFall::fails;
    bool changes_device =
        false; ///< the command does, so that a job that is then cancelled leaves half a change
    const char *secrets =
        ""; ///< what secrets stand behind, command or labels of the answer: "IPTPW: IPTKEYF:"

    FlagOf awaits = nullptr;            ///< armed; still set at the next tick, it is reported as an error
    Counter reads = 0;                  ///< likewise, of a read command its number
    std::array<Answer, 2> answers = {}; ///< the first that comes leads on; none: a reply row does
    milliseconds after{0};             ///< time from the answer to the next step; 0 leaves the timer as it is
    Counter skips = 0;                 ///< so many numbers are left out by an answer
    std::span<const Move> starts = {}; ///< what an answer starts in place of a next step
    bool goes_on = false;              ///< without an answer too, with the next step, and reports nothing

    bool again = false; ///< comes again and again, until its condition fails or an answer leads on
    std::size_t (*times)(const JobContext &) = nullptr; ///< how often it comes at most; none: once
    Counter next =
        0; ///< where an answer, or the step itself, leads; 0: the next number, or nowhere at an end
    Counter otherwise = 0; ///< by its place: the counter until the answer is there
    End end = End::no;
    RowText message = {}; ///< box at the end

    [[nodiscard]] constexpr bool answered() const { return answers[0].contains != nullptr; }
};

template <class Row> constexpr std::array<Row, 1> rows_of(const Row &row) { return {row}; }
template <class Row, std::size_t N>
constexpr const std::array<Row, N> &rows_of(const std::array<Row, N> &rows) {
    return rows;
}

/// Joins rows and arrays of rows to one table, so that what several tables share stands once.
template <class First, class... Others> constexpr auto table(const First &first, const Others &...others) {
    using Rows = std::remove_cvref_t<decltype(rows_of(first))>;
    constexpr std::size_t size =
        (std::tuple_size_v<Rows> + ... + std::tuple_size_v<std::remove_cvref_t<decltype(rows_of(others))>>);
    std::array<typename Rows::value_type, size> joined{};
    [[maybe_unused]] auto at = std::ranges::copy(rows_of(first), joined.begin()).out;
    ((at = std::ranges::copy(rows_of(others), at).out), ...);
    return joined;
}

/// A step at its place in a script: its number, and where it leads.
constexpr Step placed(Step step, Counter number) {
    const auto behind = static_cast<Counter>(number + 1);
    step.number = number;
    if (step.end == End::no && step.starts.empty() && step.next == 0)
        step.next = step.again && !step.answered() ? number : static_cast<Counter>(behind + step.skips);
    step.otherwise = step.goes_on                                        ? behind
                     : step.again                                        ? number
                     : step.awaits || step.reads != 0 || step.answered() ? Counter{0}
                                                                         : step.next;
    return step;
}

/// The steps of one job in their order, numbered by their places.
template <class... Rows> consteval auto script(const Rows &...rows) {
    auto steps = table(rows...);
    Counter number = 1;
    for (Step &step : steps) {
        step = placed(step, number);
        number = static_cast<Counter>(number + (step.when ? 0 : 1));
    }
    return steps;
}

/// A script with another step in the place of the one that has this number.
template <std::size_t N> consteval auto with(std::array<Step, N> steps, Counter number, const Step &step) {
    *std::find_if(steps.begin(), steps.end(), [=](const Step &s) { return s.number == number; }) =
        placed(step, number);
    return steps;
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
    const char *presence =
        nullptr; ///< a question that it answers whenever it is there; none if it also leaves by itself
    bool guesses = false; ///< asks what a device may not know, so a rejection is an answer like others
};

/// The tables of the job that runs: those of its variant.
using Families = const Family &(*)(const JobContext &);

} // namespace telvox
