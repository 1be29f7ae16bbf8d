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

// Sections are gathered to about this size before they are written.
constexpr std::size_t WriteBufferSize = 1 << 20;

// 64-bit FNV-1a: tells two versions of a file apart without keeping either.
class Hasher {
public:
    void add(std::string_view bytes) {
        for (const char c : bytes) {
            value_ ^= static_cast<unsigned char>(c);
            value_ *= 0x100000001b3ULL;
        }
    }
    std::uint64_t value() const { return value_; }

private:
    std::uint64_t value_ = 0xcbf29ce484222325ULL;
};

std::uint64_t hashOf(std::string_view bytes) {
    Hasher hash;
    hash.add(bytes);
    return hash.value();
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
    // The change goes straight into the tree; whatever keeps it from the file makes the next access
    // read the file again, so the tree never holds what the file does not.
    bool changed = false;
    settled_.reset();
    const long rc = change(tree_, changed);
    if (rc != RegOk || !changed) {
        if (rc != RegOk)
            version_.reset();
        return rc;
    }
    const long written = replaceFile(tree_);
    if (written != RegOk)
        version_.reset();
    return written;
}

namespace {

// A file whose status change lies well before the moment it was read has not changed since as long
// as its status is the same: any change would have moved its change time past that moment. A file
// read within moments of its last change may change again within the same clock tick unseen, so
// it is read again next time.
constexpr std::int64_t SettledAfterNanoseconds = 2'000'000'000;

std::int64_t nanoseconds(const timespec& t) {
    return static_cast<std::int64_t>(t.tv_sec) * 1'000'000'000 + t.tv_nsec;
}

} // namespace

bool HiveStore::Settled::matches(const struct stat& st) const {
    return st.st_dev == device && st.st_ino == inode && st.st_size == size && nanoseconds(st.st_mtim) == modified &&
           nanoseconds(st.st_ctim) == changed;
}

void HiveStore::refresh() const {
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    // Opened without waiting: a pipe in the hive's place must not stop the program.
    const int fd = ::open(file_.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (fd < 0) {
        const int error = errno;
        forget(error == ENOENT ? std::nullopt : std::optional(file_.string() + ": " + std::strerror(error)));
        return;
    }
    struct stat st {};
    std::string bytes;
    std::optional<std::string> failure;
    if (::fstat(fd, &st) != 0)
        failure = file_.string() + ": " + std::strerror(errno);
    else if (!S_ISREG(st.st_mode))
        failure = file_.string() + ": not a plain file";
    else if (settled_ && settled_->matches(st)) {
        ::close(fd);
        return;
    } else {
        bytes.reserve(static_cast<std::size_t>(st.st_size) + 1);
        if (!readAll(fd, bytes))
            failure = file_.string() + ": " + std::strerror(errno);
    }
    ::close(fd);
    if (failure) {
        forget(std::move(failure));
        return;
    }
    const Version seen{bytes.size(), hashOf(bytes)};
    if (version_ != seen) {
        load(bytes);
        version_ = seen;
    }
    settled_.reset();
    if (nanoseconds(st.st_ctim) + SettledAfterNanoseconds < nanoseconds(now))
        settled_ = Settled{st.st_dev, st.st_ino, st.st_size, nanoseconds(st.st_mtim), nanoseconds(st.st_ctim)};
}

void HiveStore::forget(std::optional<std::string> problem) const {
    tree_ = HiveKey{};
    version_.reset();
    settled_.reset();
    problem_ = std::move(problem);
    complain();
}

// Said once per problem: whoever edited the file by hand should learn why their settings are not
// seen and why nothing is saved any more.
void HiveStore::complain() const {
    if (!problem_) {
        complained_.clear();
        return;
    }
    if (*problem_ == complained_)
        return;
    complained_ = *problem_;
    std::fprintf(stderr, "paperlark: registry file %s; it is not used and will not be written to\n", problem_->c_str());
}

void HiveStore::load(std::string_view bytes) const {
    tree_ = HiveKey{};
    problem_.reset();
    const RegFileKey* foreign = nullptr;
    RegFileKey refused;
    HiveLoader loader(tree_, root_);
    const auto error = parseRegFileSections(bytes, [&](RegFileKey& section) {
        if (loader.apply(section))
            return true;
        refused = std::move(section);
        foreign = &refused;
        return false;
    });
    if (error) {
        problem_ = file_.string() + ", line " + std::to_string(error->line) + ": " + error->message;
    } else if (foreign) {
        problem_ = file_.string() + ", line " + std::to_string(foreign->line) + ": the key belongs to " +
                   std::string(rootLongName(foreign->root)) + ", not to this file's " +
                   std::string(rootLongName(root_));
    }
    if (problem_)
        tree_ = HiveKey{};
    complain();
}

long HiveStore::replaceFile(const HiveKey& tree) {
    const std::filesystem::path folder = file_.parent_path();
    std::string hidden = "."; // built step by step: GCC 12 warns falsely about "." + string
    hidden += file_.filename().string();
    hidden += ".XXXXXX";
    std::string temp = (folder / hidden).string();
    const int fd = ::mkostemp(temp.data(), O_CLOEXEC);
    if (fd < 0)
        return codeFor(errno);
    struct stat existing {};
    const mode_t mode = ::stat(file_.c_str(), &existing) == 0 ? (existing.st_mode & 07777) : NewHiveMode;

    // Written a section at a time through a buffer; the version of what was written is worked out
    // on the way, so the file need not be read back.
    std::string buffer = regFileHeader();
    Hasher hash;
    std::uint64_t size = 0;
    bool ok = ::fchmod(fd, mode) == 0;
    const auto flush = [&] {
        hash.add(buffer);
        size += buffer.size();
        ok = ok && writeAll(fd, buffer);
        buffer.clear();
    };
    forEachSection(tree, root_, [&](const RegFileKey& section) {
        writeRegFileSection(buffer, section);
        if (buffer.size() >= WriteBufferSize)
            flush();
    });
    flush();
    if (!ok || ::fsync(fd) != 0 || ::rename(temp.c_str(), file_.c_str()) != 0) {
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
    version_ = Version{size, hash.value()};
    problem_.reset();
    return RegOk;
}

} // namespace pl::platform::posix
