#pragma once
// The registry keys the resident assistant reads, and how it reads a text value from them.

#include "platform/suite_settings.h"

namespace pl::assistant {

inline constexpr std::string_view MachineKey = platform::SuiteMachineKey;
inline constexpr std::string_view UserKey = platform::SuiteUserKey;
using platform::regText;
using platform::ShellFoldersKey;

} // namespace pl::assistant
