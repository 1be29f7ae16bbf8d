// Folder change notifications with FindFirstChangeNotification.
//
// Why an answer "unchanged" can be trusted: on a local volume the file system signals a change
// notification inside the operation that changes the folder (create, delete, rename of an entry),
// before that operation returns to whoever made it, so once a change has completed in any process
// the notification is already signalled. Changes to the folder's own identity (the folder, or a
// folder above it, renamed or deleted, another folder put at its path) are caught by comparing the
// folder's volume and file index on every question. Folders on other machines' shares report only
// what this machine changed there, so they are never watched.
//
// Not every implementation keeps that promise for deletions (under Wine their notification may come
// a moment after the entry has gone), so every question also compares the folder's last-write time,
// which the deletion itself sets.
//
// The notifications do not name the entries, so a question narrowed to some names is answered as
// one about any entry.

#include "platform/folder_changes.h"

#include <windows.h>

#include <string>
#include <unordered_map>
#include <vector>

namespace pl::platform {
namespace {

struct Identity {
    DWORD volume = 0;
    DWORD indexHigh = 0;
    DWORD indexLow = 0;
    bool operator==(const Identity&) const = default;
};

std::optional<Identity> folderIdentity(const std::string& path) {
    HANDLE folder = CreateFileA(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (folder == INVALID_HANDLE_VALUE)
        return std::nullopt;
    BY_HANDLE_FILE_INFORMATION info{};
    const bool ok = GetFileInformationByHandle(folder, &info) && (info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY);
    CloseHandle(folder);
    if (!ok)
        return std::nullopt;
    return Identity{info.dwVolumeSerialNumber, info.nFileIndexHigh, info.nFileIndexLow};
}

// Volumes whose changes all pass through this machine and are therefore all reported.
bool reportsAllChanges(const std::string& path) {
    char volume[MAX_PATH + 1] = {};
    if (!GetVolumePathNameA(path.c_str(), volume, sizeof volume))
        return false;
    const UINT type = GetDriveTypeA(volume);
    return type == DRIVE_FIXED || type == DRIVE_RAMDISK || type == DRIVE_REMOVABLE;
}

class NotifiedFolderChanges final : public FolderChanges {
public:
    NotifiedFolderChanges() = default;
    ~NotifiedFolderChanges() override {
        for (Watch& w : watches_)
            close(w);
    }
    NotifiedFolderChanges(const NotifiedFolderChanges&) = delete;
    NotifiedFolderChanges& operator=(const NotifiedFolderChanges&) = delete;

    std::optional<FolderStamp> stamp(std::string_view folder) override {
        const std::string path(folder);
        if (auto it = byPath_.find(path); it != byPath_.end()) {
            Watch& w = watches_[it->second];
            if (w.alive && folderIdentity(path) == w.identity) {
                collect(w);
                if (w.alive)
                    return FolderStamp{it->second + 1, w.generation};
            }
            close(w); // the path names another folder now, or the watch is gone
            byPath_.erase(it);
        }
        return addWatch(path);
    }

    bool changedSince(const FolderStamp& stamp) override {
        const Watch* w = current(stamp);
        return !w || w->generation != stamp.generation;
    }

    bool changedFor(FolderStamp& stamp, const std::function<bool(std::string_view)>&) override {
        return changedSince(stamp);
    }

private:
    struct Watch {
        std::string path;
        HANDLE change = INVALID_HANDLE_VALUE;
        Identity identity;
        std::uint64_t generation = 0; // one per signal or new last-write time seen
        bool alive = false;
        FILETIME lastWrite{};
    };

    static FILETIME lastWriteOf(const std::string& path) {
        WIN32_FILE_ATTRIBUTE_DATA data{};
        if (!GetFileAttributesExA(path.c_str(), GetFileExInfoStandard, &data))
            return FILETIME{};
        return data.ftLastWriteTime;
    }

    static void close(Watch& w) {
        if (w.change != INVALID_HANDLE_VALUE)
            FindCloseChangeNotification(w.change);
        w.change = INVALID_HANDLE_VALUE;
        w.alive = false;
    }

    // Counts a signalled notification and arms it again; changes in between are kept by the
    // system and signal at once.
    static void collect(Watch& w) {
        if (!w.alive)
            return;
        const FILETIME lastWrite = lastWriteOf(w.path);
        if (CompareFileTime(&lastWrite, &w.lastWrite) != 0) {
            w.lastWrite = lastWrite;
            ++w.generation;
        }
        if (WaitForSingleObject(w.change, 0) != WAIT_OBJECT_0)
            return;
        ++w.generation;
        if (!FindNextChangeNotification(w.change))
            close(w);
    }

    Watch* current(const FolderStamp& stamp) {
        if (stamp.watch == 0 || stamp.watch > watches_.size())
            return nullptr;
        Watch& w = watches_[stamp.watch - 1];
        collect(w);
        if (!w.alive || folderIdentity(w.path) != w.identity)
            return nullptr;
        return &w;
    }

    std::optional<FolderStamp> addWatch(const std::string& path) {
        const auto before = folderIdentity(path);
        if (!before || !reportsAllChanges(path))
            return std::nullopt;
        HANDLE change = FindFirstChangeNotificationA(path.c_str(), FALSE,
                                                     FILE_NOTIFY_CHANGE_FILE_NAME | FILE_NOTIFY_CHANGE_DIR_NAME);
        if (change == INVALID_HANDLE_VALUE)
            return std::nullopt;
        // The notification follows whatever the path named when it was set up; if the path was
        // switched to another folder meanwhile, we cannot tell which one is watched.
        if (folderIdentity(path) != before) {
            FindCloseChangeNotification(change);
            return std::nullopt;
        }
        watches_.push_back(Watch{path, change, *before, 0, true, lastWriteOf(path)});
        const std::size_t index = watches_.size() - 1;
        byPath_[path] = index;
        return FolderStamp{index + 1, 0};
    }

    std::vector<Watch> watches_; // index + 1 is the stamp's watch number
    std::unordered_map<std::string, std::size_t> byPath_;
};

} // namespace

std::unique_ptr<FolderChanges> makeFolderChanges() {
    return std::make_unique<NotifiedFolderChanges>();
}

} // namespace pl::platform
