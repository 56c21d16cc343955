#pragma once

#include <cstdio>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

namespace telvox::cli {

/// One of the two outputs. A line appears at once; carriage returns, which join the lines of a message, end
/// lines.
class Output {
  public:
    explicit Output(std::FILE *stream) : stream_(stream) {}
    void line(std::string text);
    /// Ends the output. Returns why something of it could not be written (German), empty if all was.
    [[nodiscard]] std::string end();

    /// Something could not be written, so nobody gets the rest.
    [[nodiscard]] bool failed() const { return error_ != 0; }

  private:
    void note(bool written);

    std::FILE *stream_;
    int error_ = 0;
};

/// What is told of the answer that a call gives to every question.
[[nodiscard]] inline const char *answer_to_all(bool despite) {
    return despite ? "(Ja)" : "(Nein; --trotzdem bedeutet Ja)";
}

/// Names and texts as one line of JSON; numbers are texts too.
[[nodiscard]] std::string json_line(std::initializer_list<std::pair<const char *, std::string>> fields);

/// Results on the one, what only accompanies them on the other.
struct Outputs {
    Output results{stdout};
    Output remarks{stderr};
};

/// Exit codes, a contract with the users' scripts.
enum Exit { job_succeeded = 0, job_failed = 1, call_refused = 2, device_objected = 3, device_differs = 4 };

/// The log of a network dialog: shown as it grows, or only when the job has not ended well, because it says
/// what to do then. What arrives may end anywhere in a line.
class ShownLog {
  public:
    ShownLog(Output &to, bool at_once) : to_(to), at_once_(at_once) {}

    void take(std::string_view text);
    void end(bool well);

  private:
    Output &to_;
    bool at_once_;
    std::string text_;
};

} // namespace telvox::cli
