#pragma once
// The profiles offered in the job dialog: every "*.plp" file of the installation's profile folder,
// then of the user's own.

#include "platform/environment.h"
#include "platform/file_system.h"

#include <string>
#include <string_view>

namespace pl::dialog {

// The user's own profile folder: userprofile + "Paperlark", ending in the separator.
std::string userProfileFolder(const platform::Environment& env);

// The profile names in `folder` ("" or a missing folder: none), in directory order, each followed
// by "|". A name is the file name up to its first ".plp", found ignoring case.
std::string profileNamesIn(const platform::FileSystem& files, std::string_view folder);

} // namespace pl::dialog
