#include "platform/plain_file.h"
#include "platform/posix/posix_services.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace pl::platform {

PlainFileReader::PlainFileReader(std::string_view path) {
    const std::string file = posix::resolvePathCase(path);
    const int fd = ::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC | O_NOCTTY);
    if (fd < 0)
        return;
    struct stat st {};
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        ::close(fd);
        return;
    }
    handle_ = fd;
}

PlainFileReader::~PlainFileReader() {
    if (handle_ >= 0)
        ::close(static_cast<int>(handle_));
}

std::optional<std::size_t> PlainFileReader::read(char* buffer, std::size_t size) {
    if (handle_ < 0)
        return std::nullopt;
    for (;;) {
        const ssize_t got = ::read(static_cast<int>(handle_), buffer, size);
        if (got >= 0)
            return static_cast<std::size_t>(got);
        if (errno != EINTR)
            return std::nullopt;
    }
}

} // namespace pl::platform
