#pragma once
// Win32's side of forms::View. A form's window is made on demand by whichever registered factory
// recognises the form; an unloaded form's window is kept until none of its procedures is on the
// stack any more. The one message loop lets each form preview its keys before IsDialogMessage does
// the tab order, access keys and default buttons. No decision is taken here.

#include "forms/view.h"
#include "ui/win32/form_window.h"
#include "ui/win32/message_loop.h"
#include "ui/win32/win32_api.h"

#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace pl::assistant {
class ResidentForm;
}
namespace pl::dialog {
class JobDialogSlot;
}

namespace pl::winui {

class ResidentWindow;

class Win32View final : public forms::View {
public:
    // `icon` is the program's icon (window and tray); `programName` titles message boxes given no title.
    explicit Win32View(HICON icon, std::string programName = "plAssist");
    ~Win32View() override;
    Win32View(const Win32View&) = delete;
    Win32View& operator=(const Win32View&) = delete;

    using WindowFactory = std::function<std::unique_ptr<FormWindow>(forms::Form& form)>;
    void addWindowFactory(WindowFactory factory);
    // The resident form: its hidden window holds the tray icon. `whenUnloaded` runs when the form
    // let the user (or the end of the session) close it.
    void bindResident(assistant::ResidentForm& form, std::function<void()> whenUnloaded = {});
    // Every job dialog the slot makes, one after the other.
    void bindJobDialogs(dialog::JobDialogSlot& slot);

    FormWindow* windowOf(const forms::Form& form) const;
    MessageLoop& loop() { return loop_; }

    // forms::View
    int msgBox(std::string_view prompt, int style = mb::OkOnly, std::string_view title = {}) override;
    std::optional<std::string> askSaveFileName(const forms::SaveDialogRequest& request) override;
    std::string clipboardText() override;
    void setClipboardText(std::string_view text) override;
    void addTrayIcon(std::string_view tip) override;
    void removeTrayIcon() override;
    void showPopupMenu(forms::Form& form, std::string_view menu) override;
    void show(forms::Form& form) override;
    void hide(forms::Form& form) override;
    void unload(forms::Form& form) override;
    void bringToFront(forms::Form& form) override;
    void setFocus(forms::Form& form, std::string_view control) override;
    void refresh(forms::Form& form) override;
    void doEvents() override;
    void sendKeys(std::string_view keys) override;
    int twipsPerPixel() const override;
    void hideFromTaskbar(forms::Form& form) override;
    void showModal(forms::Form& form) override;

private:
    FormWindow* window(forms::Form& form, bool make);
    ResidentWindow* residentWindow();
    bool filter(MSG& msg);
    void releaseRetired();
    HWND activeOwner() const;

    HICON icon_;
    std::string programName_;
    MessageLoop loop_;
    std::vector<WindowFactory> factories_;
    std::map<const forms::Form*, std::unique_ptr<FormWindow>> windows_;
    std::vector<std::unique_ptr<FormWindow>> retired_; // unloaded, destroyed once no procedure of theirs runs
    forms::Form* resident_ = nullptr;
};

} // namespace pl::winui
