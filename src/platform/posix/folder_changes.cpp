// Folder change notifications with inotify.
//
// Why an answer "unchanged" can be trusted: the kernel queues an inotify event inside the system
// call that changes the folder (create, unlink, rename, rmdir, mkdir, chmod of the folder), before
// that call returns to whoever made it. So once a change has completed, in any process, its event
// is already in our queue; draining the queue before answering therefore sees every change that
// completed before the question was asked. Changes to the folder's own identity that produce no
// event in it (a parent folder renamed, another folder mounted or moved into its path) are caught by
// comparing the folder's device and inode numbers on every question. Network and user-space file
// systems do not report changes made elsewhere, so folders on them are never watched.
//
// Each watch keeps the names of its most recent events, so that a question about some entries can
// ignore changes of others (on a terminal server, the other users' jobs arriving in the shared
// spool folder). When the names asked about are older than what is kept, the answer is "changed".

#include "platform/folder_changes.h"

#include <sys/inotify.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <deque>
#include <string>
#include <unordered_map>
#include <vector>

namespace pl::platform {
namespace {

// Local file systems whose changes all pass through this kernel and are therefore all reported.
bool reportsAllChanges(const struct statfs& fs) {
    switch (static_cast<unsigned long>(fs.f_type)) {
    case 0xEF53UL:     // ext2, ext3, ext4
    case 0x58465342UL: // xfs
    case 0x9123683EUL: // btrfs
    case 0x01021994UL: // tmpfs
    case 0x794C7630UL: // overlayfs
    case 0xF2F52010UL: // f2fs
    case 0x52654973UL: // reiserfs
    case 0x3153464AUL: // jfs
    case 0x2FC12FC1UL: // zfs
    case 0xCA451A4EUL: // bcachefs
    case 0x4D44UL:     // vfat
    case 0x2011BAB0UL: // exfat
    case 0x5346544EUL: // ntfs
    case 0x7366746EUL: // ntfs3
        return true;
    default:
        return false;
    }
}

struct Identity {
    dev_t dev = 0;
    ino_t ino = 0;
    bool operator==(const Identity&) const = default;
};

std::optional<Identity> folderIdentity(const std::string& path) {
    struct stat st {};
    if (::stat(path.c_str(), &st) != 0 || !S_ISDIR(st.st_mode))
        return std::nullopt;
    return Identity{st.st_dev, st.st_ino};
}

// How many event names a watch keeps; a question whose stamp is older than that is answered
// "changed". A second's worth of events on a busy spool folder fits easily.
constexpr std::size_t KeptEvents = 4096;

constexpr std::uint32_t WatchMask =
    IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF | IN_ATTRIB | IN_ONLYDIR;

class InotifyFolderChanges final : public FolderChanges {
public:
    InotifyFolderChanges() : fd_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {}
    ~InotifyFolderChanges() override {
        if (fd_ >= 0)
            ::close(fd_);
    }
    InotifyFolderChanges(const InotifyFolderChanges&) = delete;
    InotifyFolderChanges& operator=(const InotifyFolderChanges&) = delete;

    std::optional<FolderStamp> stamp(std::string_view folder) override {
        if (fd_ < 0)
            return std::nullopt;
        drain();
        const std::string path(folder);
        if (auto it = byPath_.find(path); it != byPath_.end()) {
            Watch& w = watches_[it->second];
            if (w.alive && folderIdentity(path) == w.identity)
                return FolderStamp{it->second + 1, w.generation};
            forget(it->second); // the path names another folder now, or the watch is gone
        }
        return addWatch(path);
    }

    bool changedSince(const FolderStamp& stamp) override {
        const Watch* w = current(stamp);
        return !w || w->generation != stamp.generation;
    }

    bool changedFor(FolderStamp& stamp, const std::function<bool(std::string_view)>& matters) override {
        const Watch* w = current(stamp);
        if (!w || w->generation < stamp.generation)
            return true;
        const std::uint64_t missed = w->generation - stamp.generation;
        if (missed > w->events.size())
            return true; // older than what is kept: nobody can say what changed
        for (auto it = w->events.end() - static_cast<std::ptrdiff_t>(missed); it != w->events.end(); ++it)
            if (!it->has_value() || matters(**it))
                return true;
        stamp.generation = w->generation;
        return false;
    }

private:
    struct Watch {
        int wd = -1;
        std::string path;
        Identity identity;
        std::uint64_t generation = 0; // one per event
        bool alive = false;
        // The names of the latest events, oldest first; nothing for an event of the folder itself.
        std::deque<std::optional<std::string>> events;
    };

    // The watch of `stamp` after reading the queue, when it still watches what its path names.
    const Watch* current(const FolderStamp& stamp) {
        if (fd_ < 0 || stamp.watch == 0 || stamp.watch > watches_.size())
            return nullptr;
        drain();
        const Watch& w = watches_[stamp.watch - 1];
        if (!w.alive || folderIdentity(w.path) != w.identity)
            return nullptr;
        return &w;
    }

    static void record(Watch& w, std::optional<std::string> name) {
        ++w.generation;
        w.events.push_back(std::move(name));
        if (w.events.size() > KeptEvents)
            w.events.pop_front();
    }

    std::optional<FolderStamp> addWatch(const std::string& path) {
        const auto before = folderIdentity(path);
        struct statfs fs {};
        if (!before || ::statfs(path.c_str(), &fs) != 0 || !reportsAllChanges(fs))
            return std::nullopt;
        const int wd = ::inotify_add_watch(fd_, path.c_str(), WatchMask);
        if (wd < 0)
            return std::nullopt;
        // The watch follows whatever the path named at the moment it was added; if the path was
        // switched to another folder meanwhile, we cannot tell which one is watched.
        if (folderIdentity(path) != before) {
            releaseIfUnused(wd);
            return std::nullopt;
        }
        watches_.push_back(Watch{wd, path, *before, 0, true, {}});
        const std::size_t index = watches_.size() - 1;
        byPath_[path] = index;
        byWd_.emplace(wd, index);
        return FolderStamp{index + 1, 0};
    }

    // Drops the watch entry; the kernel watch goes too unless another path shares it.
    void forget(std::size_t index) {
        Watch& w = watches_[index];
        byPath_.erase(w.path);
        if (w.alive) {
            w.alive = false;
            auto range = byWd_.equal_range(w.wd);
            for (auto it = range.first; it != range.second; ++it)
                if (it->second == index) {
                    byWd_.erase(it);
                    break;
                }
            releaseIfUnused(w.wd);
        }
    }

    void releaseIfUnused(int wd) {
        if (byWd_.find(wd) == byWd_.end())
            ::inotify_rm_watch(fd_, wd);
    }

    // Reads every queued event without waiting and counts it against its watches.
    void drain() {
        alignas(inotify_event) std::array<char, 16384> buffer;
        for (;;) {
            const ssize_t n = ::read(fd_, buffer.data(), buffer.size());
            if (n <= 0) {
                if (n < 0 && errno == EINTR)
                    continue;
                return; // EAGAIN: nothing more queued
            }
            for (ssize_t offset = 0; offset < n;) {
                const auto* event = reinterpret_cast<const inotify_event*>(buffer.data() + offset);
                apply(*event);
                offset += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
            }
        }
    }

    void apply(const inotify_event& event) {
        if (event.mask & IN_Q_OVERFLOW) {
            // Events were lost: nobody can say which folder changed, so every folder did.
            for (auto& w : watches_)
                record(w, std::nullopt);
            return;
        }
        auto range = byWd_.equal_range(event.wd);
        std::vector<std::size_t> affected;
        for (auto it = range.first; it != range.second; ++it)
            affected.push_back(it->second);
        std::optional<std::string> name;
        if (event.len > 0 && event.name[0] != '\0')
            name.emplace(event.name);
        for (std::size_t index : affected) {
            Watch& w = watches_[index];
            record(w, name);
            if (event.mask & IN_IGNORED) {
                // The kernel ended the watch (folder deleted, file system unmounted).
                w.alive = false;
                if (auto it = byPath_.find(w.path); it != byPath_.end() && it->second == index)
                    byPath_.erase(it);
            }
        }
        if (event.mask & IN_IGNORED)
            byWd_.erase(event.wd);
    }

    int fd_;
    std::vector<Watch> watches_; // index + 1 is the stamp's watch number
    std::unordered_map<std::string, std::size_t> byPath_;
    std::unordered_multimap<int, std::size_t> byWd_;
};

} // namespace

std::unique_ptr<FolderChanges> makeFolderChanges() {
    return std::make_unique<InotifyFolderChanges>();
}

} // namespace pl::platform
