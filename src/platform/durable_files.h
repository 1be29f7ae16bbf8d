#pragma once
// Putting a finished file in place so that nobody ever sees half of it and no other writer's file
// is ever replaced by it.

#include <string>

namespace pl::platform {

// Forces the file's content to the disk. False when that fails: a full disk or a failing device
// may show only here, after every write seemed to succeed.
bool syncFile(const std::string& path);

// Forces the folder's entries to the disk, so that a rename into it survives a crash.
void syncFolder(const std::string& folder);

// Whether the file is marked read-only (nobody may write to it), or this process may not write
// to it. Such a file is never replaced.
bool isReadOnly(const std::string& path);

enum class Placed {
    Done,  // `from` now has the name `to`
    Taken, // `to` exists (it may have appeared a moment ago); nothing changed
    Failed // anything else; nothing changed
};

// Gives `from` the name `to` in one step, only when `to` does not exist: there is no moment in
// which one replaces the other, whoever else writes to the folder.
Placed placeWithoutReplacing(const std::string& from, const std::string& to);

} // namespace pl::platform
