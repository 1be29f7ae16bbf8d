// Keeps Wine's desktop process up for a whole test run: one hidden window and a message loop. The
// desktop ends a few seconds after its last window went and takes about ten seconds to come back,
// which each GUI test would otherwise pay when it starts plAssist.exe. Ended with the Wine server.

#include <windows.h>

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int) {
    WNDCLASSA wc{};
    wc.lpfnWndProc = DefWindowProcA;
    wc.hInstance = instance;
    wc.lpszClassName = "PaperlarkDesktopKeeper";
    RegisterClassA(&wc);
    CreateWindowExA(0, wc.lpszClassName, "", 0, 0, 0, 0, 0, nullptr, nullptr, instance, nullptr);
    MSG msg;
    while (GetMessageA(&msg, nullptr, 0, 0) > 0)
        DispatchMessageA(&msg);
    return 0;
}
