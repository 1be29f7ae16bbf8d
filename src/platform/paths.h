#pragma once
// The separator between folder and file names of the platform the program runs on. Folder values
// end in it and file names are appended directly. Defined once per operating system.

#include <string>
#include <string_view>

namespace pl::platform {

extern const char PathSep;

// `folder` with exactly one separator at its end (the empty text stays empty).
std::string withTrailingSep(std::string_view folder);

} // namespace pl::platform
