#include "cli/interrupt.hpp"

#include <QCoreApplication>
#include <QMetaObject>
#include <windows.h>

namespace telvox::cli {

namespace {

std::function<void(int)> interrupted;

/// The system calls it on a thread of its own.
BOOL WINAPI note_interrupt(DWORD what) {
    static LONG calls = 0;
    if (::InterlockedIncrement(&calls) > 1)
        return FALSE;
    const bool by_key = what == CTRL_C_EVENT || what == CTRL_BREAK_EVENT;
    const int exit_code = by_key ? 130 : 143;
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [exit_code] { interrupted(exit_code); }, Qt::QueuedConnection);
    // A console that is closed takes the program with it when this returns, or after five seconds. The line
    // is hung up until then.
    if (!by_key)
        ::Sleep(INFINITE);
    return TRUE;
}

} // namespace

void on_interrupt(std::function<void(int)> handler) {
    interrupted = std::move(handler);
    ::SetConsoleCtrlHandler(nullptr, FALSE); // a caller that ignores Ctrl-C passes that on
    ::SetConsoleCtrlHandler(note_interrupt, TRUE);
}

} // namespace telvox::cli
