#pragma once
// The registry keys the resident assistant reads, and how it reads a text value from them.

#include "platform/registry.h"

#include <string>
#include <string_view>

namespace pl::assistant {

inline constexpr std::string_view MachineKey = "HKLM\\Software\\tobrin\\PaperlarkXP";
inline constexpr std::string_view UserKey = "HKCU\\Software\\tobrin\\PaperlarkXP";
inline constexpr std::string_view ShellFoldersKey =
    "HKCU\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";

// A registry text value with both forms of "absent" (empty, and the registry module's marker)
// turned into the empty text.
inline std::string regText(const platform::Registry& registry, std::string_view key, std::string_view name) {
    std::string value = registry.GetRegValue(key, name);
    return value == "nicht gefunden" ? std::string() : value;
}

} // namespace pl::assistant
