#include "cli/interrupt.hpp"

#include <QCoreApplication>
#include <QMetaObject>
#include <windows.h>

namespace telvox::cli {

namespace {

std::function<void(int)> interrupted;

/// The system calls it on a thread of its own.
BOOL WINAPI note_interrupt(DWORD) {
    static LONG calls = 0;
    if (::InterlockedIncrement(&calls) > 1)
        return FALSE;
    constexpr int exit_code = 130;
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [] { interrupted(exit_code); }, Qt::QueuedConnection);
    return TRUE;
}

} // namespace

void on_interrupt(std::function<void(int)> handler) {
    interrupted = std::move(handler);
    ::SetConsoleCtrlHandler(note_interrupt, TRUE);
}

} // namespace telvox::cli
