#include "platform/file_in_use.h"

#include "platform/posix/posix_services.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace pl::platform {

bool heldOpenElsewhere(std::string_view path) {
    if (path.empty())
        return false;
    const std::string file = posix::resolvePathCase(path);
    // Read-only and non-blocking: asking must neither need write access nor hang on a pipe.
    const int fd = ::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0)
        return false;

    bool held = false;
    if (::flock(fd, LOCK_EX | LOCK_NB) == 0)
        ::flock(fd, LOCK_UN);
    else
        held = errno == EWOULDBLOCK;

    if (!held) {
        // Record locks (fcntl, lockf) are a separate kind: F_GETLK reports another process's lock
        // that a write lock over the whole file would collide with, without taking anything. Our own
        // record locks never collide, and this program takes none on the files it asks about, so
        // closing the descriptor below releases nothing of ours.
        struct flock probe {};
        probe.l_type = F_WRLCK;
        probe.l_whence = SEEK_SET;
        probe.l_start = 0;
        probe.l_len = 0;
        held = ::fcntl(fd, F_GETLK, &probe) == 0 && probe.l_type != F_UNLCK;
    }
    ::close(fd);
    return held;
}

} // namespace pl::platform
