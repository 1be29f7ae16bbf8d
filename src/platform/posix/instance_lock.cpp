#include "platform/posix/posix_services.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace pl::platform::posix {

namespace {

// Only harmless characters in the lock file's name: a display is ":0" or "host:0.0" and a name
// given by the caller could hold anything.
std::string fileNamePart(std::string_view text) {
    std::string part;
    for (const char c : text) {
        const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
                           c == '_' || c == '.';
        part.push_back(plain ? c : '_');
    }
    return part;
}

// The logon session, as far as the desktop tells it: the login manager's session id, else the
// display the program shows itself on.
std::string sessionName() {
    for (const char* variable : {"XDG_SESSION_ID", "DISPLAY", "WAYLAND_DISPLAY"}) {
        const std::string value = envValue(variable);
        if (!value.empty())
            return fileNamePart(value);
    }
    return "default";
}

bool isPrivateFolder(const std::string& path) {
    struct stat st {};
    return ::lstat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode) && st.st_uid == ::getuid() && (st.st_mode & 077) == 0;
}

// The user's runtime folder, which only the user can reach and which the login manager empties at
// logout. Without one, a folder of our own in /tmp that nobody else may enter: a lock file in a
// folder others can write to could be taken away or pre-created by them.
std::string lockFolder() {
    const std::string runtime = envValue("XDG_RUNTIME_DIR");
    if (!runtime.empty() && runtime[0] == '/' && isPrivateFolder(runtime))
        return runtime;
    const std::string own = "/tmp/paperlark-" + std::to_string(::getuid());
    if (::mkdir(own.c_str(), 0700) != 0 && errno != EEXIST)
        return {};
    return isPrivateFolder(own) ? own : std::string();
}

} // namespace

PosixInstanceLock::~PosixInstanceLock() {
    if (fd_ >= 0)
        ::close(fd_); // closing the file releases the lock
}

bool PosixInstanceLock::acquire(std::string_view name) {
    if (fd_ >= 0)
        return heldName_ == name;
    const std::string folder = lockFolder();
    if (folder.empty())
        return true; // nowhere to keep a lock: better a second assistant than none at all
    const std::string path = folder + "/" + fileNamePart(name) + "-" + sessionName() + ".lock";
    const int fd = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (fd < 0)
        return true;
    int result = 0;
    do
        result = ::flock(fd, LOCK_EX | LOCK_NB);
    while (result != 0 && errno == EINTR);
    if (result != 0) {
        const bool heldByAnother = errno == EWOULDBLOCK;
        ::close(fd);
        return !heldByAnother;
    }
    fd_ = fd;
    heldName_ = std::string(name);
    return true;
}

} // namespace pl::platform::posix
