#include "converter/installed_ghostscript.h"

#include "converter/win32/wide_text.h"
#include "platform/environment.h"
#include "platform/file_system.h"

#include <windows.h>

#include <optional>
#include <vector>

namespace pl::converter {

namespace {

using win32::narrow;
using win32::wide;

constexpr const char* kConsolePrograms[] = {"gswin64c.exe", "gswin32c.exe"};

// "10.02.1" against "9.56": number by number, so that 10 comes after 9.
bool isNewer(const std::wstring& candidate, const std::wstring& than) {
    auto numbers = [](const std::wstring& version) {
        std::vector<long> parts;
        long current = 0;
        for (wchar_t c : version) {
            if (c >= L'0' && c <= L'9') {
                current = current * 10 + (c - L'0');
            } else {
                parts.push_back(current);
                current = 0;
            }
        }
        parts.push_back(current);
        return parts;
    };
    return numbers(candidate) > numbers(than);
}

std::optional<std::wstring> stringValue(HKEY key, const wchar_t* name) {
    wchar_t buffer[MAX_PATH * 2];
    DWORD size = sizeof buffer - sizeof(wchar_t);
    DWORD type = 0;
    if (RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(buffer), &size) != ERROR_SUCCESS ||
        (type != REG_SZ && type != REG_EXPAND_SZ))
        return std::nullopt;
    buffer[size / sizeof(wchar_t)] = L'\0';
    return std::wstring(buffer);
}

// Ghostscript's installer registers every version as a sub-key of its product key, holding GS_DLL,
// the library beside the console program. The newest version wins.
std::string registeredGhostscript(const platform::FileSystem& files) {
    std::wstring newest;
    std::string program;
    for (const wchar_t* product : {L"SOFTWARE\\GPL Ghostscript", L"SOFTWARE\\Artifex Ghostscript"}) {
        for (REGSAM view : {KEY_WOW64_64KEY, KEY_WOW64_32KEY}) {
            HKEY key = nullptr;
            if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, product, 0, KEY_READ | view, &key) != ERROR_SUCCESS)
                continue;
            wchar_t version[256];
            for (DWORD index = 0;; ++index) {
                DWORD length = 256;
                if (RegEnumKeyExW(key, index, version, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
                    break;
                if (!program.empty() && !isNewer(version, newest))
                    continue;
                HKEY versionKey = nullptr;
                if (RegOpenKeyExW(key, version, 0, KEY_READ | view, &versionKey) != ERROR_SUCCESS)
                    continue;
                const auto library = stringValue(versionKey, L"GS_DLL");
                RegCloseKey(versionKey);
                if (!library)
                    continue;
                const std::string folder = narrow(library->substr(0, library->find_last_of(L"\\/") + 1));
                for (const char* name : kConsolePrograms) {
                    if (files.exists(folder + name) && !files.isFolder(folder + name)) {
                        program = folder + name;
                        newest = version;
                        break;
                    }
                }
            }
            RegCloseKey(key);
        }
    }
    return program;
}

std::string onPath(const platform::Environment& environment) {
    const std::wstring path = wide(environment.get("PATH"));
    for (const char* name : kConsolePrograms) {
        wchar_t found[MAX_PATH * 2];
        const DWORD length = SearchPathW(path.c_str(), wide(name).c_str(), nullptr, MAX_PATH * 2, found, nullptr);
        if (length > 0 && length < MAX_PATH * 2)
            return narrow(std::wstring_view(found, length));
    }
    return {};
}

} // namespace

std::string installedGhostscript(const platform::Environment& environment, const platform::FileSystem& files) {
    if (std::string program = registeredGhostscript(files); !program.empty())
        return program;
    if (std::string program = onPath(environment); !program.empty())
        return program;
    return kConsolePrograms[0];
}

} // namespace pl::converter
