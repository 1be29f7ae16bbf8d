#pragma once
// Putting the user's MultiDoc queue in another order. The order is the files' sequence numbers
// ("MultiDocanna1.ps", "MultiDocanna2.ps", ...), so reordering renames files, and a rename can be
// interrupted at any point (the program ends, the machine goes down). It therefore runs in two
// rounds that never overwrite anything:
//
//   1. every document that changes place goes to a temporary name that carries its new number
//      ("MultiDocanna3.ps" becoming number 1 goes to "MultiDocanna1.ps.sort");
//   2. every temporary name goes to its queue name.
//
// After round 1 the new numbers are free, so round 2 cannot collide. Whatever state an
// interruption leaves, recoverInterruptedSort puts every document back into the queue: a temporary
// file whose queue name is free takes it (finishing the new order), one whose name is still held
// (round 1 was cut short) takes the lowest free number, which is one that a moved document left.
// No file is lost and the queue stays an unbroken run.

#include "base/errors.h"
#include "platform/file_system.h"

#include <string>
#include <string_view>
#include <vector>

namespace pl::dialog {

// Appended to a queue file's name while it waits for round 2.
inline constexpr std::string_view SortSuffix = ".sort";

struct QueuedDocument {
    int number = 0;    // its place in the queue, from 1
    std::string title; // the name the job dialog would propose for it
};

// The documents of the queue's unbroken run from number 1, with their proposed titles.
std::vector<QueuedDocument> readQueue(const platform::FileSystem& files, std::string_view folder, std::string_view user,
                                      ErrorSink& errors);

// Round 1 for the new order `numbers` (the current numbers, listed in their new order: {3, 1, 2}
// puts number 3 first). Every document whose number changes is renamed to its temporary name. False
// when a rename failed; the files are then as far as it got.
bool moveAsideInNewOrder(platform::FileSystem& files, std::string_view folder, std::string_view user,
                         const std::vector<int>& numbers);

// Round 2, and the recovery after an interruption at any point: every temporary queue file of
// `user` in `folder` goes back into the queue (see above). False when a file could not be renamed.
bool putSortedBack(platform::FileSystem& files, std::string_view folder, std::string_view user);

// Both rounds. On a failure the queue is put back together at once and false is returned.
bool applyQueueOrder(platform::FileSystem& files, std::string_view folder, std::string_view user,
                     const std::vector<int>& numbers);

} // namespace pl::dialog
