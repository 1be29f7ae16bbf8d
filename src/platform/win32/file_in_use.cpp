#include "platform/file_in_use.h"

#include <windows.h>

#include <string>

namespace pl::platform {

// A program that wants a file to itself opens it without sharing deletion, and the system then
// refuses to rename or delete it: a sharing violation. Asking for delete access while sharing
// everything collides with exactly those programs and with nobody else, and changes nothing.
bool heldOpenElsewhere(std::string_view path) {
    if (path.empty())
        return false;
    HANDLE file = CreateFileA(std::string(path).c_str(), DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                              nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
        CloseHandle(file);
        return false;
    }
    const DWORD error = GetLastError();
    return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION;
}

} // namespace pl::platform
