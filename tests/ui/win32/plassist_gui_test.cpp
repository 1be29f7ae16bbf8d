// plAssist.exe as a user meets it, under Wine on a virtual display: real windows found and driven
// with window messages from this program, the real registry, real spool folders and a recording
// converter in the suite folder.

#include "gui_session.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>

namespace pl::test::gui {
namespace {

// The control with the keyboard focus in the thread of `window`.
HWND focusOf(HWND window) {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    return GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &info) ? info.hwndFocus : nullptr;
}

void setClipboard(const std::string& text) {
    if (!OpenClipboard(nullptr))
        return;
    EmptyClipboard();
    HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, text.size() + 1);
    std::memcpy(GlobalLock(memory), text.c_str(), text.size() + 1);
    GlobalUnlock(memory);
    SetClipboardData(CF_TEXT, memory);
    CloseClipboard();
}

std::string clipboard() {
    std::string text;
    if (!OpenClipboard(nullptr))
        return text;
    if (HANDLE data = GetClipboardData(CF_TEXT)) {
        text = static_cast<const char*>(GlobalLock(data));
        GlobalUnlock(data);
    }
    CloseClipboard();
    return text;
}

// The job dialog of a job just dropped; its window, or null.
HWND openJobDialog(Session& session, const std::string& title) {
    if (!session.start())
        return nullptr;
    session.dropJob(title);
    HWND dialog = session.waitForWindow("PaperlarkForm");
    // The dialog is waiting for the user once its name box has the focus.
    if (dialog == nullptr || !waitFor([&] { return focusOf(dialog) == findChild(dialog, "Edit"); }))
        return nullptr;
    return dialog;
}

TEST(plassist_gui, dialog_proposes_the_title_and_desktop_starts_the_converter) {
    Session session;
    HWND dialog = openJobDialog(session, "Quarterly Report");
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(windowText(findChild(dialog, "Edit")), "Quarterly Report");

    HWND desktop = findChild(dialog, "Button", "desktop");
    ASSERT_NE(desktop, nullptr);
    PostMessageA(desktop, BM_CLICK, 0, 0);
    ASSERT_TRUE(waitFor([&] { return !session.converterCalls().empty(); }));

    const std::string call = session.converterCalls().front();
    const std::string expectedStart = "\"" + session.suite() + "Paperlark.exe\" /3 delps,save,nocode \"Standard\" \"" +
                                      session.desktop() + "\\Quarterly Report.pdf\" \"" + session.spool() + "~";
    EXPECT_EQ(call.substr(0, expectedStart.size()), expectedStart);
    EXPECT_EQ(call.substr(call.size() - 4), ".ps\"");
    // The job was taken away under a private name, and the dialog went.
    EXPECT_FALSE(fileExists(session.spool() + session.user() + "000001.ps"));
    EXPECT_TRUE(waitFor([&] { return session.findWindow("PaperlarkForm") == nullptr; }));
}

TEST(plassist_gui, save_asks_in_the_common_dialog_and_converts_to_the_chosen_file) {
    Session session;
    const std::string out = session.root() + "out";
    CreateDirectoryA(out.c_str(), nullptr);
    session.setValue(false, "LastDir", out);
    HWND dialog = openJobDialog(session, "Invoice");
    ASSERT_NE(dialog, nullptr);
    PostMessageA(findChild(dialog, "Button", "save"), BM_CLICK, 0, 0);

    HWND box = session.waitForWindow("#32770");
    ASSERT_NE(box, nullptr);
    // The name box's name is offered, under the one file type of the model's filter.
    HWND types = GetDlgItem(box, 0x470); // the common dialog's file type box
    ASSERT_NE(types, nullptr);
    wchar_t type[256] = {}; // the ANSI form of this message loses all but one character between processes
    SendMessageW(types, CB_GETLBTEXT, 0, reinterpret_cast<LPARAM>(type));
    EXPECT_STREQ(type, L"Paperlark File     (.pdf)");
    HWND name = findVisibleDescendant(box, "Edit");
    ASSERT_NE(name, nullptr);
    EXPECT_EQ(windowText(name), "Invoice");
    SendMessageA(name, WM_SETTEXT, 0, reinterpret_cast<LPARAM>("Saved Copy"));
    PostMessageA(GetDlgItem(box, IDOK), BM_CLICK, 0, 0);

    ASSERT_TRUE(waitFor([&] { return !session.converterCalls().empty(); }));
    const std::string expectedStart = "\"" + session.suite() + "Paperlark.exe\" /3 delps,save,nocode \"Standard\" \"" + out +
                                      "\\Saved Copy.pdf\" \"" + session.spool() + "~";
    const std::string call = session.converterCalls().front();
    EXPECT_EQ(call.substr(0, expectedStart.size()), expectedStart);
}

TEST(plassist_gui, sort_dialog_reorders_the_queue_modally) {
    Session session;
    const std::string first = session.queueMultiDoc("First", 1);
    const std::string second = session.queueMultiDoc("Second", 2);
    HWND dialog = openJobDialog(session, "Cover");
    ASSERT_NE(dialog, nullptr);
    HWND sortButton = findChild(dialog, "Button", "&Change order");
    ASSERT_NE(sortButton, nullptr);
    ASSERT_TRUE(IsWindowVisible(sortButton));
    PostMessageA(sortButton, BM_CLICK, 0, 0);

    HWND sort = nullptr;
    ASSERT_TRUE(waitFor([&] { return (sort = FindWindowA("PaperlarkForm", "MultiDoc Sort")) && IsWindowVisible(sort); }));
    EXPECT_FALSE(IsWindowEnabled(dialog)); // the job dialog waits for it
    HWND list = findChild(sort, "ListBox");
    ASSERT_NE(list, nullptr);
    ASSERT_EQ(SendMessageA(list, LB_GETCOUNT, 0, 0), 2);
    // The user picks the first document and moves it down.
    SendMessageA(list, LB_SETCURSEL, 0, 0);
    SendMessageA(sort, WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(list), LBN_SELCHANGE), reinterpret_cast<LPARAM>(list));
    SendMessageA(findChild(sort, "Button", "&down"), BM_CLICK, 0, 0);
    PostMessageA(findChild(sort, "Button", "OK"), BM_CLICK, 0, 0);

    ASSERT_TRUE(waitFor([&] { return !IsWindow(sort) || !IsWindowVisible(sort); }));
    EXPECT_TRUE(waitFor([&] { return IsWindowEnabled(dialog) != FALSE; }));
    EXPECT_NE(readFile(first).find("%%Title: Second"), std::string::npos);
    EXPECT_NE(readFile(second).find("%%Title: First"), std::string::npos);
}

TEST(plassist_gui, name_box_swallows_a_colon_and_the_dialog_asks_before_closing_or_deleting) {
    Session session;
    const std::string queued = session.queueMultiDoc("Queued Part", 1);
    HWND dialog = openJobDialog(session, "Letter");
    ASSERT_NE(dialog, nullptr);
    const std::string job = session.spool() + session.user() + "000001.ps";
    HWND name = findChild(dialog, "Edit");

    SendMessageA(name, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(""));
    for (char c : std::string("a:b"))
        PostMessageA(name, WM_CHAR, static_cast<WPARAM>(c), 1);
    EXPECT_TRUE(waitFor([&] { return windowText(name) == "ab"; })) << windowText(name);
    // Ctrl+V pastes the clipboard's text without the application's name, and leaves it so.
    setClipboard("Microsoft Word - Letter");
    PostMessageA(name, WM_CHAR, 22, 1);
    EXPECT_TRUE(waitFor([&] { return windowText(name) == "abLetter"; })) << windowText(name);
    EXPECT_EQ(clipboard(), "Letter");

    // The close button asks; No keeps the dialog, the job and the queue.
    PostMessageA(dialog, WM_CLOSE, 0, 0);
    ASSERT_TRUE(session.answerMessageBox(IDNO));
    EXPECT_TRUE(IsWindowVisible(dialog));
    EXPECT_TRUE(fileExists(job));
    EXPECT_TRUE(fileExists(queued));

    // Escape asks too; OK deletes the job with the queue beside it.
    PostMessageA(name, WM_KEYDOWN, VK_ESCAPE, 1);
    std::string prompt;
    ASSERT_TRUE(session.answerMessageBox(IDOK, &prompt));
    EXPECT_FALSE(prompt.empty());
    EXPECT_TRUE(waitFor([&] { return !fileExists(job); }));
    EXPECT_TRUE(session.converterCalls().empty());
}

TEST(plassist_gui, restrictive_policy_closes_up_rows_and_buttons_without_a_gap) {
    Session session;
    session.setValue(true, "APol", "disableemail,disablequality");
    HWND dialog = openJobDialog(session, "Policy");
    ASSERT_NE(dialog, nullptr);
    saveScreenshot(dialog, artifactFolder() + "job-dialog-policy.bmp");

    // At 96 DPI: 15 twips a pixel. The profile row is gone, so the name row moved up into its
    // place (label 1260, box 1500 twips); Save took the place of E-mail at the left margin
    // (240 twips) and Desktop follows one button and gap (1620 twips) later.
    HWND profile = findChild(dialog, "ComboBox");
    ASSERT_NE(profile, nullptr);
    EXPECT_FALSE(IsWindowVisible(profile));
    EXPECT_EQ(clientRect(dialog, findChild(dialog, "Edit")).top, 100);
    HWND email = findChild(dialog, "Button", "mail");
    ASSERT_NE(email, nullptr);
    EXPECT_FALSE(IsWindowVisible(email));
    const RECT desktop = clientRect(dialog, findChild(dialog, "Button", "desktop"));
    EXPECT_EQ(desktop.left, 16 + 108);
    // Whatever stands left of Desktop on its row stands at the margin.
    RECT first{};
    for (HWND b = FindWindowExA(dialog, nullptr, "Button", nullptr); b != nullptr;
         b = FindWindowExA(dialog, b, "Button", nullptr)) {
        const RECT r = clientRect(dialog, b);
        if (IsWindowVisible(b) && r.top == desktop.top && r.left < desktop.left)
            first = r;
    }
    EXPECT_EQ(first.left, 16);
    // The window ends one margin below the row of buttons.
    RECT client{};
    GetClientRect(dialog, &client);
    EXPECT_EQ(client.bottom - first.bottom, 16);
}

COLORREF rgb(COLORREF value) {
    return value & 0xFFFFFF;
}

TEST(plassist_gui, each_look_keeps_its_background_across_repaints) {
    struct Look {
        const char* style;
        const char* picture;
        COLORREF top; // the colour of the first line, left of the controls
    };
    const Look looks[] = {{"", "job-dialog-standard.bmp", 0xEDA985},
                          {"vista", "job-dialog-vista.bmp", 0x000000},
                          {"grey", "job-dialog-grey.bmp", GetSysColor(COLOR_BTNFACE)}};
    for (const Look& look : looks) {
        SCOPED_TRACE(look.picture);
        Session session;
        if (*look.style != '\0')
            session.setValue(true, "Style", look.style);
        HWND dialog = openJobDialog(session, "Looks");
        ASSERT_NE(dialog, nullptr);
        RedrawWindow(dialog, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
        Sleep(300);
        EXPECT_TRUE(saveScreenshot(dialog, artifactFolder() + look.picture));
        EXPECT_EQ(rgb(clientPixel(dialog, 2, 0)), rgb(look.top));
        RECT client{};
        GetClientRect(dialog, &client);
        const COLORREF bottom = rgb(clientPixel(dialog, 2, client.bottom - 1));
        if (std::string(look.style) == "grey")
            EXPECT_EQ(bottom, rgb(look.top));
        else
            EXPECT_NE(bottom, rgb(look.top)); // a gradient
    }
}

TEST(plassist_gui, tray_icon_appears_for_queued_documents_comes_back_with_the_task_bar_and_its_menu_makes_a_job) {
    Session session;
    session.queueMultiDoc("Queued Chapter", 1);
    ASSERT_TRUE(session.start());
    // The icon is there once the shell knows it: changing its tip succeeds only for an icon shown.
    HWND tip = session.trayWindow();
    ASSERT_NE(tip, nullptr);
    NOTIFYICONDATAA icon{};
    icon.cbSize = sizeof icon;
    icon.hWnd = tip;
    icon.uID = 2;
    const auto iconShown = [&] { return Shell_NotifyIconA(NIM_MODIFY, &icon) != FALSE; };
    ASSERT_TRUE(waitFor(iconShown));
    // The task bar starts afresh without it (Explorer restarted) and says so: it comes back.
    Shell_NotifyIconA(NIM_DELETE, &icon);
    ASSERT_FALSE(iconShown());
    PostMessageA(GetParent(tip), RegisterWindowMessageA("TaskbarCreated"), 0, 0);
    EXPECT_TRUE(waitFor(iconShown, 5s));

    // A right click on the icon: its message number arrives as the callback's lParam.
    PostMessageA(tip, WM_MOUSEMOVE, 0, WM_RBUTTONDOWN);
    HWND menu = nullptr;
    ASSERT_TRUE(waitFor([&] { return (menu = FindWindowA("#32768", nullptr)) != nullptr && IsWindowVisible(menu); }));
    PostMessageA(menu, WM_KEYDOWN, VK_DOWN, 0);
    PostMessageA(menu, WM_KEYDOWN, VK_RETURN, 0);

    HWND dialog = session.waitForWindow("PaperlarkForm");
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(waitFor([&] { return windowText(findChild(dialog, "Edit")) == "Queued Chapter"; }))
        << windowText(findChild(dialog, "Edit"));
}

TEST(plassist_gui, hidden_form_refuses_closing_unless_told_and_ends_with_the_session) {
    enum class Ask { AltF4, Close, EndSession };
    struct Case {
        const char* citrixUnload;
        Ask ask;
        bool ends;
    };
    const Case cases[] = {{"1", Ask::AltF4, false}, // swallowed before it can ask for closing
                          {"", Ask::Close, false},
                          {"1", Ask::Close, true},
                          {"", Ask::EndSession, true}};
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string("CitrixUnload=") + c.citrixUnload + " ask=" + std::to_string(static_cast<int>(c.ask)));
        Session session;
        if (*c.citrixUnload != '\0')
            session.setValue(true, "CitrixUnload", c.citrixUnload);
        ASSERT_TRUE(session.start());
        HWND resident = GetParent(session.trayWindow());
        ASSERT_NE(resident, nullptr);
        switch (c.ask) {
        case Ask::AltF4:
            PostMessageA(resident, WM_SYSKEYDOWN, VK_F4, 1 << 29);
            break;
        case Ask::Close:
            PostMessageA(resident, WM_CLOSE, 0, 0);
            break;
        case Ask::EndSession:
            EXPECT_NE(SendMessageA(resident, WM_QUERYENDSESSION, 0, 0), 0);
            PostMessageA(resident, WM_ENDSESSION, TRUE, 0);
            break;
        }
        const auto code = session.waitForExit(c.ends ? 10s : 3s);
        EXPECT_EQ(code.has_value(), c.ends);
        if (code) {
            EXPECT_EQ(*code, 0u);
        }
    }
}

} // namespace
} // namespace pl::test::gui
