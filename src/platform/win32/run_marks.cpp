#include "platform/run_marks.h"

#include <windows.h>

#include <aclapi.h>

#include <string>
#include <vector>

namespace pl::platform {

namespace {

std::string machineName() {
    char name[MAX_COMPUTERNAME_LENGTH + 1] = {};
    DWORD size = sizeof name;
    if (!GetComputerNameA(name, &size) || size == 0)
        return "localhost";
    return std::string(name, size);
}

// Process ids are unique on the whole machine, in every session. A process that another user runs
// may not be opened: it exists.
bool processExists(DWORD pid) {
    HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, pid);
    if (process == nullptr)
        return GetLastError() != ERROR_INVALID_PARAMETER;
    const bool running = WaitForSingleObject(process, 0) == WAIT_TIMEOUT;
    CloseHandle(process);
    return running;
}

// One piece of this process's token: its user, or the owner it gives the files it creates (an
// administrator's files may belong to the Administrators group).
std::vector<char> tokenPart(HANDLE token, TOKEN_INFORMATION_CLASS part) {
    DWORD size = 0;
    GetTokenInformation(token, part, nullptr, 0, &size);
    std::vector<char> data(size);
    if (size == 0 || !GetTokenInformation(token, part, data.data(), size, &size))
        data.clear();
    return data;
}

bool ownedByThisUser(HANDLE file) {
    PSID owner = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (GetSecurityInfo(file, SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION, &owner, nullptr, nullptr, nullptr,
                        &descriptor) != ERROR_SUCCESS)
        return false;
    bool own = false;
    HANDLE token = nullptr;
    if (owner != nullptr && OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token)) {
        const auto user = tokenPart(token, TokenUser);
        const auto defaultOwner = tokenPart(token, TokenOwner);
        own = (!user.empty() && EqualSid(owner, reinterpret_cast<const TOKEN_USER*>(user.data())->User.Sid)) ||
              (!defaultOwner.empty() &&
               EqualSid(owner, reinterpret_cast<const TOKEN_OWNER*>(defaultOwner.data())->Owner));
        CloseHandle(token);
    }
    LocalFree(descriptor);
    return own;
}

} // namespace

std::string currentRunTag() {
    return std::to_string(GetCurrentProcessId()) + "-" + machineName();
}

bool leftByEndedRun(const std::string& path, std::string_view tag) {
    const std::size_t dash = tag.find('-');
    if (dash == 0 || dash == std::string_view::npos || dash > 10 || tag.substr(dash + 1) != machineName())
        return false;
    unsigned long long pid = 0;
    for (const char c : tag.substr(0, dash)) {
        if (c < '0' || c > '9')
            return false;
        pid = pid * 10 + static_cast<unsigned>(c - '0');
    }
    if (pid == 0 || pid > 0xFFFFFFFFull || pid == GetCurrentProcessId())
        return false;
    // The entry itself, never what a link or junction points at.
    HANDLE h = CreateFileA(path.c_str(), READ_CONTROL | FILE_READ_ATTRIBUTES,
                           FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                           FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (h == INVALID_HANDLE_VALUE)
        return false;
    BY_HANDLE_FILE_INFORMATION info{};
    const bool plain = GetFileType(h) == FILE_TYPE_DISK && GetFileInformationByHandle(h, &info) &&
                       (info.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0;
    const bool own = plain && ownedByThisUser(h);
    CloseHandle(h);
    return own && !processExists(static_cast<DWORD>(pid));
}

} // namespace pl::platform
