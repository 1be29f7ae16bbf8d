#pragma once
// The window of the job dialog plDialog1: every control where the model puts it, the background
// the model chose (a gradient of lines or a plain colour) kept drawn, and each of the user's
// actions forwarded to the dialog's event procedures and actions.

#include "dialog/job_dialog.h"
#include "ui/win32/form_window.h"

namespace pl::winui {

class JobDialogWindow final : public FormWindow {
public:
    JobDialogWindow(dialog::JobDialog& dialog, HICON icon);

    bool previewKey(int keyCode, int shift) override;

protected:
    void onCommand(const std::string& name, int code) override;
    void onClose() override;
    void timerFired(std::string_view name) override;
    std::optional<LRESULT> controlMessage(const std::string& name, HWND control, UINT message, WPARAM wParam,
                                          LPARAM lParam) override;
    const dialog::Background* background() const override { return &dialog_.background(); }

private:
    void buttonClicked(const std::string& name);

    dialog::JobDialog& dialog_;
};

} // namespace pl::winui
