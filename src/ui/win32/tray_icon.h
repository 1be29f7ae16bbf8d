#pragma once
// The notification-area icon through Shell_NotifyIcon: the classic record (icon id, callback
// message, icon, tip) sent to the window that receives its mouse messages. It is put back when
// the task bar comes back (Explorer restarted), as far as it was shown.

#include "ui/win32/win32_api.h"

#include <string>
#include <string_view>

namespace pl::winui {

struct TrayIconArgs {
    HWND window = nullptr;       // receives the callback message
    UINT id = 2;
    UINT callbackMessage = WM_MOUSEMOVE; // 512: the mouse message arrives in lParam
    HICON icon = nullptr;
};

class TrayIcon {
public:
    explicit TrayIcon(const TrayIconArgs& args);
    ~TrayIcon();
    TrayIcon(const TrayIcon&) = delete;
    TrayIcon& operator=(const TrayIcon&) = delete;

    // Adds the icon with its tip (at most 63 bytes are kept); adding it again changes the tip only.
    void add(std::string_view tip);
    void remove();
    bool shown() const { return shown_; }
    const std::string& tip() const { return tip_; }
    // The task bar was made again: an icon that was shown is added again.
    void taskbarCreated();

    // The message the shell broadcasts when the task bar is made again.
    static UINT taskbarCreatedMessage();

private:
    NOTIFYICONDATAA record(UINT flags) const;

    TrayIconArgs args_;
    std::string tip_;
    bool shown_ = false;
};

} // namespace pl::winui
