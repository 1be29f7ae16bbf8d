#pragma once

#include "naming/naming_state.h"
#include "platform/services.h"

#include <string>
#include <string_view>

namespace pl::naming {

// Sets state.OutputSuffix and state.PageNumberPattern from the Ghostscript device on the first line
// of the profile `profileName` (the user's profile folder first, then the suite folder): ".pdf" and
// "" when the profile does not exist or names no known device. Errors go to services.errors
// ("plAssist1.LoadSuffix") and leave both values as they were.
void LoadSuffix(std::string_view profileName, NamingState& state, Services& services);

// The file of profile `profileName`: %userprofile%/Paperlark/<name>.plp when it exists, else
// <plDir><name>.plp (which may not exist). Names that differ only in case are found too.
std::string profileFilePath(std::string_view profileName, Services& services);

} // namespace pl::naming
