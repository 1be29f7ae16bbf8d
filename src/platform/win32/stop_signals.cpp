#include "platform/stop_signals.h"

#include <windows.h>

#include <atomic>
#include <csignal>

namespace pl::platform {

namespace {

std::atomic<int> requested{0};
// Set once the files are cleaned up (the StopRequests object is gone).
HANDLE cleanedUp = nullptr;
// Windows ends a console program this long after a closed window, a logoff or a shutdown; the
// clean-up must be done before.
constexpr DWORD kLongestCleanUp = 4500;
// The exit code of a program ended with Ctrl+C.
constexpr UINT kEndedByControlC = 0xC000013A;

BOOL WINAPI note(DWORD event) {
    const bool interrupt = event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT;
    int expected = 0;
    requested.compare_exchange_strong(expected, interrupt ? SIGINT : SIGTERM);
    // The window is closed, the user logs off or the machine shuts down: Windows ends the process
    // when this returns, so it waits here (on the system's own thread) until the work is cleaned up.
    if (!interrupt && cleanedUp != nullptr)
        WaitForSingleObject(cleanedUp, kLongestCleanUp);
    return TRUE;
}

} // namespace

// A window program (Paperlark.exe) has no console and gets none of these events: Windows asks it
// to end through its windows, and a program that ends it does so without asking.
StopRequests::StopRequests() {
    if (cleanedUp == nullptr)
        cleanedUp = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    else
        ResetEvent(cleanedUp);
    SetConsoleCtrlHandler(note, TRUE);
}

StopRequests::~StopRequests() {
    SetConsoleCtrlHandler(note, FALSE);
    if (cleanedUp != nullptr)
        SetEvent(cleanedUp);
}

int stopRequested() {
    return requested.load();
}

void endIfStopRequested() {
    if (requested.load() != 0)
        ExitProcess(kEndedByControlC);
}

} // namespace pl::platform
