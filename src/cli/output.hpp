#pragma once

#include <cstdio>
#include <string>

namespace telvox::cli {

/// One of the two outputs. A line appears at once; carriage returns, which join the lines of a message, end
/// lines.
class Output {
  public:
    explicit Output(std::FILE *stream) : stream_(stream) {}
    void line(std::string text);
    /// Ends the output. Returns why something of it could not be written (German), empty if all was.
    [[nodiscard]] std::string end();

  private:
    void note(bool written);

    std::FILE *stream_;
    int error_ = 0;
};

} // namespace telvox::cli
