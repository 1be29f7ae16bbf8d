#pragma once
// The classic directory lookup of one path, Dir(path): whether it names an existing file.

#include "platform/file_system.h"

#include <string>
#include <string_view>

namespace pl::dialog {

// Whether a directory lookup of `path` finds a file (folders do not count): the name after the last
// separator is looked for in the folder before it, so a folder value that lacks its separator
// before the name finds nothing. An empty path or one holding a zero character cannot be looked up
// and raises "Bad file name or number" (52).
bool fileFound(const platform::FileSystem& files, std::string_view path);

// Where `path` splits into folder (with its trailing separator) and name: the position after the
// last separator, 0 when it holds none.
std::size_t nameStart(std::string_view path);

} // namespace pl::dialog
