#include "converter/settings.h"

#include "platform/environment_expand.h"
#include "platform/paths.h"
#include "platform/suite_settings.h"

#include <charconv>

namespace pl::converter {

namespace {

constexpr std::string_view kUserKey = platform::SuiteUserKey;
constexpr std::string_view kMachineKey = platform::SuiteMachineKey;

// A value that cannot be read (a broken store, a number too large for text) counts as not set:
// the converter never refuses a job over a setting.
std::string readValue(const platform::Registry* registry, std::string_view key, std::string_view name) {
    if (!registry)
        return {};
    try {
        std::string value = registry->GetRegValue(key, name);
        return platform::isAbsent(value) ? std::string() : value;
    } catch (...) {
        return {};
    }
}

std::string userThenMachine(const platform::Registry* registry, std::string_view name) {
    std::string value = readValue(registry, kUserKey, name);
    if (value.empty())
        value = readValue(registry, kMachineKey, name);
    return value;
}

// Ghostscript's console program in a folder named by the settings; the location itself when it is
// not a folder or holds none (starting it then fails with a message that names it).
std::string ghostscriptIn(const std::string& location, const platform::FileSystem& files) {
    if (!files.isFolder(location))
        return location;
    const std::string base = platform::withTrailingSep(location);
    const std::string sep(1, platform::PathSep);
    for (const std::string& folder : {base, base + "bin" + sep, base + "gs" + sep, base + "gs" + sep + "bin" + sep}) {
        for (const char* program : {"gswin64c.exe", "gswin32c.exe", "gs"}) {
            const std::string candidate = folder + program;
            if (files.exists(candidate) && !files.isFolder(candidate))
                return candidate;
        }
    }
    return location;
}

} // namespace

TimeLimit parseTimeLimit(std::string_view value) {
    while (!value.empty() && value.front() == ' ')
        value.remove_prefix(1);
    while (!value.empty() && value.back() == ' ')
        value.remove_suffix(1);
    TimeLimit limit;
    if (value.empty())
        return limit;
    const bool digitsOnly = value.find_first_not_of("0123456789") == std::string_view::npos;
    long long seconds = 0;
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), seconds);
    const std::string longest = std::to_string(kLongestTimeLimit.count());
    if (digitsOnly && (error == std::errc::result_out_of_range || seconds > kLongestTimeLimit.count())) {
        limit.seconds = kLongestTimeLimit;
        limit.problem = "GsTimeout \"" + std::string(value) + "\" is more than " + longest + " seconds (a week); " +
                        longest + " seconds are used.";
    } else if (!digitsOnly || error != std::errc() || end != value.data() + value.size() || seconds < 1) {
        limit.problem = "GsTimeout \"" + std::string(value) + "\" is not a whole number of seconds from 1 to " +
                        longest + "; the default of " + std::to_string(kDefaultTimeLimit.count()) +
                        " seconds is used.";
    } else {
        limit.seconds = std::chrono::seconds(seconds);
    }
    return limit;
}

Settings readSettings(const platform::Registry* registry, const platform::Environment& environment,
                      const platform::FileSystem& files, std::string defaultProgram) {
    Settings settings;
    settings.ghostscript = userThenMachine(registry, "gswin32c");
    if (!settings.ghostscript.empty())
        settings.ghostscript = ghostscriptIn(platform::ReplaceEnviron(settings.ghostscript, environment), files);
    if (settings.ghostscript.empty())
        settings.ghostscript = std::move(defaultProgram);
    TimeLimit limit = parseTimeLimit(userThenMachine(registry, "GsTimeout"));
    settings.timeLimit = limit.seconds;
    if (!limit.problem.empty())
        settings.problems.push_back(std::move(limit.problem));
    settings.debug = readValue(registry, kUserKey, "Debug") == "1";
    return settings;
}

} // namespace pl::converter
