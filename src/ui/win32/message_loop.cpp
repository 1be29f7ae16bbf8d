#include "ui/win32/message_loop.h"

namespace pl::winui {

bool MessageLoop::handle(MSG& msg) {
    if (msg.message == WM_QUIT)
        return false;
    if (!filter_ || !filter_(msg)) {
        TranslateMessage(&msg);
        DispatchMessageA(&msg);
    }
    if (idle_)
        idle_();
    return true;
}

int MessageLoop::run() {
    MSG msg{};
    while (GetMessageA(&msg, nullptr, 0, 0) > 0)
        handle(msg);
    return static_cast<int>(msg.wParam);
}

void MessageLoop::runUntil(const std::function<bool()>& done) {
    MSG msg{};
    while (!done()) {
        if (GetMessageA(&msg, nullptr, 0, 0) <= 0) {
            PostQuitMessage(static_cast<int>(msg.wParam));
            return;
        }
        handle(msg);
    }
}

void MessageLoop::pumpPending() {
    MSG msg{};
    while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
        if (!handle(msg)) {
            PostQuitMessage(static_cast<int>(msg.wParam));
            return;
        }
    }
}

} // namespace pl::winui
