// Change notifications on Windows: after every kind of change of a folder's entries, and of the
// folder itself, a stamp taken before says "changed"; with no change it says "unchanged".

#include "platform/folder_changes.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>

namespace pl::platform {
namespace {

namespace fs = std::filesystem;

TEST(folder_changes_win32, every_change_of_the_entries_or_the_folder_is_seen_and_nothing_else) {
    test::TempDir dir;
    const fs::path spool = dir.path() / "spool";
    fs::create_directories(spool);
    const std::string folder = dir.folder() + "spool\\";
    auto changes = makeFolderChanges();

    const std::pair<std::string, std::function<void()>> steps[] = {
        {"created", [&] { std::ofstream(spool / "alice1.ps") << "x"; }},
        {"renamed", [&] { fs::rename(spool / "alice1.ps", spool / "~alice1.ps"); }},
        {"moved out", [&] { fs::rename(spool / "~alice1.ps", dir.path() / "elsewhere.ps"); }},
        {"moved in", [&] { fs::rename(dir.path() / "elsewhere.ps", spool / "ALICE2.PS"); }},
        {"a folder made", [&] { fs::create_directory(spool / "sub"); }},
        {"deleted", [&] { fs::remove(spool / "ALICE2.PS"); }},
    };
    for (const auto& [what, change] : steps) {
        const auto stamp = changes->stamp(folder);
        ASSERT_TRUE(stamp) << what;
        EXPECT_FALSE(changes->changedSince(*stamp)) << what << ": nothing yet";
        change();
        EXPECT_TRUE(changes->changedSince(*stamp)) << what;
    }

    // Writing into a file that exists is no change of the folder's entries.
    std::ofstream(spool / "bob1.ps") << "x";
    auto quiet = changes->stamp(folder);
    ASSERT_TRUE(quiet);
    std::ofstream(spool / "bob1.ps", std::ios::app) << "more";
    EXPECT_FALSE(changes->changedSince(*quiet));
    EXPECT_FALSE(changes->changedFor(*quiet, [](std::string_view) { return true; }));

    // The folder itself replaced by another of the same name, then removed with its job.
    const auto before = changes->stamp(folder);
    ASSERT_TRUE(before);
    fs::rename(spool, dir.path() / "old-spool");
    fs::create_directories(spool);
    EXPECT_TRUE(changes->changedSince(*before));
    std::ofstream(spool / "carol1.ps") << "x";
    const auto replaced = changes->stamp(folder);
    ASSERT_TRUE(replaced);
    EXPECT_FALSE(changes->changedSince(*replaced));
    fs::remove_all(spool);
    EXPECT_TRUE(changes->changedSince(*replaced));
    EXPECT_FALSE(changes->stamp(dir.folder() + "never")) << "a missing folder cannot be watched";
    EXPECT_TRUE(changes->changedSince(FolderStamp{99, 0})) << "a stamp never given";
}

} // namespace
} // namespace pl::platform
