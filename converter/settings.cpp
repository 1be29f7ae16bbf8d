#include "converter/settings.h"

#include "platform/environment_expand.h"

#include <charconv>

namespace pl::converter {

namespace {

constexpr std::string_view kUserKey = "HKCU\\Software\\tobrin\\PaperlarkXP";
constexpr std::string_view kMachineKey = "HKLM\\Software\\tobrin\\PaperlarkXP";
// The registry's marker for a value that is not there.
constexpr std::string_view kNotFound = "nicht gefunden";

// A value that cannot be read (a broken store, a number too large for text) counts as not set:
// the converter never refuses a job over a setting.
std::string readValue(const platform::Registry* registry, std::string_view key, std::string_view name) {
    if (!registry)
        return {};
    try {
        std::string value = registry->GetRegValue(key, name);
        return value == kNotFound ? std::string() : value;
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

} // namespace

std::optional<std::chrono::seconds> parseTimeLimit(std::string_view value) {
    while (!value.empty() && value.front() == ' ')
        value.remove_prefix(1);
    while (!value.empty() && value.back() == ' ')
        value.remove_suffix(1);
    long long seconds = 0;
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), seconds);
    if (value.empty() || error != std::errc() || end != value.data() + value.size() || seconds < 1)
        return std::nullopt;
    return std::chrono::seconds(seconds);
}

Settings readSettings(const platform::Registry* registry, const platform::Environment& environment,
                      std::string defaultProgram) {
    Settings settings;
    settings.ghostscript = userThenMachine(registry, "gswin32c");
    if (!settings.ghostscript.empty())
        platform::ReplaceEnviron(settings.ghostscript, environment);
    if (settings.ghostscript.empty())
        settings.ghostscript = std::move(defaultProgram);
    if (auto limit = parseTimeLimit(userThenMachine(registry, "GsTimeout")))
        settings.timeLimit = *limit;
    settings.debug = readValue(registry, kUserKey, "Debug") == "1";
    return settings;
}

} // namespace pl::converter
