#include "cli/interrupt.hpp"

#include <QCoreApplication>
#include <QSocketNotifier>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace telvox::cli {

namespace {

int signal_pipe[2] = {-1, -1};

/// Runs between any two instructions of the program, so it only leaves a note.
extern "C" void note_signal(int number) {
    const auto byte = static_cast<unsigned char>(number);
    [[maybe_unused]] const auto written = ::write(signal_pipe[1], &byte, 1);
}

} // namespace

void on_interrupt(std::function<void(int)> handler) {
    std::signal(SIGPIPE, SIG_IGN); // a reader that has enough must not stop a job halfway
    if (::pipe(signal_pipe) != 0)
        return;
    for (const int end : signal_pipe)
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
    auto *notifier = new QSocketNotifier(signal_pipe[0], QSocketNotifier::Read, QCoreApplication::instance());
    QObject::connect(notifier, &QSocketNotifier::activated, notifier, [handler = std::move(handler)] {
        unsigned char number = 0;
        if (::read(signal_pipe[0], &number, 1) == 1)
            handler(128 + number);
    });
    struct sigaction action {};
    action.sa_handler = note_signal;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        ::sigaction(number, &action, nullptr);
}

} // namespace telvox::cli
