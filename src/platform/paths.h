#pragma once
// The separator between folder and file names of the platform the program runs on. Folder values
// end in it and file names are appended directly. Defined once per operating system.

#include <filesystem>
#include <string>
#include <string_view>

namespace pl::platform {

extern const char PathSep;

// `folder` with exactly one separator at its end (the empty text stays empty).
std::string withTrailingSep(std::string_view folder);

// A UTF-8 path for the standard library's file functions and back: the program's texts are UTF-8,
// while a plain std::filesystem::path would read them in the system's narrow code page on Windows.
std::filesystem::path fsPath(std::string_view utf8);
std::string utf8Path(const std::filesystem::path& path);

} // namespace pl::platform
