#include "ui/win32/tray_icon.h"

#include <shellapi.h>

#include <algorithm>
#include <cstring>

namespace pl::winui {

TrayIcon::TrayIcon(const TrayIconArgs& args) : args_(args) {}

TrayIcon::~TrayIcon() {
    remove();
}

NOTIFYICONDATAA TrayIcon::record(UINT flags) const {
    NOTIFYICONDATAA data{};
    data.cbSize = sizeof data;
    data.hWnd = args_.window;
    data.uID = args_.id;
    data.uFlags = flags;
    data.uCallbackMessage = args_.callbackMessage;
    data.hIcon = args_.icon;
    // The classic field holds 64 bytes with the terminating zero.
    const std::size_t length = std::min<std::size_t>(tip_.size(), 63);
    std::memcpy(data.szTip, tip_.data(), length);
    data.szTip[length] = '\0';
    return data;
}

void TrayIcon::add(std::string_view tip) {
    const bool changed = tip != tip_;
    tip_ = std::string(tip);
    NOTIFYICONDATAA data = record(NIF_MESSAGE | NIF_ICON | NIF_TIP);
    if (shown_) {
        if (changed)
            Shell_NotifyIconA(NIM_MODIFY, &data);
        return;
    }
    // A failed add (no task bar yet) is tried again with the next call.
    shown_ = Shell_NotifyIconA(NIM_ADD, &data) != FALSE;
}

void TrayIcon::remove() {
    if (!shown_)
        return;
    NOTIFYICONDATAA data = record(0);
    Shell_NotifyIconA(NIM_DELETE, &data);
    shown_ = false;
}

void TrayIcon::taskbarCreated() {
    if (!shown_)
        return;
    shown_ = false;
    add(tip_);
}

UINT TrayIcon::taskbarCreatedMessage() {
    static const UINT message = RegisterWindowMessageA("TaskbarCreated");
    return message;
}

} // namespace pl::winui
