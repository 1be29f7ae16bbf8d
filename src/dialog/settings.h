#pragma once
// The suite's registry keys as the job dialog reads them, and the rule by which a value counts as
// not set: the registry module answers a missing value with the empty text, older stores with the
// marker "nicht gefunden", and both mean the same to every reader here.

#include "platform/registry.h"

#include <string>
#include <string_view>

namespace pl::dialog {

inline constexpr std::string_view UserKey = "HKCU\\Software\\tobrin\\PaperlarkXP";
inline constexpr std::string_view MachineKey = "HKLM\\Software\\tobrin\\PaperlarkXP";
inline constexpr std::string_view NotFoundMarker = "nicht gefunden";

bool isAbsent(std::string_view value);

// The value from the user's key, else from the machine's; the empty text when neither holds it.
std::string userThenMachine(const platform::Registry& registry, std::string_view valueName);

} // namespace pl::dialog
