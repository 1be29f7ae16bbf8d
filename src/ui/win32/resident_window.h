#pragma once
// The window of the resident form frmPlAssist1: never shown, out of the task list, with a hidden
// child standing for the text box txtTooltip that receives the tray icon's messages, the form's
// pop-up menu, and the rules for closing: a close from the control menu asks the form, the end of
// the session ends the program normally.

#include "assistant/resident_form.h"
#include "ui/win32/form_window.h"
#include "ui/win32/tray_icon.h"

#include <functional>
#include <memory>

namespace pl::winui {

// The hidden application window that owns the form; made before the form's window.
struct ResidentOwner {
    explicit ResidentOwner(HICON icon);
    std::unique_ptr<Window> owner;
};

class ResidentWindow final : private ResidentOwner, public FormWindow {
public:
    // `whenUnloaded` runs when the form let itself be closed.
    ResidentWindow(assistant::ResidentForm& form, HICON icon, std::function<void()> whenUnloaded);
    ~ResidentWindow() override;

    TrayIcon& tray() { return *tray_; }
    HWND ownerHandle() const { return owner->handle(); }
    void showPopupMenu(std::string_view menu) override;
    bool previewKey(int keyCode, int shift) override;

protected:
    void onMenu(int id) override;
    void onClose() override;
    std::optional<LRESULT> windowMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    void trayMessage(int message);
    void unloaded();

    assistant::ResidentForm& resident_;
    std::function<void()> whenUnloaded_;
    std::unique_ptr<Window> tooltip_; // txtTooltip
    std::unique_ptr<TrayIcon> tray_;
    std::vector<std::string> menuItems_; // by command id - FirstMenuId
};

} // namespace pl::winui
