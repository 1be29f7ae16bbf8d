#include "platform/plain_file.h"

#include <windows.h>

#include <cstdint>
#include <string>

namespace pl::platform {

namespace {

HANDLE asHandle(long long handle) {
    return reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(handle));
}

} // namespace

PlainFileReader::PlainFileReader(std::string_view path) {
    // A folder does not open without FILE_FLAG_BACKUP_SEMANTICS; a reparse point (a link or a
    // junction) is opened itself, not followed, and then refused below. Others may go on reading,
    // writing or renaming the file meanwhile: the job stays theirs.
    const std::string file(path);
    HANDLE h = CreateFileA(file.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                           OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (h == INVALID_HANDLE_VALUE)
        return;
    // A device name ("NUL.ps", "COM1.ps") opens the device, a pipe name a pipe: only a file on a
    // disk is a file.
    BY_HANDLE_FILE_INFORMATION info{};
    const bool plain = GetFileType(h) == FILE_TYPE_DISK && GetFileInformationByHandle(h, &info) &&
                       (info.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT)) == 0;
    if (!plain) {
        CloseHandle(h);
        return;
    }
    handle_ = static_cast<long long>(reinterpret_cast<std::intptr_t>(h));
}

PlainFileReader::~PlainFileReader() {
    if (handle_ >= 0)
        CloseHandle(asHandle(handle_));
}

std::optional<std::size_t> PlainFileReader::read(char* buffer, std::size_t size) {
    if (handle_ < 0)
        return std::nullopt;
    // ReadFile takes at most a DWORD; callers read in small blocks anyway.
    const DWORD wanted = size > 0x40000000u ? 0x40000000u : static_cast<DWORD>(size);
    DWORD got = 0;
    if (!ReadFile(asHandle(handle_), buffer, wanted, &got, nullptr))
        return std::nullopt;
    return static_cast<std::size_t>(got);
}

} // namespace pl::platform
