// A stand-in for Paperlark.exe that converts nothing: it appends its whole command line, as the
// system handed it over, to "calls.txt" beside itself, one line per call, and ends.

#include <windows.h>

#include <string>

int main() {
    char self[MAX_PATH] = {};
    GetModuleFileNameA(nullptr, self, MAX_PATH);
    std::string log = self;
    log = log.substr(0, log.rfind('\\') + 1) + "calls.txt";
    const std::string line = std::string(GetCommandLineA()) + "\r\n";
    HANDLE file = CreateFileA(log.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ, nullptr, OPEN_ALWAYS,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return 2;
    DWORD written = 0;
    const BOOL ok = WriteFile(file, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
    CloseHandle(file);
    return ok && written == line.size() ? 0 : 3;
}
