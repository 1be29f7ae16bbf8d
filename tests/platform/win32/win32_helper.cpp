// A small program the Windows platform tests start as a real second process.
//   startup FILE          writes "<show command> <working folder>" to FILE
//   sleep MILLISECONDS    waits that long, then ends
//   hold FILE READY       opens FILE without sharing deletion, creates READY, then waits to be ended
//   lock NAME             takes the session lock NAME: exit code 0 when it got it, 1 when refused
//   opened RECORD WORD    writes WORD to RECORD (a document handler that says what it was given)

#include "platform/win32/win32_services.h"

#include <windows.h>

#include <cstdlib>
#include <fstream>
#include <string>

namespace {

int writeStartup(const char* file) {
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    GetStartupInfoA(&startup);
    char folder[MAX_PATH] = {};
    GetCurrentDirectoryA(MAX_PATH, folder);
    const int show = (startup.dwFlags & STARTF_USESHOWWINDOW) ? startup.wShowWindow : -1;
    std::ofstream(file) << show << ' ' << folder;
    return 0;
}

int hold(const char* file, const char* ready) {
    HANDLE held = CreateFileA(file, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    if (held == INVALID_HANDLE_VALUE)
        return 2;
    std::ofstream(ready) << "held";
    Sleep(60000);
    CloseHandle(held);
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const std::string mode = argc > 1 ? argv[1] : "";
    if (mode == "startup" && argc == 3)
        return writeStartup(argv[2]);
    if (mode == "sleep" && argc == 3) {
        Sleep(static_cast<DWORD>(std::atoi(argv[2])));
        return 0;
    }
    if (mode == "hold" && argc == 4)
        return hold(argv[2], argv[3]);
    if (mode == "opened" && argc == 4) {
        std::ofstream(argv[2]) << argv[3];
        return 0;
    }
    if (mode == "lock" && argc == 3) {
        pl::platform::win32::Win32InstanceLock lock;
        return lock.acquire(argv[2]) ? 0 : 1;
    }
    return 64;
}
