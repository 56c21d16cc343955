#pragma once

#include <QProcess>
#include <gtest/gtest.h>

#include <array>
#include <fcntl.h>
#include <memory>
#include <poll.h>
#include <string>
#include <string_view>
#include <termios.h>
#include <unistd.h>
#include <vector>

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
    /// Takes what comes until it ends in `text`. Returns whether that came.
    [[nodiscard]] bool takes(std::string_view text) const {
        std::string all;
        std::array<char, 256> bytes{};
        while (!all.ends_with(text) && hears())
            all.append(bytes.data(), static_cast<std::size_t>(
                                         std::max(::read(master_, bytes.data(), bytes.size()), ssize_t{0})));
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

    std::string path;

  private:
    [[nodiscard]] bool comes(int milliseconds) const {
        pollfd line{.fd = master_, .events = POLLIN, .revents = 0};
        return ::poll(&line, 1, milliseconds) == 1;
    }

    int master_ = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    int slave_ = -1;
};

/// The built program itself.
class CliProgram : public testing::Test {
  protected:
    void start_program(const std::vector<std::string> &words) {
        QStringList arguments;
        for (const std::string &word : words)
            arguments << QString::fromStdString(word);
        process.start(TELVOX_CLI, arguments);
        ASSERT_TRUE(process.waitForStarted());
    }
    int result() {
        EXPECT_TRUE(process.waitForFinished(40000));
        out = process.readAllStandardOutput().toStdString();
        err = process.readAllStandardError().toStdString();
        return process.exitCode();
    }
    /// A device that never says anything.
    std::string mute_device() { return devices.emplace_back(std::make_unique<FarEnd>())->path; }

    QProcess process;
    std::string out, err;
    std::vector<std::unique_ptr<FarEnd>> devices;
};

} // namespace telvox::test
