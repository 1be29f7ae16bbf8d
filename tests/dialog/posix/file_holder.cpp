#include "../actions_fixture.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

namespace pl::test {

// The holder is a child process that takes the lock and waits until the test closes its end of a
// pipe.
struct FileHolder::Held {
    int pid = -1;
    int release = -1; // closing it lets the holder end
};

FileHolder::FileHolder(const std::string& path, Lock kind) : held_(std::make_unique<Held>()) {
    int ready[2], release[2];
    if (::pipe(ready) != 0 || ::pipe(release) != 0)
        return;
    const pid_t pid = ::fork();
    if (pid == 0) {
        ::close(ready[0]);
        ::close(release[1]);
        const int fd = ::open(path.c_str(), O_RDWR);
        bool locked = false;
        if (fd >= 0 && kind == Lock::Flock) {
            locked = ::flock(fd, LOCK_EX) == 0;
        } else if (fd >= 0) {
            struct flock lock {};
            lock.l_type = F_WRLCK;
            lock.l_whence = SEEK_SET;
            locked = ::fcntl(fd, F_SETLKW, &lock) == 0;
        }
        const char answer = locked ? '1' : '0';
        (void)::write(ready[1], &answer, 1);
        char ignored;
        (void)::read(release[0], &ignored, 1); // until the test closes its end
        ::_exit(0);
    }
    ::close(ready[1]);
    ::close(release[0]);
    held_->pid = pid;
    held_->release = release[1];
    char answer = '0';
    holding_ = pid > 0 && ::read(ready[0], &answer, 1) == 1 && answer == '1';
    ::close(ready[0]);
}

FileHolder::~FileHolder() {
    if (held_->release >= 0)
        ::close(held_->release);
    if (held_->pid > 0) {
        int status = 0;
        while (::waitpid(held_->pid, &status, 0) < 0 && errno == EINTR) {
        }
    }
}

} // namespace pl::test
