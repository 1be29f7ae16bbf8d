#include "platform/durable_files.h"

#include <windows.h>

namespace pl::platform {

namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

} // namespace

bool syncFile(const std::string& path) {
    // FlushFileBuffers needs a handle that may write; opening for writing changes nothing.
    HANDLE h = CreateFileA(path.c_str(), GENERIC_WRITE, kShareAll, nullptr, OPEN_EXISTING,
                           FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (h == INVALID_HANDLE_VALUE)
        return false;
    const bool synced = FlushFileBuffers(h) != 0;
    return CloseHandle(h) != 0 && synced;
}

void syncFolder(const std::string&) {
    // Nothing to do: NTFS journals its folder entries, and placeWithoutReplacing moves with
    // MOVEFILE_WRITE_THROUGH, which returns only once the new name is on the disk.
}

bool isReadOnly(const std::string& path) {
    const DWORD attributes = GetFileAttributesA(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return false;
    if (attributes & FILE_ATTRIBUTE_READONLY)
        return true;
    // The permissions may still deny this user writing; a file that another program holds open
    // without sharing (a viewer showing the last result) is not read-only for that.
    HANDLE h =
        CreateFileA(path.c_str(), GENERIC_WRITE, kShareAll, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (h != INVALID_HANDLE_VALUE) {
        CloseHandle(h);
        return false;
    }
    return GetLastError() == ERROR_ACCESS_DENIED;
}

Placed placeWithoutReplacing(const std::string& from, const std::string& to) {
    // Without MOVEFILE_REPLACE_EXISTING the move is refused in one step when `to` exists.
    if (MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_WRITE_THROUGH))
        return Placed::Done;
    const DWORD error = GetLastError();
    return error == ERROR_ALREADY_EXISTS || error == ERROR_FILE_EXISTS ? Placed::Taken : Placed::Failed;
}

} // namespace pl::platform
