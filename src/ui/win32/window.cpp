#include "ui/win32/window.h"

#include <commctrl.h>

#include <memory>
#include <set>
#include <vector>

namespace pl::winui {

namespace {

void registerClass(const WindowArgs& args, WNDPROC procedure) {
    static std::set<std::string> registered;
    if (registered.count(args.className) != 0)
        return;
    WNDCLASSEXA wc{};
    wc.cbSize = sizeof wc;
    wc.style = args.classStyle;
    wc.lpfnWndProc = procedure;
    wc.hInstance = GetModuleHandleA(nullptr);
    wc.hIcon = args.icon;
    wc.hIconSm = args.icon;
    wc.hCursor = LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_ARROW));
    wc.lpszClassName = args.className.c_str();
    if (RegisterClassExA(&wc) != 0)
        registered.insert(args.className);
}

constexpr UINT_PTR SubclassId = 1;

LRESULT CALLBACK subclassProcedure(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                   DWORD_PTR data) {
    auto* handler = reinterpret_cast<MessageHandler*>(data);
    if (message == WM_NCDESTROY) {
        RemoveWindowSubclass(hwnd, subclassProcedure, SubclassId);
        std::unique_ptr<MessageHandler> owned(handler);
        return DefSubclassProc(hwnd, message, wParam, lParam);
    }
    if (*handler) {
        if (auto answer = (*handler)(hwnd, message, wParam, lParam))
            return *answer;
    }
    return DefSubclassProc(hwnd, message, wParam, lParam);
}

} // namespace

Window::Window(const WindowArgs& args, MessageHandler handler) : handler_(std::move(handler)) {
    registerClass(args, procedure);
    hwnd_ = CreateWindowExA(args.exStyle, args.className.c_str(), args.title.c_str(), args.style, args.left, args.top,
                            args.width, args.height, args.owner, nullptr, GetModuleHandleA(nullptr), this);
}

Window::~Window() {
    if (hwnd_ == nullptr)
        return;
    SetWindowLongPtrA(hwnd_, GWLP_USERDATA, 0); // no more messages reach this object
    DestroyWindow(hwnd_);
}

LRESULT CALLBACK Window::procedure(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
        auto* create = reinterpret_cast<CREATESTRUCTA*>(lParam);
        SetWindowLongPtrA(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(create->lpCreateParams));
        static_cast<Window*>(create->lpCreateParams)->hwnd_ = hwnd;
    }
    auto* self = reinterpret_cast<Window*>(GetWindowLongPtrA(hwnd, GWLP_USERDATA));
    if (self != nullptr && self->handler_) {
        if (auto answer = self->handler_(hwnd, message, wParam, lParam))
            return *answer;
    }
    return DefWindowProcA(hwnd, message, wParam, lParam);
}

HWND makeControl(HWND parent, const ControlArgs& args) {
    return CreateWindowExA(args.exStyle, args.className, args.text.c_str(), WS_CHILD | args.style, 0, 0, 0, 0, parent,
                           reinterpret_cast<HMENU>(static_cast<INT_PTR>(args.id)), GetModuleHandleA(nullptr), nullptr);
}

void subclassControl(HWND control, MessageHandler handler) {
    auto* owned = new MessageHandler(std::move(handler));
    if (!SetWindowSubclass(control, subclassProcedure, SubclassId, reinterpret_cast<DWORD_PTR>(owned)))
        delete owned;
}

LRESULT defaultProcedure(HWND control, UINT message, WPARAM wParam, LPARAM lParam) {
    return DefSubclassProc(control, message, wParam, lParam);
}

std::string windowText(HWND hwnd) {
    const int length = GetWindowTextLengthA(hwnd);
    std::vector<char> buffer(static_cast<std::size_t>(length) + 1);
    const int got = GetWindowTextA(hwnd, buffer.data(), length + 1);
    return std::string(buffer.data(), static_cast<std::size_t>(got > 0 ? got : 0));
}

void setWindowTextIfChanged(HWND hwnd, const std::string& text) {
    if (windowText(hwnd) != text)
        SetWindowTextA(hwnd, text.c_str());
}

std::string className(HWND hwnd) {
    char name[64] = {};
    GetClassNameA(hwnd, name, sizeof name);
    return name;
}

} // namespace pl::winui
