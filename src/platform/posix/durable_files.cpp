#include "platform/durable_files.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace pl::platform {

bool syncFile(const std::string& path) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
    if (fd < 0)
        return false;
    const bool synced = ::fsync(fd) == 0;
    return ::close(fd) == 0 && synced;
}

void syncFolder(const std::string& folder) {
    const int fd = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd >= 0) {
        ::fsync(fd);
        ::close(fd);
    }
}

bool isReadOnly(const std::string& path) {
    struct stat st {};
    if (::stat(path.c_str(), &st) != 0)
        return false;
    // The write bits are what Windows' read-only attribute is here; the super-user may write to
    // any file, but a file marked so is left alone by it too.
    if ((st.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0)
        return true;
    return ::access(path.c_str(), W_OK) != 0 && errno == EACCES;
}

Placed placeWithoutReplacing(const std::string& from, const std::string& to) {
#ifdef RENAME_NOREPLACE
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return Placed::Done;
    if (errno == EEXIST)
        return Placed::Taken;
    if (errno != EINVAL && errno != ENOSYS && errno != ENOTSUP)
        return Placed::Failed;
#endif
    // Without an exclusive rename a second name for the file does the same: link(2) never
    // replaces anything.
    if (::link(from.c_str(), to.c_str()) != 0)
        return errno == EEXIST ? Placed::Taken : Placed::Failed;
    ::unlink(from.c_str());
    return Placed::Done;
}

} // namespace pl::platform
