#include "platform/posix/xdg_dirs.h"

#include <cstdlib>
#include <fstream>
#include <vector>

#include <pwd.h>
#include <unistd.h>

namespace pl::platform::posix {

namespace {

std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? std::string(value) : std::string();
}

std::string orUnderHome(const char* name, const char* relative) {
    std::string value = variable(name);
    return value.empty() ? homeDir() + "/" + relative : value;
}

// The value of XDG_DESKTOP_DIR in user-dirs.dirs: "$HOME/Desktop" in double quotes.
std::string desktopFromUserDirs() {
    std::ifstream in(xdgConfigHome() + "/user-dirs.dirs");
    for (std::string line; std::getline(in, line);) {
        constexpr std::string_view key = "XDG_DESKTOP_DIR=";
        if (!line.starts_with(key))
            continue;
        std::string value = line.substr(key.size());
        if (value.size() >= 2 && value.front() == '"' && value.back() == '"')
            value = value.substr(1, value.size() - 2);
        if (value.starts_with("$HOME"))
            value = homeDir() + value.substr(5);
        return value;
    }
    return {};
}

} // namespace

std::string homeDir() {
    std::string home = variable("HOME");
    if (home.empty())
        if (const passwd* entry = ::getpwuid(::getuid()); entry != nullptr && entry->pw_dir != nullptr)
            home = entry->pw_dir;
    return home;
}

std::string xdgDesktopDir() {
    std::string desktop = variable("XDG_DESKTOP_DIR");
    if (desktop.empty())
        desktop = desktopFromUserDirs();
    return desktop.empty() ? homeDir() + "/Desktop" : desktop;
}

std::string xdgDataHome() { return orUnderHome("XDG_DATA_HOME", ".local/share"); }

std::string xdgConfigHome() { return orUnderHome("XDG_CONFIG_HOME", ".config"); }

std::string suiteFolder() {
    std::vector<char> buffer(4096);
    const ssize_t n = ::readlink("/proc/self/exe", buffer.data(), buffer.size() - 1);
    if (n <= 0)
        return {};
    std::string program(buffer.data(), static_cast<std::size_t>(n));
    return program.substr(0, program.rfind('/') + 1);
}

} // namespace pl::platform::posix
