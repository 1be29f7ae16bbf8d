#include "converter/win32/password_dialog.h"

#include "converter/win32/wide_text.h"

#include <windows.h>

#include <vector>

namespace pl::converter::win32 {

namespace {

enum ControlId : WORD { PasswordBox = 100, RepeatBox = 101 };

// A dialog template built in memory: the converter is one file without resources of its own.
class DialogTemplate {
public:
    DialogTemplate(std::wstring_view title, short width, short height) {
        DLGTEMPLATE header{};
        header.style = DS_MODALFRAME | DS_CENTER | DS_SETFONT | DS_SETFOREGROUND | WS_POPUP | WS_CAPTION | WS_SYSMENU;
        header.cx = width;
        header.cy = height;
        append(&header, sizeof header);
        word(0); // no menu
        word(0); // the standard dialog class
        text(title);
        word(9); // the font's point size
        text(L"Segoe UI");
    }

    void add(WORD id, WORD atom, DWORD style, std::wstring_view caption, short x, short y, short cx, short cy) {
        align();
        DLGITEMTEMPLATE item{};
        item.style = style | WS_CHILD | WS_VISIBLE;
        item.x = x;
        item.y = y;
        item.cx = cx;
        item.cy = cy;
        item.id = id;
        append(&item, sizeof item);
        word(0xFFFF);
        word(atom);
        text(caption);
        word(0); // no creation data
        ++reinterpret_cast<DLGTEMPLATE*>(bytes_.data())->cdit;
    }

    const DLGTEMPLATE* get() const { return reinterpret_cast<const DLGTEMPLATE*>(bytes_.data()); }

private:
    std::vector<unsigned char> bytes_;

    void append(const void* data, std::size_t size) {
        const auto* p = static_cast<const unsigned char*>(data);
        bytes_.insert(bytes_.end(), p, p + size);
    }
    void word(WORD w) { append(&w, sizeof w); }
    void text(std::wstring_view s) {
        append(s.data(), s.size() * sizeof(wchar_t));
        word(0);
    }
    void align() {
        while (bytes_.size() % 4)
            bytes_.push_back(0);
    }
};

constexpr WORD kButton = 0x0080, kEdit = 0x0081, kStatic = 0x0082;

std::wstring boxText(HWND dialog, int id) {
    const HWND box = GetDlgItem(dialog, id);
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(box)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(box, text.data(), static_cast<int>(text.size()))));
    return text;
}

struct State {
    std::optional<std::string> password;
};

INT_PTR CALLBACK dialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG:
        SetWindowLongPtrW(dialog, DWLP_USER, lParam);
        EnableWindow(GetDlgItem(dialog, IDOK), FALSE);
        SetWindowPos(dialog, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
        return TRUE;
    case WM_COMMAND: {
        const WORD id = LOWORD(wParam);
        if (HIWORD(wParam) == EN_CHANGE) {
            // Only a password typed the same twice can be used.
            const std::wstring password = boxText(dialog, PasswordBox);
            EnableWindow(GetDlgItem(dialog, IDOK), !password.empty() && password == boxText(dialog, RepeatBox));
            return TRUE;
        }
        if (id == IDOK && IsWindowEnabled(GetDlgItem(dialog, IDOK))) {
            auto* state = reinterpret_cast<State*>(GetWindowLongPtrW(dialog, DWLP_USER));
            std::wstring password = boxText(dialog, PasswordBox);
            state->password = narrow(password);
            SecureZeroMemory(password.data(), password.size() * sizeof(wchar_t));
            EndDialog(dialog, IDOK);
            return TRUE;
        }
        if (id == IDCANCEL) {
            EndDialog(dialog, IDCANCEL);
            return TRUE;
        }
        break;
    }
    default:
        break;
    }
    return FALSE;
}

} // namespace

std::optional<std::string> askPasswordDialog(std::string_view documentName) {
    DialogTemplate form(L"Paperlark", 220, 104);
    form.add(0xFFFF, kStatic, SS_LEFT | SS_NOPREFIX, L"Lock PDF with Password:\n" + wide(documentName), 8, 8, 204,
             20);
    form.add(0xFFFF, kStatic, SS_LEFT, L"Password:", 8, 34, 70, 10);
    form.add(PasswordBox, kEdit, ES_PASSWORD | ES_AUTOHSCROLL | WS_BORDER | WS_TABSTOP, L"", 80, 32, 132, 13);
    form.add(0xFFFF, kStatic, SS_LEFT, L"Repeat password:", 8, 54, 70, 10);
    form.add(RepeatBox, kEdit, ES_PASSWORD | ES_AUTOHSCROLL | WS_BORDER | WS_TABSTOP, L"", 80, 52, 132, 13);
    form.add(IDOK, kButton, BS_DEFPUSHBUTTON | WS_TABSTOP, L"OK", 104, 80, 50, 15);
    form.add(IDCANCEL, kButton, BS_PUSHBUTTON | WS_TABSTOP, L"Cancel", 162, 80, 50, 15);

    State state;
    if (DialogBoxIndirectParamW(GetModuleHandleW(nullptr), form.get(), nullptr, dialogProc,
                                reinterpret_cast<LPARAM>(&state)) != IDOK)
        return std::nullopt;
    return state.password;
}

} // namespace pl::converter::win32
