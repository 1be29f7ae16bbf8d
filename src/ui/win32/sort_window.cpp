#include "ui/win32/sort_window.h"

#include "base/text.h"

namespace pl::winui {

namespace {

FormWindowArgs sortArgs(HICON icon, HWND owner) {
    FormWindowArgs args;
    args.icon = icon;
    args.owner = owner;
    args.frame = FormFrame{dialog::sort_layout::FrameWidth, dialog::sort_layout::FrameHeight};
    args.resizable = true;
    return args;
}

} // namespace

SortWindow::SortWindow(dialog::SortForm& form, HICON icon, HWND owner)
    : FormWindow(form, sortArgs(icon, owner)), sort_(form) {}

void SortWindow::onCommand(const std::string& name, int code) {
    if (redrawing())
        return;
    if (code == BN_CLICKED) {
        if (text::iequals(name, "cmdUp"))
            forward([&] { sort_.cmdUp_Click(); });
        else if (text::iequals(name, "cmdDown"))
            forward([&] { sort_.cmdDown_Click(); });
        else if (text::iequals(name, "cmdOK"))
            forward([&] { sort_.cmdOK_Click(); });
        else if (text::iequals(name, "cmdCancel"))
            forward([&] { sort_.cmdCancel_Click(); });
        else if (text::iequals(name, "cmdHelp"))
            forward([&] { sort_.cmdHelp_Click(); });
    } else if (code == LBN_SELCHANGE && text::iequals(name, "lstDocuments")) {
        sort_.control("lstDocuments").value = static_cast<int>(SendMessageA(controlHandle(name), LB_GETCURSEL, 0, 0));
    }
}

void SortWindow::onClose() {
    forward([&] { sort_.Unload(); });
}

std::optional<LRESULT> SortWindow::windowMessage(UINT message, WPARAM, LPARAM lParam) {
    const int tpp = twipsPerPixel();
    switch (message) {
    case WM_GETMINMAXINFO: {
        RECT outer{0, 0, toPixels(dialog::sort_layout::MinimumWidth - frame().width, tpp),
                   toPixels(dialog::sort_layout::MinimumHeight - frame().height, tpp)};
        AdjustWindowRectEx(&outer, static_cast<DWORD>(GetWindowLongPtrA(handle(), GWL_STYLE)), FALSE,
                           static_cast<DWORD>(GetWindowLongPtrA(handle(), GWL_EXSTYLE)));
        auto* info = reinterpret_cast<MINMAXINFO*>(lParam);
        info->ptMinTrackSize = POINT{outer.right - outer.left, outer.bottom - outer.top};
        return 0;
    }
    case WM_SIZE: {
        if (!attached() || redrawing())
            return std::nullopt;
        // Only a size the model does not have yet is news to it.
        const SIZE now{LOWORD(lParam), HIWORD(lParam)};
        const SIZE modelled = inside();
        if (now.cx == modelled.cx && now.cy == modelled.cy)
            return std::nullopt;
        auto& form = model();
        form.width = now.cx * tpp + frame().width;
        form.height = now.cy * tpp + frame().height;
        forward([&] { sort_.Form_Resize(); });
        return 0;
    }
    default:
        return std::nullopt;
    }
}

} // namespace pl::winui
