#pragma once
// First-match directory searches for the watcher, answered from the last result while the folder
// is known not to have changed. The watcher asks the same few questions of the same few folders
// every second ("is there a job of this user?"); the answer changes only when the folder's entries
// change, and the system tells us when that may have happened.

#include "platform/file_system.h"
#include "platform/folder_changes.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace pl::assistant {

class FolderSearch {
public:
    // Without `changes` (or for a folder it cannot watch) every search reads the folder.
    FolderSearch(const platform::FileSystem& files, platform::FolderChanges* changes);

    // The name of the first entry of the kind `entries` in `folder` that matches `pattern` (as
    // FileSystem::searchFirstOf finds it), or the empty text: always what a search made now would
    // answer.
    std::string firstMatch(const std::string& folder, const std::string& pattern,
                           platform::Entries entries = platform::Entries::Files);
    // The same search, always reading the folder.
    std::string freshFirstMatch(const std::string& folder, const std::string& pattern,
                                platform::Entries entries = platform::Entries::Files, bool* complete = nullptr);

    // How many times a folder has been read.
    std::uint64_t scans() const { return scans_; }

private:
    struct Remembered {
        platform::FolderStamp stamp;
        std::string name;
    };

    const platform::FileSystem& files_;
    platform::FolderChanges* changes_;
    std::unordered_map<std::string, Remembered> remembered_; // key: kind, folder, NUL, pattern
    std::uint64_t scans_ = 0;
};

// A classic search path (folder and pattern in one text, "C:\\spool\\user*.ps") split after its last
// separator into the folder (with the separator) and the pattern, as the classic search reads it.
std::pair<std::string, std::string> splitSearchPath(std::string_view searchPath);

} // namespace pl::assistant
