#pragma once
// Whether the entries of a folder may have changed since a given moment, so that a directory search
// can be answered from its last result instead of reading the folder again. The assistant looks
// into the same few spool folders every second; on a terminal server the machine spool folder holds
// the jobs of every user, and reading it on every tick of every user's assistant is the program's
// largest idle cost. Implemented with the system's change notifications (inotify on Linux,
// FindFirstChangeNotification on Windows).

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>

namespace pl::platform {

// A moment in the life of one watched folder.
struct FolderStamp {
    std::uint64_t watch = 0;      // which watch (never reused)
    std::uint64_t generation = 0; // how many changes that watch had seen when the stamp was taken
};

class FolderChanges {
public:
    virtual ~FolderChanges() = default;

    // Watches `folder` (the first call sets the watch up, later calls reuse it) and returns a stamp
    // for now: every change of the folder's entries that completes after this call has returned
    // makes changedSince(stamp) true. Take the stamp BEFORE reading the folder, so that nothing
    // that happens while it is read can go unnoticed. Nothing when the folder cannot be watched
    // (missing, not a folder, on a file system whose changes the system cannot report, no watches
    // left): the caller must then read the folder every time.
    virtual std::optional<FolderStamp> stamp(std::string_view folder) = 0;

    // False only when, since `stamp` was taken, no entry of the folder was created, deleted or
    // renamed, the folder itself was not deleted, moved, replaced or changed in its attributes, and
    // no notification was lost. True in every other case, and for a stamp this object never gave.
    virtual bool changedSince(const FolderStamp& stamp) = 0;

    // The same question, narrowed to entries whose names `matters` accepts: true when, since
    // `stamp`, an entry of such a name was created, deleted or renamed (from or to such a name),
    // the folder itself changed, or notifications were lost. Changes of other entries do not
    // count. When nothing counted, `stamp` is moved on to now, so that the next question starts
    // from here. A system whose notifications do not name the entries answers as changedSince.
    virtual bool changedFor(FolderStamp& stamp, const std::function<bool(std::string_view name)>& matters) = 0;
};

// The operating system's implementation.
std::unique_ptr<FolderChanges> makeFolderChanges();

} // namespace pl::platform
