#pragma once

#include <string>
#include <string_view>

namespace pl::platform {

// Environment variables by their Windows names (`username`, `userprofile`, `temp`, `LOCALAPPDATA`,
// `windir`, ...). Names ignore case. On POSIX the Windows names fall back to their local
// counterparts (USER/LOGNAME, HOME, TMPDIR or /tmp, XDG_DATA_HOME or ~/.local/share).
class Environment {
public:
    virtual ~Environment() = default;
    // The variable's value, or the empty text when it is not set.
    virtual std::string get(std::string_view name) const = 0;
};

} // namespace pl::platform
