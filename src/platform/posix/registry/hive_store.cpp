#include "platform/posix/registry/hive_store.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace pl::platform::posix {

namespace {

// Hives that did not exist yet are readable by everybody and written by their owner, like the
// machine settings they hold.
constexpr mode_t NewHiveMode = 0644;

bool readAll(int fd, std::string& out) {
    char buffer[65536];
    for (;;) {
        const ssize_t n = ::read(fd, buffer, sizeof buffer);
        if (n == 0)
            return true;
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return false;
        out.append(buffer, static_cast<std::size_t>(n));
    }
}

bool writeAll(int fd, std::string_view data) {
    while (!data.empty()) {
        const ssize_t n = ::write(fd, data.data(), data.size());
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        data.remove_prefix(static_cast<std::size_t>(n));
    }
    return true;
}

long codeFor(int error) {
    return (error == EACCES || error == EPERM || error == EROFS) ? RegAccessDenied : RegCannotWrite;
}

// The exclusive lock of one hive, held for as long as the object lives.
class HiveLock {
public:
    explicit HiveLock(const std::filesystem::path& hive) {
        const std::string path = hive.string() + ".lock";
        fd_ = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, NewHiveMode);
        if (fd_ < 0 && errno == ENOENT) {
            // The first write of a user creates the folder, as the first login does on Windows.
            std::error_code ec;
            std::filesystem::create_directories(hive.parent_path(), ec);
            fd_ = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, NewHiveMode);
        }
        if (fd_ < 0) {
            error_ = codeFor(errno);
            return;
        }
        while (::flock(fd_, LOCK_EX) != 0) {
            if (errno != EINTR) {
                error_ = RegCannotWrite;
                return;
            }
        }
    }
    ~HiveLock() {
        if (fd_ >= 0)
            ::close(fd_); // closing releases the lock
    }
    HiveLock(const HiveLock&) = delete;
    HiveLock& operator=(const HiveLock&) = delete;

    long error() const { return error_; }

private:
    int fd_ = -1;
    long error_ = RegOk;
};

} // namespace

HiveStore::HiveStore(RootKey root, std::filesystem::path file) : root_(root), file_(std::move(file)) {}

void HiveStore::read(const std::function<void(const HiveKey&)>& reader) const {
    std::lock_guard guard(mutex_);
    refresh();
    reader(tree_);
}

std::optional<std::string> HiveStore::problem() const {
    std::lock_guard guard(mutex_);
    refresh();
    return problem_;
}

long HiveStore::modify(const std::function<long(HiveKey&, bool&)>& change) {
    std::lock_guard guard(mutex_);
    HiveLock lock(file_);
    if (lock.error() != RegOk)
        return lock.error();
    refresh();
    if (problem_)
        return RegCannotWrite;
    HiveKey changedTree = tree_;
    bool changed = false;
    if (const long rc = change(changedTree, changed); rc != RegOk || !changed)
        return rc;
    if (const long rc = replaceFile(changedTree); rc != RegOk)
        return rc;
    tree_ = std::move(changedTree);
    return RegOk;
}

void HiveStore::refresh() const {
    std::string bytes;
    const int fd = ::open(file_.c_str(), O_RDONLY | O_CLOEXEC);
    const bool ok = fd >= 0 && readAll(fd, bytes);
    const int error = errno;
    if (fd >= 0)
        ::close(fd);
    if (!ok)
        forget(error == ENOENT ? std::nullopt : std::optional(file_.string() + ": " + std::strerror(error)));
    else if (bytes != bytes_)
        load(std::move(bytes));
}

void HiveStore::forget(std::optional<std::string> problem) const {
    tree_ = HiveKey{};
    bytes_.reset();
    problem_ = std::move(problem);
}

void HiveStore::load(std::string bytes) const {
    forget(std::nullopt);
    const RegFileParse parsed = parseRegFile(bytes);
    bytes_ = std::move(bytes);
    if (!parsed.file) {
        problem_ = file_.string() + ", line " + std::to_string(parsed.error.line) + ": " + parsed.error.message;
    } else if (const RegFileKey* foreign = applyRegFile(tree_, root_, *parsed.file)) {
        problem_ = file_.string() + ", line " + std::to_string(foreign->line) + ": the key belongs to " +
                   std::string(rootLongName(foreign->root)) + ", not to this file's " +
                   std::string(rootLongName(root_));
    }
    if (problem_) {
        tree_ = HiveKey{};
        // Said once per version of the file: whoever edited it by hand should learn why their
        // settings are not seen and why nothing is saved any more.
        std::fprintf(stderr, "paperlark: registry file %s; it is not used and will not be written to\n",
                     problem_->c_str());
    }
}

long HiveStore::replaceFile(const HiveKey& tree) {
    const std::string text = writeRegFile(toRegFile(tree, root_));
    const std::filesystem::path folder = file_.parent_path();
    std::string temp = (folder / ("." + file_.filename().string() + ".XXXXXX")).string();
    const int fd = ::mkostemp(temp.data(), O_CLOEXEC);
    if (fd < 0)
        return codeFor(errno);
    struct stat existing {};
    const mode_t mode = ::stat(file_.c_str(), &existing) == 0 ? (existing.st_mode & 07777) : NewHiveMode;
    if (::fchmod(fd, mode) != 0 || !writeAll(fd, text) || ::fsync(fd) != 0 ||
        ::rename(temp.c_str(), file_.c_str()) != 0) {
        const int error = errno;
        ::close(fd);
        ::unlink(temp.c_str());
        return codeFor(error);
    }
    // The rename is durable only once the folder's entry is on disk too.
    if (const int dir = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); dir >= 0) {
        ::fsync(dir);
        ::close(dir);
    }
    ::close(fd);
    bytes_ = text;
    problem_.reset();
    return RegOk;
}

} // namespace pl::platform::posix
