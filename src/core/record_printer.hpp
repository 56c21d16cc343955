#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace telvox {

/// A record's pages, each the body of an HTML page, made when it is asked for.
struct RecordPages {
    std::size_t count = 0;
    std::function<std::string(std::size_t page)> page;
};

/// Writes records (port): HTML where the path says so, else PDF. `print` returns at once; a file is there as
/// a whole or not at all.
class RecordPrinter {
  public:
    /// Hears how many pages are done.
    using Progress = std::function<void(std::size_t done)>;
    /// Hears once why it could not be written (German), empty when it was; nothing after `cancel`.
    using Ended = std::function<void(const std::string &failure)>;

    virtual ~RecordPrinter() = default;
    virtual void print(const std::string &path, RecordPages pages, Progress progress, Ended ended) = 0;
    virtual void cancel() = 0;
};

} // namespace telvox
