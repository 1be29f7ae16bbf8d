#include "platform/stop_signals.h"

#include <csignal>

namespace pl::platform {

namespace {

volatile std::sig_atomic_t requested = 0;
constexpr int kStopSignals[] = {SIGTERM, SIGINT, SIGHUP};
struct sigaction previous[3];

void note(int signal) {
    requested = signal;
}

} // namespace

StopRequests::StopRequests() {
    struct sigaction action {};
    action.sa_handler = note;
    sigemptyset(&action.sa_mask);
    // No SA_RESTART: a wait in progress returns at once, so the request is seen without delay.
    action.sa_flags = 0;
    for (int i = 0; i < 3; ++i)
        ::sigaction(kStopSignals[i], &action, &previous[i]);
}

StopRequests::~StopRequests() {
    for (int i = 0; i < 3; ++i)
        ::sigaction(kStopSignals[i], &previous[i], nullptr);
}

int stopRequested() {
    return requested;
}

void endIfStopRequested() {
    const int signal = requested;
    if (signal == 0)
        return;
    struct sigaction action {};
    action.sa_handler = SIG_DFL;
    sigemptyset(&action.sa_mask);
    ::sigaction(signal, &action, nullptr);
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, signal);
    ::sigprocmask(SIG_UNBLOCK, &set, nullptr);
    ::raise(signal);
}

} // namespace pl::platform
