#pragma once
// The one user-interface thread's message loop. Every message passes the filter first (key
// preview, dialog navigation); work that must wait until no window procedure of a window is
// running (destroying an unloaded form's window) is done between two messages.

#include "ui/win32/win32_api.h"

#include <functional>

namespace pl::winui {

class MessageLoop {
public:
    // True when the filter dealt with the message itself; it is then neither translated nor sent.
    using Filter = std::function<bool(MSG&)>;
    using Idle = std::function<void()>;

    void setFilter(Filter filter) { filter_ = std::move(filter); }
    void setBetweenMessages(Idle idle) { idle_ = std::move(idle); }

    // Runs until WM_QUIT; returns its exit code.
    int run();
    // Runs until `done` holds (checked after each message) or WM_QUIT arrives (which is posted again
    // for the outer loop).
    void runUntil(const std::function<bool()>& done);
    // Handles the messages that are waiting, then returns (DoEvents).
    void pumpPending();

private:
    // False when the message was WM_QUIT.
    bool handle(MSG& msg);

    Filter filter_;
    Idle idle_;
};

} // namespace pl::winui
