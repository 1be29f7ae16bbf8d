#include "ui/win32/resident_window.h"

#include "base/text.h"
#include "dialog/job_dialog.h"

namespace pl::winui {

namespace {

constexpr int FirstMenuId = 1000;

// Off the screen and owned by a hidden window: an owned window is never in the task list.
FormWindowArgs residentArgs(HWND owner, HICON icon) {
    FormWindowArgs args;
    args.style = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU;
    args.exStyle = WS_EX_TOOLWINDOW;
    args.owner = owner;
    args.icon = icon;
    args.makeControls = false;
    return args;
}

} // namespace

ResidentOwner::ResidentOwner(HICON icon) {
    WindowArgs args;
    args.className = "PaperlarkApplication";
    args.style = WS_POPUP;
    args.exStyle = WS_EX_TOOLWINDOW;
    args.left = args.top = -32000;
    args.width = args.height = 1;
    args.icon = icon;
    owner = std::make_unique<Window>(args, MessageHandler{});
}

ResidentWindow::ResidentWindow(assistant::ResidentForm& form, HICON icon, std::function<void()> whenUnloaded)
    : ResidentOwner(icon), FormWindow(form, residentArgs(owner->handle(), icon)), resident_(form),
      whenUnloaded_(std::move(whenUnloaded)) {
    WindowArgs tip;
    tip.className = "PaperlarkTip";
    tip.title = "txtTooltip";
    tip.style = WS_CHILD;
    tip.left = tip.top = 0;
    tip.width = tip.height = 1;
    tip.owner = handle();
    tooltip_ = std::make_unique<Window>(tip, [this](HWND, UINT message, WPARAM, LPARAM lParam) -> std::optional<LRESULT> {
        if (message != WM_MOUSEMOVE)
            return std::nullopt;
        trayMessage(static_cast<int>(lParam)); // the tray's callback: the mouse message in lParam
        return 0;
    });
    TrayIconArgs icon_args;
    icon_args.window = tooltip_->handle();
    icon_args.id = static_cast<UINT>(resident_.trayIconData().iconId);
    icon_args.callbackMessage = static_cast<UINT>(resident_.trayIconData().callbackMessage);
    icon_args.icon = icon;
    tray_ = std::make_unique<TrayIcon>(icon_args);
    SetWindowPos(handle(), nullptr, -32000, -32000, 1, 1, SWP_NOZORDER | SWP_NOACTIVATE);
}

ResidentWindow::~ResidentWindow() {
    tray_.reset();
    tooltip_.reset();
}

void ResidentWindow::trayMessage(int message) {
    // The form learns of tray clicks the classic way: the message number, times the screen's twips
    // per pixel, in X of its text box's mouse move. Its own table decides what a click means.
    forward([&] { resident_.txtTooltip_MouseMove(0, 0, static_cast<float>(message * twipsPerPixel()), 0); });
}

void ResidentWindow::showPopupMenu(std::string_view menuName) {
    if (!attached())
        return;
    HMENU menu = CreatePopupMenu();
    menuItems_.clear();
    // A menu's items follow it in the form, up to the next menu.
    bool inMenu = false;
    for (const auto& control : model().controls()) {
        if (control.kind == forms::ControlKind::Menu) {
            inMenu = text::iequals(control.name, menuName);
            continue;
        }
        if (!inMenu || control.kind != forms::ControlKind::MenuItem || !control.visible)
            continue;
        const auto id = static_cast<UINT_PTR>(FirstMenuId + static_cast<int>(menuItems_.size()));
        AppendMenuA(menu, MF_STRING | (control.enabled ? 0u : static_cast<UINT>(MF_GRAYED)), id, control.caption.c_str());
        menuItems_.push_back(control.name);
    }
    POINT at{};
    GetCursorPos(&at);
    // The menu closes when the user clicks elsewhere only if its window is in the foreground.
    SetForegroundWindow(handle());
    TrackPopupMenu(menu, TPM_RIGHTBUTTON, at.x, at.y, 0, handle(), nullptr);
    PostMessageA(handle(), WM_NULL, 0, 0);
    DestroyMenu(menu);
}

void ResidentWindow::onMenu(int id) {
    const int index = id - FirstMenuId;
    if (index < 0 || index >= static_cast<int>(menuItems_.size()))
        return;
    if (text::iequals(menuItems_[static_cast<std::size_t>(index)], "mnShowPlAssist"))
        forward([&] { resident_.mnShowPlAssist_Click(); });
}

bool ResidentWindow::previewKey(int keyCode, int shift) {
    forward([&] { resident_.Form_KeyDown(keyCode, shift); });
    return keyCode == 0; // Alt+F4 is swallowed
}

void ResidentWindow::onClose() {
    int cancel = 0;
    forward([&] { resident_.Form_QueryUnload(cancel, assistant::UnloadFromControlMenu); });
    if (cancel == 0)
        unloaded();
}

void ResidentWindow::unloaded() {
    if (!attached())
        return;
    tray_->remove();
    detach();
    if (whenUnloaded_)
        whenUnloaded_();
}

std::optional<LRESULT> ResidentWindow::windowMessage(UINT message, WPARAM wParam, LPARAM) {
    if (message == TrayIcon::taskbarCreatedMessage()) {
        tray_->taskbarCreated();
        return 0;
    }
    switch (message) {
    case WM_QUERYENDSESSION:
        return TRUE;
    case WM_ENDSESSION:
        // The session ends: an unload that is not the control menu's, which the form lets through.
        if (wParam != FALSE && attached()) {
            int cancel = 0;
            forward([&] { resident_.Form_QueryUnload(cancel, dialog::unload_mode::AppWindows); });
            unloaded();
        }
        return 0;
    default:
        return std::nullopt;
    }
}

} // namespace pl::winui
