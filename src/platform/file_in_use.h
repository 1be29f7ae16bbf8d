#pragma once
// Whether another program holds a file open so that it wants it to itself. On Windows such a file
// cannot be renamed, which is how the program tells; elsewhere nothing stops a rename, and a program
// that wants a file to itself says so with a lock.

#include <string_view>

namespace pl::platform {

// True when another process holds a lock on the file at `path` (an flock or a record lock, whole
// file or part); false when nobody does, or when the file cannot be opened to ask. Defined once
// per operating system; on Windows, where the rename itself refuses, it answers false.
bool heldOpenElsewhere(std::string_view path);

} // namespace pl::platform
