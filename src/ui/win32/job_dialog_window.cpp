#include "ui/win32/job_dialog_window.h"

#include "base/text.h"
#include "dialog/dialog_layout.h"

namespace pl::winui {

namespace {

int mouseButton(UINT message) {
    switch (message) {
    case WM_LBUTTONUP:
        return 1;
    case WM_RBUTTONUP:
        return 2;
    default:
        return 4;
    }
}

FormWindowArgs dialogArgs(HICON icon) {
    FormWindowArgs args;
    args.icon = icon;
    args.frame = FormFrame{dialog::layout::FrameWidth, dialog::layout::FrameHeight};
    return args;
}

} // namespace

JobDialogWindow::JobDialogWindow(dialog::JobDialog& dialog, HICON icon)
    : FormWindow(dialog.form(), dialogArgs(icon)), dialog_(dialog) {}

void JobDialogWindow::buttonClicked(const std::string& name) {
    auto& actions = dialog_.actions();
    if (text::iequals(name, "cmdEmail"))
        forward([&] { actions.cmdEmail_Click(); });
    else if (text::iequals(name, "cmdSave"))
        forward([&] { actions.cmdSave_Click(); });
    else if (text::iequals(name, "cmdDesktop"))
        forward([&] { actions.cmdDesktop_Click(); });
    else if (text::iequals(name, "cmdMulti"))
        forward([&] { actions.cmdMulti_Click(); });
    else if (text::iequals(name, "cmdSort"))
        forward([&] { actions.cmdSort_Click(); });
    else if (text::iequals(name, "chkOpenPDF") || text::iequals(name, "ckEncodePDF")) {
        // A click changes the box as a standard box does (ticked goes off, anything else is
        // ticked); the model hears of it afterwards.
        auto& box = dialog_.control(name);
        box.value = box.value == forms::Checked ? forms::Unchecked : forms::Checked;
        redraw();
    }
}

void JobDialogWindow::onCommand(const std::string& name, int code) {
    if (redrawing())
        return;
    auto& actions = dialog_.actions();
    switch (code) {
    case BN_CLICKED: // also STN_CLICKED of the labels, which is 0 as well
        if (text::iequals(name, "lbOpenPDF"))
            forward([&] { actions.lbOpenPDF_Click(); });
        else if (text::iequals(name, "lbEncodePDF"))
            forward([&] { actions.lbEncodePDF_Click(); });
        else if (text::iequals(name, "lbConfig"))
            forward([&] { actions.lbConfig_Click(); });
        else
            buttonClicked(name);
        break;
    case BN_KILLFOCUS:
        if (text::iequals(name, "chkOpenPDF"))
            forward([&] { actions.chkOpenPDF_LostFocus(); });
        break;
    case CBN_SELCHANGE:
        if (text::iequals(name, "plProfile")) {
            const auto index = static_cast<int>(SendMessageA(controlHandle(name), CB_GETCURSEL, 0, 0));
            forward([&] { dialog_.selectProfile(index); });
        }
        break;
    case EN_SETFOCUS:
        if (text::iequals(name, "pdfName")) {
            forward([&] { dialog_.pdfName_GotFocus(); });
            if (!attached())
                break;
            // Typing replaces what the model selected.
            const forms::Control& box = dialog_.control("pdfName");
            SendMessageA(controlHandle(name), EM_SETSEL, static_cast<WPARAM>(box.selStart),
                         static_cast<LPARAM>(box.selStart + box.selLength));
        }
        break;
    case EN_CHANGE:
        if (text::iequals(name, "pdfName") && attached())
            dialog_.control("pdfName").text = windowText(controlHandle(name));
        break;
    default:
        break;
    }
}

std::optional<LRESULT> JobDialogWindow::controlMessage(const std::string& name, HWND control, UINT message,
                                                       WPARAM wParam, LPARAM lParam) {
    if (message == WM_CHAR && text::iequals(name, "pdfName")) {
        // The name box's typing rules: a key set to 0 is swallowed, any other goes on to the box
        // (after a paste key the model has cleaned the clipboard, so the box pastes the cleaned text).
        int keyAscii = static_cast<int>(wParam);
        forward([&] { dialog_.pdfName_KeyPress(keyAscii); });
        if (!attached() || keyAscii == 0 || keyAscii == dialog::KeyEnter)
            return 0;
        return defaultProcedure(control, message, static_cast<WPARAM>(keyAscii), lParam);
    }
    if ((message == WM_LBUTTONUP || message == WM_RBUTTONUP) && text::iequals(name, "ckEncodePDF")) {
        // The standard box handles the click first; MouseUp follows, as on the classic form.
        const LRESULT result = defaultProcedure(control, message, wParam, lParam);
        const int tpp = twipsPerPixel();
        const auto x = static_cast<float>(static_cast<short>(LOWORD(lParam)) * tpp);
        const auto y = static_cast<float>(static_cast<short>(HIWORD(lParam)) * tpp);
        const int shift = ((wParam & MK_SHIFT) ? 1 : 0) | ((wParam & MK_CONTROL) ? 2 : 0);
        forward([&] { dialog_.actions().ckEncodePDF_MouseUp(mouseButton(message), shift, x, y); });
        return result;
    }
    if (message == WM_SETCURSOR && text::iequals(name, "lbConfig")) {
        SetCursor(LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_HAND))); // it reads as a link
        return TRUE;
    }
    return std::nullopt;
}

bool JobDialogWindow::previewKey(int keyCode, int shift) {
    // The form sees every key first: Escape asks wherever the focus is.
    forward([&] { dialog_.Form_KeyDown(keyCode, shift); });
    return !attached() || keyCode == 0;
}

void JobDialogWindow::timerFired(std::string_view name) {
    if (name == "Timer1")
        forward([&] { dialog_.Timer1_Timer(); });
}

void JobDialogWindow::onClose() {
    // The close button and the system menu: the dialog asks before it lets itself be closed.
    forward([&] { dialog_.Unload(dialog::unload_mode::ControlMenu); });
}

} // namespace pl::winui
