#pragma once
// Where the suite keeps its settings, and how a setting is read: every part of the suite (the
// assistant, its dialog, the texts, the name derivation, the converter) reads the same two keys by
// the same rule, so the rule lives here once.

#include "platform/registry.h"

#include <string>
#include <string_view>

namespace pl::platform {

inline constexpr std::string_view SuiteUserKey = "HKCU\\Software\\tobrin\\PaperlarkXP";
inline constexpr std::string_view SuiteMachineKey = "HKLM\\Software\\tobrin\\PaperlarkXP";
// The per-user folders that Windows keeps by itself ("Desktop", "Local AppData").
inline constexpr std::string_view ShellFoldersKey =
    "HKCU\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";

// The registry module answers a missing value with the empty text; stores written by older
// versions of the suite hold this marker instead. Both mean "not set".
inline constexpr std::string_view NotFoundMarker = "nicht gefunden";

inline bool isAbsent(std::string_view value) {
    return value.empty() || value == NotFoundMarker;
}

// A text value with both forms of "not set" turned into the empty text.
inline std::string regText(const Registry& registry, std::string_view key, std::string_view name) {
    std::string value = registry.GetRegValue(key, name);
    return value == NotFoundMarker ? std::string() : value;
}

// The value from the user's key, else from the machine's; the empty text when neither holds it.
inline std::string userThenMachine(const Registry& registry, std::string_view name) {
    std::string value = regText(registry, SuiteUserKey, name);
    return value.empty() ? regText(registry, SuiteMachineKey, name) : value;
}

} // namespace pl::platform
