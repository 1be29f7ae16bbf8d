#include "platform/posix/xdg_dirs.h"
#include "platform/posix/posix_services.h"

#include <cstdlib>
#include <fstream>
#include <pwd.h>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace pl::platform::posix {

namespace {

std::string withoutTrailingSlash(std::string path) {
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    return path;
}

// The XDG base-directory rules ignore relative values: they would mean something different
// in every working folder.
std::string absoluteOr(const std::string& value, const std::string& fallback) {
    return !value.empty() && value[0] == '/' ? withoutTrailingSlash(value) : fallback;
}

std::string underHome(const char* relative) {
    const std::string home = homeDir();
    return home.empty() ? std::string() : home + "/" + relative;
}

// user-dirs.dirs values are "$HOME/Name" or an absolute path; anything else is not a folder.
std::string expandHome(const std::string& value) {
    constexpr std::string_view homeRef = "$HOME";
    if (value.compare(0, homeRef.size(), homeRef) == 0 &&
        (value.size() == homeRef.size() || value[homeRef.size()] == '/')) {
        const std::string home = homeDir();
        return home.empty() ? std::string() : withoutTrailingSlash(home + value.substr(homeRef.size()));
    }
    return absoluteOr(value, {});
}

// The value of `key` in a user-dirs.dirs file: shell-style lines KEY="value", where a backslash
// takes the next character literally.
std::string userDirsEntry(const std::string& file, std::string_view key) {
    std::ifstream in(file);
    std::string line;
    std::string found;
    while (std::getline(in, line)) {
        std::size_t i = line.find_first_not_of(" \t");
        if (i == std::string::npos || line[i] == '#')
            continue;
        if (line.compare(i, key.size(), key) != 0 || line.size() <= i + key.size() || line[i + key.size()] != '=')
            continue;
        i += key.size() + 1;
        std::string value;
        if (i < line.size() && line[i] == '"') {
            for (++i; i < line.size() && line[i] != '"'; ++i) {
                if (line[i] == '\\' && i + 1 < line.size())
                    ++i;
                value.push_back(line[i]);
            }
        } else {
            const std::size_t end = line.find_first_of(" \t", i);
            value = line.substr(i, end == std::string::npos ? std::string::npos : end - i);
        }
        found = value; // like the shell that sources the file, the last assignment wins
    }
    return found;
}

std::string userDir(const char* key, const char* defaultName) {
    std::string dir = expandHome(envValue(key));
    if (dir.empty()) {
        const std::string config = xdgConfigHome();
        if (!config.empty())
            dir = expandHome(userDirsEntry(config + "/user-dirs.dirs", key));
    }
    return dir.empty() ? underHome(defaultName) : dir;
}

} // namespace

std::string homeDir() {
    const std::string home = envValue("HOME");
    if (!home.empty())
        return withoutTrailingSlash(home);
    long size = sysconf(_SC_GETPW_R_SIZE_MAX);
    std::vector<char> buffer(size > 0 ? static_cast<std::size_t>(size) : 16384);
    passwd entry{};
    passwd* result = nullptr;
    if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &result) == 0 && result && result->pw_dir)
        return withoutTrailingSlash(result->pw_dir);
    return {};
}

std::string xdgDesktopDir() {
    return userDir("XDG_DESKTOP_DIR", "Desktop");
}

std::string xdgDocumentsDir() {
    return userDir("XDG_DOCUMENTS_DIR", "Documents");
}

std::string xdgDataHome() {
    return absoluteOr(envValue("XDG_DATA_HOME"), underHome(".local/share"));
}

std::string xdgConfigHome() {
    return absoluteOr(envValue("XDG_CONFIG_HOME"), underHome(".config"));
}

std::string suiteFolder() {
    std::vector<char> buffer(4096);
    for (;;) {
        const ssize_t length = readlink("/proc/self/exe", buffer.data(), buffer.size());
        if (length < 0)
            return {};
        if (static_cast<std::size_t>(length) < buffer.size()) {
            const std::string program(buffer.data(), static_cast<std::size_t>(length));
            const std::size_t slash = program.rfind('/');
            return slash == std::string::npos ? std::string() : program.substr(0, slash + 1);
        }
        buffer.resize(buffer.size() * 2);
    }
}

} // namespace pl::platform::posix
