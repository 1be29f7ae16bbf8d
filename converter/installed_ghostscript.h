#pragma once
// The Ghostscript that runs when the settings name none: the one the operating system knows to be
// installed, else the console program's plain name (starting it then fails with a message that
// names it).

#include <string>

namespace pl::platform {
class Environment;
class FileSystem;
} // namespace pl::platform

namespace pl::converter {

std::string installedGhostscript(const platform::Environment& environment, const platform::FileSystem& files);

} // namespace pl::converter
