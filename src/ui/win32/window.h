#pragma once
// Thin wrappers over Win32 windows: a top-level or child window made from an argument struct, its
// messages handed to a std::function, and sub-classing of standard controls the same way. Texts are
// UTF-8 throughout: the program runs with the UTF-8 code page and the ANSI functions.

#include "ui/win32/win32_api.h"

#include <functional>
#include <optional>
#include <string>

namespace pl::winui {

// A handler answers the messages it handles; std::nullopt lets the default procedure run.
using MessageHandler = std::function<std::optional<LRESULT>(HWND, UINT, WPARAM, LPARAM)>;

struct WindowArgs {
    std::string className;   // registered on first use
    std::string title;
    DWORD style = WS_OVERLAPPEDWINDOW;
    DWORD exStyle = 0;
    int left = CW_USEDEFAULT, top = CW_USEDEFAULT, width = CW_USEDEFAULT, height = CW_USEDEFAULT;
    HWND owner = nullptr;    // owner of a top-level window, parent of a child, HWND_MESSAGE for a message window
    HICON icon = nullptr;
    UINT classStyle = CS_DBLCLKS;
};

// A window of our own class. The handle is destroyed with the object.
class Window {
public:
    Window(const WindowArgs& args, MessageHandler handler);
    ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    HWND handle() const { return hwnd_; }

private:
    static LRESULT CALLBACK procedure(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

    MessageHandler handler_;
    HWND hwnd_ = nullptr;
};

struct ControlArgs {
    const char* className = "STATIC"; // a standard control class
    std::string text;
    DWORD style = 0;                  // WS_CHILD is always added
    DWORD exStyle = 0;
    int id = 0;
};

// A standard control on `parent`; destroyed with its parent.
HWND makeControl(HWND parent, const ControlArgs& args);

// Sends every message of `control` to `handler` first; it lives as long as the control.
void subclassControl(HWND control, MessageHandler handler);
// The standard procedure of a sub-classed control, for a handler that wants it to run first.
LRESULT defaultProcedure(HWND control, UINT message, WPARAM wParam, LPARAM lParam);

std::string windowText(HWND hwnd);
// Sets the text only when it differs, so that a text box keeps its caret and selection.
void setWindowTextIfChanged(HWND hwnd, const std::string& text);
std::string className(HWND hwnd);

} // namespace pl::winui
