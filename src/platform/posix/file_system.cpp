#include "base/text.h"
#include "platform/posix/posix_services.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace pl::platform::posix {

namespace {

std::string join(const std::string& folder, std::string_view name) {
    if (folder.empty())
        return std::string(name);
    return folder.back() == '/' ? folder + std::string(name) : folder + "/" + std::string(name);
}

bool lstatOk(const std::string& path, struct stat& st) {
    return ::lstat(path.c_str(), &st) == 0;
}

bool pathExists(const std::string& path) {
    struct stat st {};
    return lstatOk(path, st);
}

std::vector<std::string> components(std::string_view path) {
    std::vector<std::string> parts;
    std::size_t i = 0;
    while (i < path.size()) {
        const std::size_t slash = path.find('/', i);
        const std::size_t end = slash == std::string_view::npos ? path.size() : slash;
        if (end > i)
            parts.emplace_back(path.substr(i, end - i));
        i = end + 1;
    }
    return parts;
}

class Directory {
public:
    explicit Directory(const std::string& path) : dir_(::opendir(path.empty() ? "." : path.c_str())) {}
    ~Directory() {
        if (dir_)
            ::closedir(dir_);
    }
    Directory(const Directory&) = delete;
    Directory& operator=(const Directory&) = delete;

    bool isOpen() const { return dir_ != nullptr; }
    // Whether reading stopped because of an error rather than at the end of the folder.
    bool failed() const { return failed_; }
    // The next name other than "." and "..", or nothing at the end.
    const char* next() {
        for (;;) {
            errno = 0; // readdir tells an error from the end only through errno
            const dirent* entry = ::readdir(dir_);
            if (!entry) {
                failed_ = errno != 0;
                return nullptr;
            }
            last_ = entry;
            const std::string_view name = entry->d_name;
            if (name != "." && name != "..")
                return entry->d_name;
        }
    }
    int fd() const { return ::dirfd(dir_); }
    // Whether the entry last returned by next() is a folder (a link to a folder counts, as a
    // junction does on Windows).
    bool lastIsFolder() const {
        if (last_->d_type == DT_DIR)
            return true;
        if (last_->d_type != DT_LNK && last_->d_type != DT_UNKNOWN)
            return false;
        struct stat st {};
        return ::fstatat(::dirfd(dir_), last_->d_name, &st, 0) == 0 && S_ISDIR(st.st_mode);
    }

private:
    DIR* dir_;
    const dirent* last_ = nullptr;
    bool failed_ = false;
};

// The first name in `folder` that equals `name` but for letter case.
std::optional<std::string> caseVariant(const std::string& folder, std::string_view name) {
    Directory dir(folder);
    if (!dir.isOpen())
        return std::nullopt;
    while (const char* entry = dir.next())
        if (text::iequals(entry, name))
            return std::string(entry);
    return std::nullopt;
}

// The existing spelling of `name` inside `folder`: the exact one when it exists, else a variant
// differing only in case, else nothing.
std::optional<std::string> existingChild(const std::string& folder, const std::string& name) {
    const std::string exact = join(folder, name);
    if (pathExists(exact))
        return exact;
    if (name == "." || name == "..")
        return std::nullopt;
    if (auto variant = caseVariant(folder, name))
        return join(folder, *variant);
    return std::nullopt;
}

// `path` with its folder part resolved case-blindly and its last name as given: where a file is to
// be created or renamed to.
std::string resolveParent(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string_view::npos || slash == 0)
        return std::string(path);
    return resolvePathCase(path.substr(0, slash)) + std::string(path.substr(slash));
}

struct SearchResult {
    std::vector<DirEntry> found;
    bool complete = false; // the folder was opened and read without an error up to the answer
};

// Whether the entry `name` of the open folder is of the kind `entries` asks for. A plain file is
// looked at without following a link, so a link to somebody's file is no file of ours.
bool isWanted(int folderFd, const char* name, Entries entries) {
    struct stat st {};
    if (::fstatat(folderFd, name, &st, AT_SYMLINK_NOFOLLOW) != 0 || !S_ISREG(st.st_mode))
        return false;
    return entries != Entries::OwnRegularFiles || st.st_uid == ::geteuid();
}

// Reads the whole folder: the first match in listing order may be the last one the file system
// hands out.
SearchResult search(std::string_view folder, std::string_view pattern, bool includeFolders, Entries entries,
                    bool firstOnly) {
    SearchResult result;
    Directory dir(folder.empty() ? std::string() : resolvePathCase(folder));
    if (!dir.isOpen())
        return result;
    while (const char* name = dir.next()) {
        if (!wildcardMatch(pattern, name))
            continue;
        if (firstOnly && !result.found.empty() && !namesInListingOrder(name, result.found.front().name))
            continue;
        bool isFolder = false;
        if (entries == Entries::Files) {
            isFolder = dir.lastIsFolder();
            if (isFolder && !includeFolders)
                continue;
        } else if (!isWanted(dir.fd(), name, entries)) {
            continue;
        }
        if (firstOnly)
            result.found.assign(1, DirEntry{name, isFolder});
        else
            result.found.push_back({name, isFolder});
    }
    std::sort(result.found.begin(), result.found.end(),
              [](const DirEntry& a, const DirEntry& b) { return namesInListingOrder(a.name, b.name); });
    result.complete = !dir.failed();
    return result;
}

bool writeAll(int fd, const char* data, std::size_t size) {
    while (size > 0) {
        const ssize_t written = ::write(fd, data, size);
        if (written < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        data += written;
        size -= static_cast<std::size_t>(written);
    }
    return true;
}

bool copyContents(int in, int out) {
    char buffer[65536];
    for (;;) {
        const ssize_t got = ::read(in, buffer, sizeof buffer);
        if (got == 0)
            return true;
        if (got < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        if (!writeAll(out, buffer, static_cast<std::size_t>(got)))
            return false;
    }
}

void syncFolderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
    const int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd >= 0) {
        ::fsync(fd);
        ::close(fd);
    }
}

// A move to another file system, as Windows does it for another drive: the copy (with the original
// permissions and modification time) is on disk before the original goes away, and when the
// original cannot be removed the copy is withdrawn, so the file ends up in exactly one place.
bool moveAcrossFileSystems(const std::string& from, const std::string& to, const struct stat& st) {
    if (!S_ISREG(st.st_mode))
        return false;
    const int in = ::open(from.c_str(), O_RDONLY | O_CLOEXEC);
    if (in < 0)
        return false;
    const int out = ::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, st.st_mode & 07777);
    if (out < 0) {
        ::close(in);
        return false;
    }
    const timespec times[2] = {st.st_atim, st.st_mtim};
    bool ok = copyContents(in, out) && ::fchmod(out, st.st_mode & 07777) == 0 && ::futimens(out, times) == 0 &&
              ::fsync(out) == 0;
    ::close(in);
    ok = ::close(out) == 0 && ok;
    if (ok) {
        syncFolderOf(to);
        ok = ::unlink(from.c_str()) == 0;
    }
    if (!ok)
        ::unlink(to.c_str());
    return ok;
}

// rename(2) that refuses to replace an existing target, as a Windows rename does.
int renameNoReplace(const std::string& from, const std::string& to) {
#ifdef RENAME_NOREPLACE
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS && errno != ENOTSUP)
        return -1;
        // The file system cannot do it atomically: check first, as other systems must.
#endif
    if (pathExists(to)) {
        errno = EEXIST;
        return -1;
    }
    return ::rename(from.c_str(), to.c_str());
}

} // namespace

std::string resolvePathCase(std::string_view path) {
    const std::string original(path);
    if (original.empty() || pathExists(original))
        return original;
    std::string resolved = original[0] == '/' ? "/" : "";
    for (const std::string& name : components(original)) {
        const auto child = existingChild(resolved, name);
        if (!child)
            return original;
        resolved = *child;
    }
    if (original.back() == '/' && resolved.back() != '/')
        resolved.push_back('/');
    return resolved;
}

std::optional<DirEntry> PosixFileSystem::findFirst(std::string_view folder, std::string_view pattern,
                                                   bool includeFolders) const {
    return searchFirst(folder, pattern, includeFolders).entry;
}

namespace {

FileSystem::FirstMatch firstOf(SearchResult result) {
    FileSystem::FirstMatch match;
    match.complete = result.complete;
    if (!result.found.empty())
        match.entry = std::move(result.found.front());
    return match;
}

} // namespace

FileSystem::FirstMatch PosixFileSystem::searchFirst(std::string_view folder, std::string_view pattern,
                                                    bool includeFolders) const {
    return firstOf(search(folder, pattern, includeFolders, Entries::Files, true));
}

std::vector<DirEntry> PosixFileSystem::findAll(std::string_view folder, std::string_view pattern,
                                               bool includeFolders) const {
    return search(folder, pattern, includeFolders, Entries::Files, false).found;
}

FileSystem::FirstMatch PosixFileSystem::searchFirstOf(std::string_view folder, std::string_view pattern,
                                                      Entries entries) const {
    return firstOf(search(folder, pattern, false, entries, true));
}

std::vector<DirEntry> PosixFileSystem::findAllOf(std::string_view folder, std::string_view pattern,
                                                 Entries entries) const {
    return search(folder, pattern, false, entries, false).found;
}

std::string PosixFileSystem::resolveCase(std::string_view path) const {
    return resolvePathCase(path);
}

bool PosixFileSystem::exists(std::string_view path) const {
    return !path.empty() && pathExists(resolvePathCase(path));
}

bool PosixFileSystem::isFolder(std::string_view path) const {
    struct stat st {};
    return !path.empty() && ::stat(resolvePathCase(path).c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

std::optional<std::uint64_t> PosixFileSystem::size(std::string_view path) const {
    struct stat st {};
    if (path.empty() || ::stat(resolvePathCase(path).c_str(), &st) != 0 || !S_ISREG(st.st_mode))
        return std::nullopt;
    return static_cast<std::uint64_t>(st.st_size);
}

std::optional<FileTime> PosixFileSystem::modified(std::string_view path) const {
    struct stat st {};
    if (path.empty() || ::stat(resolvePathCase(path).c_str(), &st) != 0)
        return std::nullopt;
    using namespace std::chrono;
    return system_clock::from_time_t(st.st_mtim.tv_sec) +
           duration_cast<system_clock::duration>(nanoseconds(st.st_mtim.tv_nsec));
}

bool PosixFileSystem::rename(std::string_view from, std::string_view to) {
    if (from.empty() || to.empty())
        return false;
    const std::string source = resolvePathCase(from);
    struct stat sourceStat {};
    if (!lstatOk(source, sourceStat))
        return false;

    const std::string target = resolveParent(to);
    struct stat targetStat {};
    if (lstatOk(resolvePathCase(target), targetStat)) {
        // The target exists, at least case-blindly. Only a change of case of the same file may go
        // ahead; anything else would replace a file, which a Windows rename never does.
        if (targetStat.st_dev != sourceStat.st_dev || targetStat.st_ino != sourceStat.st_ino)
            return false;
        return ::rename(source.c_str(), target.c_str()) == 0;
    }
    if (renameNoReplace(source, target) == 0)
        return true;
    return errno == EXDEV && moveAcrossFileSystems(source, target, sourceStat);
}

bool PosixFileSystem::moveToOwn(std::string_view from, std::string_view to) {
    if (from.empty() || to.empty())
        return false;
    const std::string source = resolvePathCase(from);
    struct stat st {};
    if (!lstatOk(source, st) || !S_ISREG(st.st_mode))
        return false;
    if (st.st_uid == ::geteuid())
        return rename(from, to);

    const std::string target = resolveParent(to);
    if (pathExists(resolvePathCase(target)))
        return false;
    // Opened without waiting and without following a link, and checked to be the file looked at.
    const int in = ::open(source.c_str(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC);
    if (in < 0)
        return false;
    struct stat opened {};
    if (::fstat(in, &opened) != 0 || !S_ISREG(opened.st_mode) || opened.st_ino != st.st_ino ||
        opened.st_dev != st.st_dev) {
        ::close(in);
        return false;
    }
    const int out = ::open(target.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (out < 0) {
        ::close(in);
        return false;
    }
    bool ok = copyContents(in, out) && ::fsync(out) == 0;
    ::close(in);
    ok = ::close(out) == 0 && ok;
    // Only whoever removes the original has moved it: among several takers the first one wins and
    // the others withdraw their copies.
    if (ok)
        ok = ::unlink(source.c_str()) == 0;
    if (!ok) {
        ::unlink(target.c_str());
        return false;
    }
    syncFolderOf(target);
    return true;
}

bool PosixFileSystem::remove(std::string_view path) {
    return !path.empty() && ::unlink(resolvePathCase(path).c_str()) == 0;
}

bool PosixFileSystem::createFolder(std::string_view path) {
    if (path.empty())
        return false;
    std::string current = path[0] == '/' ? "/" : "";
    for (const std::string& name : components(path)) {
        if (auto child = existingChild(current, name)) {
            current = *child;
            continue;
        }
        current = join(current, name);
        if (::mkdir(current.c_str(), 0777) != 0 && errno != EEXIST)
            return false;
    }
    return isFolder(current);
}

bool PosixFileSystem::removeFolder(std::string_view path) {
    return !path.empty() && ::rmdir(resolvePathCase(path).c_str()) == 0;
}

} // namespace pl::platform::posix
