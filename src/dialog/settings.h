#pragma once
// The suite's registry keys as the job dialog reads them, and the rule by which a value counts as
// not set (shared with the rest of the suite).

#include "platform/suite_settings.h"

namespace pl::dialog {

inline constexpr std::string_view UserKey = platform::SuiteUserKey;
inline constexpr std::string_view MachineKey = platform::SuiteMachineKey;
using platform::isAbsent;
using platform::NotFoundMarker;
using platform::userThenMachine;

} // namespace pl::dialog
