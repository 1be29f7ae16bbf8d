// The converter's password dialog as a real window, driven from a second thread with window
// messages as a person's typing and clicking would drive it. It needs a display (scripts/
// windows-tests.sh provides one).

#include "converter/win32/password_dialog.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <thread>

namespace {

// The dialog that `thread` shows, once it has set itself up (a dialog is shown only then). Other
// programs' dialogs of the same title do not count: tests run side by side.
HWND waitForDialog(DWORD thread) {
    for (int i = 0; i < 200; ++i) {
        HWND found = nullptr;
        EnumThreadWindows(
            thread,
            [](HWND window, LPARAM result) {
                wchar_t title[64] = {};
                GetWindowTextW(window, title, 64);
                if (IsWindowVisible(window) && std::wstring(title) == L"Paperlark") {
                    *reinterpret_cast<HWND*>(result) = window;
                    return FALSE;
                }
                return TRUE;
            },
            reinterpret_cast<LPARAM>(&found));
        if (found)
            return found;
        Sleep(25);
    }
    return nullptr;
}

std::wstring textOf(HWND window) {
    wchar_t buffer[512] = {};
    GetWindowTextW(window, buffer, 512);
    return buffer;
}

// Replaces the box's text by typing: everything selected, then the characters (or a backspace).
void type(HWND box, const wchar_t* text) {
    SendMessageW(box, EM_SETSEL, 0, -1);
    if (!*text)
        SendMessageW(box, WM_CHAR, VK_BACK, 0);
    for (const wchar_t* c = text; *c; ++c)
        SendMessageW(box, WM_CHAR, *c, 0);
}

// Whatever happened, the dialog must not stay open and keep the test waiting.
void closeIfStillOpen(HWND dialog) {
    Sleep(200);
    if (IsWindow(dialog))
        SendMessageW(GetDlgItem(dialog, IDCANCEL), BM_CLICK, 0, 0);
}

struct Typing {
    const wchar_t* password;
    const wchar_t* repeat;
    bool okEnabled;
};

TEST(password_dialog, gives_the_password_only_when_typed_the_same_twice) {
    std::wstring intro;
    std::vector<bool> enabled;
    const DWORD self = GetCurrentThreadId();
    std::thread person([&] {
        const HWND dialog = waitForDialog(self);
        ASSERT_NE(dialog, nullptr);
        for (HWND child = GetWindow(dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
            if (textOf(child).find(L"Lock PDF") == 0)
                intro = textOf(child);
        }
        const HWND ok = GetDlgItem(dialog, IDOK);
        enabled.push_back(IsWindowEnabled(ok) != 0);
        for (const Typing& step : {Typing{L"P\u00E4ss", L"", false}, Typing{L"P\u00E4ss", L"P\u00E4s", false},
                                   Typing{L"", L"", false}, Typing{L"P\u00E4ss", L"P\u00E4ss", true}}) {
            type(GetDlgItem(dialog, 100), step.password);
            type(GetDlgItem(dialog, 101), step.repeat);
            enabled.push_back(IsWindowEnabled(ok) != 0);
            EXPECT_EQ(IsWindowEnabled(ok) != 0, step.okEnabled) << "after typing a password and its repetition";
        }
        SendMessageW(ok, BM_CLICK, 0, 0);
        closeIfStillOpen(dialog);
    });

    const auto password = pl::converter::win32::askPasswordDialog("Bericht \xC3\x84.pdf");
    person.join();

    EXPECT_EQ(intro, L"Lock PDF with Password:\nBericht \u00C4.pdf");
    EXPECT_EQ(enabled, (std::vector<bool>{false, false, false, false, true}));
    EXPECT_EQ(password, std::optional<std::string>("P\xC3\xA4ss"));
}

TEST(password_dialog, cancel_gives_no_password) {
    const DWORD self = GetCurrentThreadId();
    std::thread person([self] {
        const HWND dialog = waitForDialog(self);
        ASSERT_NE(dialog, nullptr);
        type(GetDlgItem(dialog, 100), L"secret");
        type(GetDlgItem(dialog, 101), L"secret");
        SendMessageW(GetDlgItem(dialog, IDCANCEL), BM_CLICK, 0, 0);
    });

    const auto password = pl::converter::win32::askPasswordDialog("x.pdf");
    person.join();

    EXPECT_EQ(password, std::nullopt);
}

} // namespace
