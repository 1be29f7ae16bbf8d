#pragma once
// The converter's registry settings, under Software\tobrin\PaperlarkXP: the user's key first, then
// the machine's. The converter must work on a machine where none of them is set (or where there is
// no registry at all), so every value has a default.

#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/registry.h"

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pl::converter {

inline constexpr std::chrono::seconds kDefaultTimeLimit{600};
// A week: a longer limit is no limit in practice, and larger numbers would overflow the clock.
inline constexpr std::chrono::seconds kLongestTimeLimit{7 * 24 * 3600};

struct Settings {
    std::string ghostscript;                            // the program to run
    std::chrono::seconds timeLimit = kDefaultTimeLimit; // after this, Ghostscript is ended
    bool debug = false;                                 // "Debug" is "1": write the log
    std::vector<std::string> problems;                  // values that could not be used as they are
};

struct TimeLimit {
    std::chrono::seconds seconds = kDefaultTimeLimit;
    std::string problem; // empty when the value was used as it is
};

// "GsTimeout": whole seconds from 1 to kLongestTimeLimit. A larger number is cut to that; anything
// else (and no value) gives the default.
TimeLimit parseTimeLimit(std::string_view value);

// `registry` may be null. `defaultProgram` is the platform's Ghostscript when "gswin32c" names
// none. That value may hold %VARIABLE% references, and it may name the program or a folder that
// holds it (directly or in its "bin", "gs" or "gs/bin" sub-folder), as the assistant accepts it.
Settings readSettings(const platform::Registry* registry, const platform::Environment& environment,
                      const platform::FileSystem& files, std::string defaultProgram);

} // namespace pl::converter
