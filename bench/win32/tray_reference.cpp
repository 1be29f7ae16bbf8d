// The smallest resident tray program Win32 allows: one hidden window, one notification-area icon,
// a message loop. The footprint benchmark measures plAssist.exe against it.

#include <windows.h>
#include <shellapi.h>

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int) {
    WNDCLASSA wc{};
    wc.lpfnWndProc = DefWindowProcA;
    wc.hInstance = instance;
    wc.lpszClassName = "TrayReference";
    RegisterClassA(&wc);
    HWND hwnd = CreateWindowExA(0, wc.lpszClassName, "", 0, 0, 0, 0, 0, nullptr, nullptr, instance, nullptr);
    NOTIFYICONDATAA icon{};
    icon.cbSize = sizeof icon;
    icon.hWnd = hwnd;
    icon.uID = 1;
    icon.uFlags = NIF_ICON | NIF_TIP | NIF_MESSAGE;
    icon.uCallbackMessage = WM_APP;
    icon.hIcon = LoadIconA(nullptr, reinterpret_cast<LPCSTR>(IDI_APPLICATION));
    lstrcpyA(icon.szTip, "reference");
    Shell_NotifyIconA(NIM_ADD, &icon);
    MSG msg;
    while (GetMessageA(&msg, nullptr, 0, 0) > 0)
        DispatchMessageA(&msg);
    Shell_NotifyIconA(NIM_DELETE, &icon);
    return 0;
}
