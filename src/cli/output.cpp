#include "cli/output.hpp"

#include "core/system_error.hpp"

#include <algorithm>
#include <cerrno>

namespace telvox::cli {

void Output::line(std::string text) {
    std::replace(text.begin(), text.end(), '\r', '\n');
    text += '\n';
    errno = 0;
    const bool taken = std::fwrite(text.data(), 1, text.size(), stream_) == text.size();
    note(std::fflush(stream_) == 0 && taken);
}

std::string Output::end() {
    errno = 0;
    note(std::fclose(stream_) == 0); // some systems tell only here
    return error_ == 0 ? std::string() : german_reason(error_);
}

void Output::note(bool written) {
    if (!written && error_ == 0)
        error_ = errno != 0 ? errno : EIO;
}

} // namespace telvox::cli
