#pragma once
// The View of the form models on Qt: each form gets its window (made by the factory that knows the
// form) when it is first shown; message boxes, the save dialog, the clipboard and the tray are
// shared. The form models decide everything; this class only finds the window a call is meant for.

#include "forms/view.h"
#include "ui/qt/form_window.h"

#include <QPointer>
#include <QString>

#include <functional>
#include <map>
#include <vector>

namespace pl::assistant {
class ResidentForm;
}
namespace pl::dialog {
class JobDialog;
class JobDialogSlot;
} // namespace pl::dialog

namespace pl::qtui {

class QtResidentView;

class QtView final : public forms::View {
public:
    // `programName` titles message boxes that are given no title.
    explicit QtView(QString programName = QStringLiteral("plAssist"));
    ~QtView() override;
    QtView(const QtView&) = delete;
    QtView& operator=(const QtView&) = delete;

    // Makes the window of a form it knows, drawn at the given twips per pixel; null for other forms.
    using WindowFactory = std::function<QtFormWindow*(forms::Form& form, int twipsPerPixel)>;
    void addWindowFactory(WindowFactory factory);

    // The resident form: its hidden window holds the tray icon. `whenUnloaded` runs when the form
    // let the user close it.
    void bindResident(assistant::ResidentForm& form, std::function<void()> whenUnloaded = {});
    // Every job dialog the slot makes, one after the other.
    void bindJobDialogs(dialog::JobDialogSlot& slot);
    // One job dialog made elsewhere.
    void bindJobDialog(dialog::JobDialog& dialog);
    // (The MultiDoc sort dialog is a form of its own kind and needs no binding.)

    // The window of a form; null while it has none.
    QtFormWindow* windowOf(const forms::Form& form) const;
    QtResidentView* residentWindow();

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
    // Keystrokes to another program's window cannot be sent on every desktop (Wayland allows none),
    // so nothing is sent. The one use, moving on from the resident form when its closing is
    // refused, has nothing to move away from here: that form is never seen.
    void sendKeys(std::string_view keys) override;
    int twipsPerPixel() const override;
    void hideFromTaskbar(forms::Form& form) override;
    // Shows the form and waits, with the other windows taking no input, until it is hidden or
    // unloaded.
    void showModal(forms::Form& form) override;

private:
    QtFormWindow* window(forms::Form& form, bool make);

    QString programName_;
    std::vector<WindowFactory> factories_;
    std::map<const forms::Form*, QPointer<QtFormWindow>> windows_;
    forms::Form* resident_ = nullptr;
};

} // namespace pl::qtui
