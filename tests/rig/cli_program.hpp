#pragma once

#include "rig/far_end.hpp"

#include <QProcess>

#include <memory>
#include <vector>

namespace telvox::test {

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
