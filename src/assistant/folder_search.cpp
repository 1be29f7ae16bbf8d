#include "assistant/folder_search.h"

#include "platform/paths.h"

namespace pl::assistant {

// Why a remembered answer always equals a fresh search: the answer of a search depends only on
// the folder's list of entries (their names, kinds and owners). The stamp is taken
// before the folder is read, so the read sees the folder as it was at the stamp or later. Any
// change of the entry list after the stamp (including one that raced with the read) makes
// changedSince true, and the folder is read again. So while changedSince is false, the list is
// the one the remembered read saw, and the search would answer the same.
//
// A remembered "no match" survives changes of entries whose names do not match the pattern: an
// entry that matches can only appear by being created or renamed under its own name, which
// changedFor reports, as it reports a change of owner or kind (a matching entry's attributes).
// Other users' jobs arriving in a shared folder thus cost nothing. A remembered match is re-read
// on any change: a new entry may come before it.
//
// One thing escapes this: a symbolic link counts by what it points to, and a change of its target
// elsewhere is no change of this folder. Spool folders hold the printer's files, not links.
//
// When no stamp can be had, nothing is remembered and the folder is read every time; nor is the
// answer of a read that failed (the folder could not be opened or a read broke off), which says
// nothing about what the folder holds.

std::pair<std::string, std::string> splitSearchPath(std::string_view searchPath) {
    const auto cut = searchPath.rfind(platform::PathSep);
    if (cut == std::string_view::npos)
        return {std::string(), std::string(searchPath)};
    return {std::string(searchPath.substr(0, cut + 1)), std::string(searchPath.substr(cut + 1))};
}

FolderSearch::FolderSearch(const platform::FileSystem& files, platform::FolderChanges* changes)
    : files_(files), changes_(changes) {}

std::string FolderSearch::freshFirstMatch(const std::string& folder, const std::string& pattern,
                                          platform::Entries entries, bool* complete) {
    ++scans_;
    auto hit = entries == platform::Entries::Files ? files_.searchFirst(folder, pattern)
                                                   : files_.searchFirstOf(folder, pattern, entries);
    if (complete)
        *complete = hit.complete;
    return hit.entry ? hit.entry->name : std::string();
}

std::string FolderSearch::firstMatch(const std::string& folder, const std::string& pattern, platform::Entries entries) {
    if (!changes_)
        return freshFirstMatch(folder, pattern, entries);

    std::string key;
    key.reserve(2 + folder.size() + pattern.size());
    key.push_back(static_cast<char>('0' + static_cast<int>(entries)));
    key.append(folder).push_back('\0');
    key.append(pattern);

    auto it = remembered_.find(key);
    if (it != remembered_.end()) {
        Remembered& r = it->second;
        const bool changed =
            r.name.empty() ? changes_->changedFor(
                                 r.stamp, [&](std::string_view name) { return platform::wildcardMatch(pattern, name); })
                           : changes_->changedSince(r.stamp);
        if (!changed)
            return r.name;
    }

    const auto stamp = changes_->stamp(folder); // before the read, never after
    bool complete = false;
    std::string name = freshFirstMatch(folder, pattern, entries, &complete);
    if (stamp && complete) {
        if (it != remembered_.end())
            it->second = Remembered{*stamp, name};
        else
            remembered_.emplace(std::move(key), Remembered{*stamp, name});
    } else if (it != remembered_.end()) {
        remembered_.erase(it);
    }
    return name;
}

} // namespace pl::assistant
