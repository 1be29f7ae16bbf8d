#pragma once
// The window of the MultiDoc sort dialog frmSort: shown modally, resizable down to the form's
// minimum, its list and buttons forwarded to the form's procedures.

#include "dialog/sort/sort_form.h"
#include "ui/win32/form_window.h"

namespace pl::winui {

class SortWindow final : public FormWindow {
public:
    SortWindow(dialog::SortForm& form, HICON icon, HWND owner);

protected:
    void onCommand(const std::string& name, int code) override;
    void onClose() override;
    std::optional<LRESULT> windowMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    const dialog::Background* background() const override { return &sort_.background(); }

private:
    dialog::SortForm& sort_;
};

} // namespace pl::winui
