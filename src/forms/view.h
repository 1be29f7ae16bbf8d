#pragma once
// Everything a person sees or answers, as the behaviour code asks for it. The Qt and Win32
// front-ends implement it by drawing the form models and forwarding events; the tests implement it
// with a scripted view that answers as the test says and records what was shown.

#include "base/message_box.h"
#include "forms/form_model.h"

#include <optional>
#include <string>
#include <string_view>

namespace pl::forms {

// What the common save dialog is asked to show.
struct SaveDialogRequest {
    std::string title;
    std::string filter;     // "PDF (*.pdf)|*.pdf|..." as the classic control takes it
    int filterIndex = 1;
    std::string defaultExt; // without the dot
    std::string initDir;
    std::string fileName;
    bool overwritePrompt = true;
    // The chosen folder must exist (the classic dialog's path-must-exist flag).
    bool pathMustExist = false;
    // In `filter` a zero character divides a description from its pattern just as "|" does.
};

class View : public MessageBoxes {
public:
    // The save dialog: the chosen full path, or nothing when the user cancelled.
    virtual std::optional<std::string> askSaveFileName(const SaveDialogRequest& request) = 0;

    virtual std::string clipboardText() = 0;
    virtual void setClipboardText(std::string_view text) = 0;

    // The notification-area icon with its tip text; adding an icon that is there changes nothing.
    virtual void addTrayIcon(std::string_view tip) = 0;
    virtual void removeTrayIcon() = 0;
    // Shows the pop-up menu `menu` of `form` at the mouse position.
    virtual void showPopupMenu(Form& form, std::string_view menu) = 0;

    // A form's life on screen. `show` shows it modeless; `unload` destroys its window.
    virtual void show(Form& form) = 0;
    virtual void hide(Form& form) = 0;
    virtual void unload(Form& form) = 0;
    // Raises the form above other windows (briefly topmost, then not), without keeping it on top.
    virtual void bringToFront(Form& form) = 0;
    virtual void setFocus(Form& form, std::string_view control) = 0;
    // The model changed: draw it again.
    virtual void refresh(Form& form) = 0;
    // Lets pending user-interface events run once (DoEvents).
    virtual void doEvents() = 0;
    // Sends keystrokes to the active window, in the classic SendKeys notation ("%{TAB}").
    virtual void sendKeys(std::string_view keys) = 0;
    // Twips per screen pixel (15 on normal screens, 12 with large fonts).
    virtual int twipsPerPixel() const = 0;

    // Keeps a form that is never meant to be seen out of sight and out of the task list: the
    // application leaves the task list, the form's owner window and then the form are hidden.
    virtual void hideFromTaskbar(Form& form) { hide(form); }

    // Shows a form modally: the other forms take no input until it is hidden or unloaded. A view that
    // cannot block shows it modeless.
    virtual void showModal(Form& form) { show(form); }
};

} // namespace pl::forms
