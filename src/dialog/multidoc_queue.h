#pragma once
// The user's MultiDoc queue as the dialog reads it: files "MultiDoc" + user + n + ".ps" in the
// user spool folder, n = 1, 2, 3, ... Only the unbroken run from 1 counts; files behind a gap wait
// until the gap is filled.

#include "platform/file_system.h"

#include <string>
#include <string_view>

namespace pl::dialog {

inline constexpr int MultiDocLimit = 1000;

// The queue file number `n` of `user` in `folder`.
std::string multiDocFilePath(std::string_view folder, std::string_view user, int n);

// How many queue files stand in the unbroken run from number 1.
int countMultiDocFiles(const platform::FileSystem& files, std::string_view folder, std::string_view user);

// The unbroken run as converter arguments: each path in double quotes, followed by one blank.
std::string multiDocArguments(const platform::FileSystem& files, std::string_view folder, std::string_view user);

// The files of `folder` matching `pattern`, counted up to MultiDocLimit; none for an empty folder.
int countMatchingFiles(const platform::FileSystem& files, std::string_view folder, std::string_view pattern);

} // namespace pl::dialog
