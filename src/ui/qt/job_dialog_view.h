#pragma once
// The view of the job dialog plDialog1: every control where the model puts it, the background the
// model chose (a gradient of lines or a plain colour) painted on every repaint, and each of the
// user's actions forwarded to the dialog's event procedures and actions.

#include "dialog/job_dialog.h"
#include "ui/qt/form_window.h"

#include <string_view>

namespace pl::qtui {

class QtJobDialogView final : public QtFormWindow {
    Q_OBJECT
public:
    QtJobDialogView(dialog::JobDialog& dialog, int twipsPerPixel);
    ~QtJobDialogView() override;

protected:
    void paintEvent(QPaintEvent* event) override;
    // The dialog opens in the middle of the screen that holds the mouse, where the person who just
    // printed is looking, at the size its load sequence left it; the model's later moves apply
    // from there.
    void showEvent(QShowEvent* event) override;
    QPoint screenPlace(QPoint modelPlace) const override;
    // The close button and the system menu: the dialog asks before it lets itself be closed.
    void closeEvent(QCloseEvent* event) override;
    bool previewKey(QWidget* control, QKeyEvent& event) override;
    void timerFired(std::string_view name) override;

private:
    // Runs the action `procedure` whenever the control `name`, a `Widget`, emits `signal`.
    template <class Widget, class Signal>
    void forwardSignal(std::string_view name, Signal signal, void (dialog::JobActions::*procedure)());
    void connectButtons();
    void connectOptions();
    void connectNameAndProfile();
    forms::Control& control(std::string_view name) { return dialog_.control(name); }

    dialog::JobDialog& dialog_;
    mutable QPoint offset_; // from the model's place to the screen's
    bool settled_ = false;  // shown, and the procedure that showed it has ended
};

} // namespace pl::qtui
