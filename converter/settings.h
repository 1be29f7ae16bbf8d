#pragma once
// The converter's registry settings, under Software\tobrin\PaperlarkXP: the user's key first, then
// the machine's. The converter must work on a machine where none of them is set (or where there is
// no registry at all), so every value has a default.

#include "platform/environment.h"
#include "platform/registry.h"

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace pl::converter {

inline constexpr std::chrono::seconds kDefaultTimeLimit{600};

struct Settings {
    std::string ghostscript;                            // the program to run
    std::chrono::seconds timeLimit = kDefaultTimeLimit; // after this, Ghostscript is ended
    bool debug = false;                                 // "Debug" is "1": write the log
};

// "GsTimeout": whole seconds, at least 1; anything else is no setting.
std::optional<std::chrono::seconds> parseTimeLimit(std::string_view value);

// `registry` may be null. `defaultProgram` is the platform's Ghostscript when "gswin32c" names
// none; that value may hold %VARIABLE% references.
Settings readSettings(const platform::Registry* registry, const platform::Environment& environment,
                      std::string defaultProgram);

} // namespace pl::converter
