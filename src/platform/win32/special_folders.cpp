#include "platform/win32/win32_services.h"

#include <windows.h>

#include <shlobj.h> // after windows.h, which it needs

namespace pl::platform::win32 {

namespace {

std::string shellFolder(int csidl) {
    char path[MAX_PATH] = {};
    if (FAILED(SHGetFolderPathA(nullptr, csidl, nullptr, SHGFP_TYPE_CURRENT, path)))
        return {};
    std::string folder(path);
    while (folder.size() > 3 && folder.back() == '\\')
        folder.pop_back();
    return folder;
}

} // namespace

std::string Win32SpecialFolders::desktop() const {
    return shellFolder(CSIDL_DESKTOPDIRECTORY);
}

std::string Win32SpecialFolders::localAppData() const {
    return shellFolder(CSIDL_LOCAL_APPDATA);
}

std::string Win32SpecialFolders::documents() const {
    return shellFolder(CSIDL_PERSONAL);
}

std::string Win32SpecialFolders::programFolder() const {
    std::string path(MAX_PATH, '\0');
    for (;;) {
        const DWORD length = GetModuleFileNameA(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length == 0)
            return {};
        if (length < path.size()) {
            path.resize(length);
            break;
        }
        path.resize(path.size() * 2);
    }
    const std::size_t cut = path.find_last_of("\\/");
    return cut == std::string::npos ? std::string() : path.substr(0, cut);
}

} // namespace pl::platform::win32
