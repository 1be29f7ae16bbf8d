#pragma once
// The suite's programs carry ".exe" on Windows; on other systems each is the same name in lower
// case without it. Texts that a person reads name them as they are called on the running system;
// log lines keep their words and do not go through here.
//
// Inline: the system is told by its separator, which the system's own part of the platform
// library defines, and that part is linked after every caller.

#include "base/text.h"

#include <string>
#include <string_view>

namespace pl::platform {

extern const char PathSep; // see platform/paths.h

// Windows is the system whose folders are separated by a backslash.
inline bool programNamesCarryExe() {
    return PathSep == '\\';
}

// "Paperlark.exe" on Windows, "paperlark" elsewhere.
inline std::string programFileName(std::string_view windowsName) {
    if (programNamesCarryExe() || !text::iendsWith(windowsName, ".exe"))
        return std::string(windowsName);
    return text::toLower(windowsName.substr(0, windowsName.size() - 4));
}

// `text` with every suite program ("Paperlark.exe", "plAssist.exe", "plconfig.exe", "plucnfg.exe",
// "plsetup.exe", in any letter case) named as on this system.
inline std::string withLocalProgramNames(std::string_view text) {
    std::string result(text);
    if (programNamesCarryExe())
        return result;
    for (std::string_view program : {"Paperlark.exe", "plAssist.exe", "plconfig.exe", "plucnfg.exe", "plsetup.exe"})
        result = text::ireplaceAll(result, program, programFileName(program));
    return result;
}

} // namespace pl::platform
