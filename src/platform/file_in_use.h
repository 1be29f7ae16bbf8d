#pragma once
// Whether another program holds a file open so that it wants it to itself. On Windows such a file
// cannot be renamed or deleted (a sharing violation); elsewhere nothing stops a rename, and a
// program that wants a file to itself says so with a lock.

#include <string_view>

namespace pl::platform {

// True when another process holds the file at `path` so: on POSIX a lock on it (an flock or a
// record lock, whole file or part), on Windows an open that does not share deletion. False when
// nobody does, or when the file cannot be opened to ask. Defined once per operating system.
bool heldOpenElsewhere(std::string_view path);

} // namespace pl::platform
