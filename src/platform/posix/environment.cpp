#include "base/text.h"
#include "platform/posix/posix_services.h"

#include <cstdlib>
#include <cstring>

extern char** environ;

namespace pl::platform::posix {

std::string envValue(const char* name) {
    const char* value = std::getenv(name);
    return value ? std::string(value) : std::string();
}

namespace {

// Windows names ignore case, so "USERNAME" or "Temp" set by a script count as well.
std::string anyCaseValue(std::string_view name) {
    for (char** entry = environ; entry && *entry; ++entry) {
        const char* equals = std::strchr(*entry, '=');
        if (!equals)
            continue;
        const std::string_view entryName(*entry, static_cast<std::size_t>(equals - *entry));
        if (!entryName.empty() && *(equals + 1) != '\0' && text::iequals(entryName, name))
            return std::string(equals + 1);
    }
    return {};
}

std::string firstSet(std::initializer_list<const char*> names) {
    for (const char* name : names) {
        std::string value = envValue(name);
        if (!value.empty())
            return value;
    }
    return {};
}

// What the variables that Windows sets for every logon mean on a POSIX desktop.
std::string localCounterpart(const std::string& lowerName) {
    if (lowerName == "username")
        return firstSet({"USER", "LOGNAME"});
    if (lowerName == "userprofile")
        return envValue("HOME");
    if (lowerName == "temp" || lowerName == "tmp") {
        const std::string tmpdir = envValue("TMPDIR");
        return tmpdir.empty() ? "/tmp" : tmpdir;
    }
    if (lowerName == "localappdata") {
        const std::string data = envValue("XDG_DATA_HOME");
        if (!data.empty())
            return data;
        const std::string home = envValue("HOME");
        return home.empty() ? std::string() : home + "/.local/share";
    }
    // "windir" and everything else: no such thing here.
    return {};
}

} // namespace

std::string PosixEnvironment::get(std::string_view name) const {
    // Windows has no variables with an empty value (setting one removes it), so an empty value
    // counts as unset and the lookup goes on.
    const std::string key(name);
    if (key.empty() || key.find('=') != std::string::npos)
        return {};
    std::string value = envValue(key.c_str());
    if (value.empty())
        value = anyCaseValue(key);
    if (value.empty())
        value = localCounterpart(text::toLower(key));
    return value;
}

} // namespace pl::platform::posix
