#pragma once
// Names for what a run of a program leaves in shared places (temporary folders, a desktop): a run
// that is killed cannot remove them, so the next run must be able to tell them from the files of
// runs that still work, on this machine or on another one that shares the folder.

#include <string>
#include <string_view>

namespace pl::platform {

// "<process id>-<machine name>": unique among the runs that exist at one time.
std::string currentRunTag();

// Whether `path` (a file or folder, never a link) belongs to the current user and was named with
// `tag` by a run on this machine that no longer exists.
bool leftByEndedRun(const std::string& path, std::string_view tag);

} // namespace pl::platform
