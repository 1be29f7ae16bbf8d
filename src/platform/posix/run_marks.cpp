#include "platform/run_marks.h"

#include <cerrno>
#include <csignal>
#include <limits.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace pl::platform {

namespace {

std::string machineName() {
    char name[HOST_NAME_MAX + 1] = {};
    if (::gethostname(name, sizeof name - 1) != 0 || name[0] == '\0')
        return "localhost";
    return name;
}

} // namespace

std::string currentRunTag() {
    return std::to_string(::getpid()) + "-" + machineName();
}

bool leftByEndedRun(const std::string& path, std::string_view tag) {
    const std::size_t dash = tag.find('-');
    if (dash == 0 || dash == std::string_view::npos || dash > 9 || tag.substr(dash + 1) != machineName())
        return false;
    pid_t pid = 0;
    for (const char c : tag.substr(0, dash)) {
        if (c < '0' || c > '9')
            return false;
        pid = pid * 10 + (c - '0');
    }
    struct stat st {};
    if (pid <= 0 || pid == ::getpid() || ::lstat(path.c_str(), &st) != 0 || st.st_uid != ::geteuid() ||
        !(S_ISREG(st.st_mode) || S_ISDIR(st.st_mode)))
        return false;
    // Another user's process answers EPERM: it runs.
    return ::kill(pid, 0) != 0 && errno == ESRCH;
}

} // namespace pl::platform
