#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <string>
#include <string_view>
#include <termios.h>
#include <unistd.h>
#include <utility>

namespace telvox::test {

/// A serial line, a pseudo-terminal, at whose far end the test stands.
class FarEnd {
  public:
    FarEnd() {
        ::grantpt(master_);
        ::unlockpt(master_);
        path = ::ptsname(master_);
        slave_ =
            ::open(path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC); // the line stands while nobody has opened it
    }
    ~FarEnd() { unplug(); }
    FarEnd(const FarEnd &) = delete;
    FarEnd &operator=(const FarEnd &) = delete;

    /// Whether something comes in the next ten seconds.
    [[nodiscard]] bool hears() const { return comes(10000); }
    /// Whether something has come.
    [[nodiscard]] bool heard() const { return comes(0); }
    /// Takes what has come.
    [[nodiscard]] std::string take() const {
        std::array<char, 4096> bytes{};
        const auto count = ::read(master_, bytes.data(), bytes.size());
        return {bytes.data(), static_cast<std::size_t>(std::max(count, ssize_t{0}))};
    }
    /// Takes what comes until it ends in `text`. Returns whether that came.
    [[nodiscard]] bool takes(std::string_view text) const {
        std::string all;
        while (!all.ends_with(text) && hears())
            all += take();
        return all.ends_with(text);
    }
    void says(std::string_view text) const {
        EXPECT_EQ(::write(master_, text.data(), text.size()), std::ssize(text));
    }
    /// The line takes nothing more of what is sent.
    void holds_up() const { ::tcflow(slave_, TCOOFF); }
    /// The line is gone for who has it open.
    void unplug() {
        ::close(std::exchange(slave_, -1));
        ::close(std::exchange(master_, -1));
    }
    /// To wait for what comes; -1 once it is unplugged.
    [[nodiscard]] int handle() const { return master_; }

    std::string path;

  private:
    [[nodiscard]] bool comes(int milliseconds) const {
        pollfd line{.fd = master_, .events = POLLIN, .revents = 0};
        return ::poll(&line, 1, milliseconds) == 1;
    }

    int master_ = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
    int slave_ = -1;
};

} // namespace telvox::test
