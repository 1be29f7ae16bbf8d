// The remembered first-match searches: after every kind of change a search answers exactly what a
// fresh search answers, and without a change it reads no folder.

#include "assistant/folder_search.h"
#include "platform/folder_changes.h"
#include "platform/platform.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace pl::test {
namespace {

namespace fs = std::filesystem;

void touch(const fs::path& path) {
    std::ofstream(path) << "x";
}

struct Searching {
    Searching()
        : os(platform::makeNativePlatform()), changes(platform::makeFolderChanges()),
          search(os->files(), changes.get()), folder(dir.folder() + "spool/") {
        fs::create_directories(folder);
    }
    // Asks twice: the remembered answer must equal a fresh one, and asking again must read nothing.
    void expectFresh(const std::string& pattern, const std::string& what,
                     platform::Entries entries = platform::Entries::Files) {
        const auto fresh = os->files().searchFirstOf(folder, pattern, entries).entry;
        EXPECT_EQ(search.firstMatch(folder, pattern, entries), fresh ? fresh->name : "") << what;
        const auto scans = search.scans();
        EXPECT_EQ(search.firstMatch(folder, pattern, entries), fresh ? fresh->name : "") << what;
        EXPECT_EQ(search.scans(), scans) << what << ": nothing changed, nothing read";
    }

    TempDir dir;
    std::unique_ptr<platform::Platform> os;
    std::unique_ptr<platform::FolderChanges> changes;
    assistant::FolderSearch search;
    std::string folder;
};

// A read that fails (here: no file descriptor left for opening the folder) must not be remembered
// as "no job": once descriptors are free again, the waiting job is found at once.
TEST(folder_search, forgets_a_read_that_failed) {
    Searching s;
    s.expectFresh("alice*.ps", "empty folder");
    touch(s.folder + "alice1.ps");
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        rlimit saved{};
        ::getrlimit(RLIMIT_NOFILE, &saved);
        rlimit none = saved;
        none.rlim_cur = static_cast<rlim_t>(::dup(0)); // the lowest free descriptor: nothing above it may be opened
        ::close(static_cast<int>(none.rlim_cur));
        ::setrlimit(RLIMIT_NOFILE, &none);
        const bool failedRead = s.search.firstMatch(s.folder, "alice*.ps").empty();
        ::setrlimit(RLIMIT_NOFILE, &saved);
        const bool foundAfterwards = s.search.firstMatch(s.folder, "alice*.ps") == "alice1.ps";
        ::_exit(failedRead && foundAfterwards ? 0 : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0) << "the failed read was taken for an empty folder";
}

TEST(folder_search, answers_like_a_fresh_search_after_every_kind_of_change) {
    Searching s;
    touch(s.folder + "bob1.ps");
    s.expectFresh("bob*.ps", "another pattern on the same folder");
    s.expectFresh("alice*.ps", "another user's job");
    touch(s.folder + "alice1.ps");
    s.expectFresh("alice*.ps", "created");
    s.expectFresh("bob*.ps", "the other pattern stays independent");
    fs::rename(s.folder + "alice1.ps", s.folder + "~alice1.ps");
    s.expectFresh("alice*.ps", "renamed within the folder");
    fs::rename(s.folder + "~alice1.ps", s.dir.folder() + "elsewhere.ps");
    s.expectFresh("~*.*", "moved out");
    fs::rename(s.dir.folder() + "elsewhere.ps", s.folder + "ALICE2.PS");
    s.expectFresh("alice*.ps", "moved in");
    fs::create_directory(s.folder + "alice3.ps");
    s.expectFresh("alice*.ps", "a folder does not count");
    fs::remove(s.folder + "ALICE2.PS");
    s.expectFresh("alice*.ps", "deleted");
    fs::remove(s.folder + "alice3.ps");
    touch(s.folder + "alice4.ps");
    s.expectFresh("alice*.ps", "deleted and created");

    // The folder itself replaced, moved away with its parent, removed.
    fs::rename(s.folder, s.dir.folder() + "old-spool");
    fs::create_directories(s.folder);
    s.expectFresh("alice*.ps", "folder replaced by an empty one");
    touch(s.folder + "alice5.ps");
    s.expectFresh("alice*.ps", "job in the new folder");
    fs::create_directories(s.dir.folder() + "a/spool");
    touch(s.dir.folder() + "a/spool/alice6.ps");
    const std::string nested = s.dir.folder() + "a/spool/";
    EXPECT_EQ(s.search.firstMatch(nested, "alice*.ps"), "alice6.ps");
    fs::rename(s.dir.folder() + "a", s.dir.folder() + "b");
    EXPECT_EQ(s.search.firstMatch(nested, "alice*.ps"), "") << "the parent was renamed";
    fs::create_directories(s.dir.folder() + "a/spool");
    EXPECT_EQ(s.search.firstMatch(nested, "alice*.ps"), "") << "another, empty folder at the same path";
    fs::remove_all(s.folder);
    const auto scans = s.search.scans();
    EXPECT_EQ(s.search.firstMatch(s.folder, "alice*.ps"), "") << "folder gone";
    EXPECT_EQ(s.search.firstMatch(s.folder, "alice*.ps"), "");
    EXPECT_EQ(s.search.scans(), scans + 2) << "a folder that cannot be watched is read every time";
    fs::create_directories(s.folder);
    touch(s.folder + "alice7.ps");
    s.expectFresh("alice*.ps", "folder back");

    // A remembered miss is not read again for other names, but more changes than are kept may hide
    // its own among them.
    s.expectFresh("carol*.ps", "a miss");
    for (int i = 0; i < 5000; ++i)
        touch(s.folder + "dave" + std::to_string(i) + ".ps");
    const auto beforeOverflow = s.search.scans();
    s.expectFresh("carol*.ps", "more changes than are kept");
    EXPECT_EQ(s.search.scans(), beforeOverflow + 1);
    touch(s.folder + "carol1.ps");
    s.expectFresh("carol*.ps", "and then a match");

    // Searches for the user's own plain files: a change of owner or kind counts as well.
    constexpr auto own = platform::Entries::OwnRegularFiles;
    touch(s.folder + "erin1.ps");
    s.expectFresh("erin*.ps", "own file", own);
    ASSERT_EQ(::mkfifo((s.folder + "erin0.ps").c_str(), 0600), 0);
    s.expectFresh("erin*.ps", "a pipe before it", own);
    if (::geteuid() != 0)
        GTEST_SKIP() << "a change of owner needs root";
    ASSERT_EQ(::chown((s.folder + "erin1.ps").c_str(), 65534, 65534), 0);
    s.expectFresh("erin*.ps", "given away", own);
    ASSERT_EQ(::chown((s.folder + "erin1.ps").c_str(), 0, 0), 0);
    s.expectFresh("erin*.ps", "given back", own);
}

} // namespace
} // namespace pl::test
