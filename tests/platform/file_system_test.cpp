#include "platform/posix/posix_services.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;
using pl::platform::wildcardMatch;
using pl::platform::posix::PosixFileSystem;
using pl::test::TempDir;

namespace {

// The names of `folder` in the order the directory itself hands them out.
std::vector<std::string> directoryOrder(const fs::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    return names;
}

std::vector<std::string> names(const std::vector<pl::platform::DirEntry>& entries) {
    std::vector<std::string> out;
    for (const auto& e : entries)
        out.push_back(e.name);
    return out;
}

} // namespace

TEST(file_system, search_lists_matches_in_ntfs_name_order_whatever_the_directory_order) {
    TempDir dir;
    // Created in reverse: a file system that keeps creation order would hand them out backwards.
    for (const char* name : {"smith_9.ps", "Smith4.Ps", "smithB.ps", "SMITH2.PS", "smith10.ps", "smith1.ps", "jones.ps",
                             "smith3.ps.sort", "~smith5.ps"})
        dir.write(name, "%!PS\n");
    fs::create_directory(dir.path() / "smith.ps");
    PosixFileSystem files;
    // Upper-cased code units compared: digits, then letters, then "_" (above "Z").
    const std::vector<std::string> expected{"smith1.ps", "smith10.ps", "SMITH2.PS",
                                            "Smith4.Ps", "smithB.ps",  "smith_9.ps"};
    EXPECT_EQ(names(files.findAll(dir.folder(), "smith*.ps")), expected);
    const auto first = files.findFirst(dir.folder(), "SMITH*.PS");
    ASSERT_TRUE(first.has_value());
    EXPECT_EQ(first->name, "smith1.ps");
    EXPECT_FALSE(first->isFolder);
    // Folders are found only when asked for.
    EXPECT_EQ(files.findAll(dir.folder(), "smith.ps", true).size(), 1u);
    EXPECT_FALSE(files.findFirst(dir.folder() + "missing/", "*").has_value());
}

TEST(file_system, own_file_searches_see_only_plain_files_of_this_user) {
    using pl::platform::Entries;
    TempDir dir;
    dir.write("ann9.ps", "own job, last in name order");
    ASSERT_EQ(::mkfifo((dir.folder() + "ann1.ps").c_str(), 0600), 0);
    fs::create_symlink(dir.path() / "ann9.ps", dir.path() / "ann2.ps");
    fs::create_directory(dir.path() / "ann3.ps");
    const bool root = ::geteuid() == 0;
    if (root) {
        dir.write("ann0.ps", "planted by somebody else");
        ASSERT_EQ(::chown((dir.folder() + "ann0.ps").c_str(), 65534, 65534), 0);
    }
    PosixFileSystem files;
    EXPECT_EQ(files.searchFirstOf(dir.folder(), "ann*.ps", Entries::OwnRegularFiles).entry->name, "ann9.ps");
    EXPECT_EQ(names(files.findAllOf(dir.folder(), "ann*.ps", Entries::OwnRegularFiles)),
              std::vector<std::string>{"ann9.ps"});
    const std::vector<std::string> regular =
        root ? std::vector<std::string>{"ann0.ps", "ann9.ps"} : std::vector<std::string>{"ann9.ps"};
    EXPECT_EQ(names(files.findAllOf(dir.folder(), "ann*.ps", Entries::RegularFiles)), regular);
    // The plain search still lists every kind but folders.
    EXPECT_EQ(files.findAll(dir.folder(), "ann*.ps").size(), root ? 4u : 3u);
    if (!root)
        GTEST_SKIP() << "files of another owner need root to be made";

    // Taking over somebody else's file makes it this user's own.
    fs::create_directory(dir.path() / "own");
    ASSERT_TRUE(files.moveToOwn(dir.folder() + "ann0.ps", dir.folder() + "own/bob0.ps"));
    EXPECT_FALSE(dir.exists("ann0.ps"));
    EXPECT_EQ(dir.read("own/bob0.ps"), "planted by somebody else");
    EXPECT_EQ(names(files.findAllOf(dir.folder() + "own/", "bob*.ps", Entries::OwnRegularFiles)),
              std::vector<std::string>{"bob0.ps"});
    EXPECT_FALSE(files.moveToOwn(dir.folder() + "ann1.ps", dir.folder() + "own/bob1.ps")) << "a pipe is no job";
    EXPECT_FALSE(files.moveToOwn(dir.folder() + "ann2.ps", dir.folder() + "own/bob2.ps")) << "nor is a link";
}

TEST(file_system, resolve_case_finds_the_spelling_on_disk_and_prefers_the_exact_name) {
    TempDir dir;
    const std::string profile = dir.write("Profiles/Standard.PLP", "-sDEVICE=pdfwrite");
    const std::string upper = dir.write("JOB.ps", "upper");
    const std::string lower = dir.write("job.ps", "lower");
    PosixFileSystem files;
    EXPECT_EQ(files.resolveCase(dir.folder() + "profiles/standard.plp"), profile);
    EXPECT_EQ(files.resolveCase(dir.folder() + "PROFILES/"), dir.folder() + "Profiles/");
    EXPECT_EQ(files.resolveCase(upper), upper);
    EXPECT_EQ(files.resolveCase(lower), lower);
    // Nothing to find: the path comes back as it was given.
    const std::string missing = dir.folder() + "profiles/other.plp";
    EXPECT_EQ(files.resolveCase(missing), missing);
}

TEST(file_system, rename_moves_across_folders_but_never_replaces_an_existing_file) {
    TempDir dir;
    dir.write("spool/Job.ps", "content");
    dir.write("Queue/~smith7.ps", "older job");
    PosixFileSystem files;
    EXPECT_FALSE(files.rename(dir.folder() + "spool/job.ps", dir.folder() + "queue/~smith7.ps"));
    EXPECT_FALSE(files.rename(dir.folder() + "spool/job.ps", dir.folder() + "Queue/~SMITH7.PS"));
    EXPECT_EQ(dir.read("spool/Job.ps"), "content");
    EXPECT_EQ(dir.read("Queue/~smith7.ps"), "older job");

    ASSERT_TRUE(files.rename(dir.folder() + "spool/job.ps", dir.folder() + "queue/~smith1.ps"));
    EXPECT_FALSE(dir.exists("spool/Job.ps"));
    EXPECT_EQ(dir.read("Queue/~smith1.ps"), "content");
    // A change of case alone is a rename, not a clash.
    ASSERT_TRUE(files.rename(dir.folder() + "Queue/~smith1.ps", dir.folder() + "Queue/~SMITH1.PS"));
    const auto queue = directoryOrder(dir.path() / "Queue");
    EXPECT_EQ(std::set<std::string>(queue.begin(), queue.end()), (std::set<std::string>{"~SMITH1.PS", "~smith7.ps"}));
    EXPECT_FALSE(files.rename(dir.folder() + "missing.ps", dir.folder() + "new.ps"));
    EXPECT_FALSE(files.rename(dir.folder() + "Queue/~SMITH1.PS", dir.folder() + "nowhere/x.ps"));
}

TEST(wildcard, matches_names_by_the_windows_rules) {
    struct Case {
        const char* pattern;
        const char* name;
        bool matches;
    };
    const Case cases[] = {
        // "*.*" matches every name, with or without a dot.
        {"*.*", "README", true},
        {"*.*", ".hidden", true},
        // "*" matches any run of characters, dots included.
        {"*.ps", "a.b.ps", true},
        {"*.ps", "job.ps.sort", false},
        {"smith*.ps", "smith.ps", true},
        {"smith*.ps", "xsmith.ps", false},
        {"a*b*c", "aXXbYY", false},
        // A star before a dot cannot swallow the last dot.
        {"*.", "noext", true},
        {"*.", "has.ext", false},
        {"name.*", "name", true},
        // "?" is one character, or nothing at a dot or the end.
        {"a?c", "ac", false},
        {"??.txt", "a.txt", true},
        {"??.txt", "abc.txt", false},
        {"job?", "job", true},
        // Letters match without regard to case, umlauts included.
        {"SMITH*.ps", "Smith_1.PS", true},
        {"müller*.ps", "MÜLLER 1.ps", true},
        {"straße.ps", "STRASSE.ps", false},
        {"é?", "Éa", true},
    };
    for (const Case& c : cases)
        EXPECT_EQ(wildcardMatch(c.pattern, c.name), c.matches) << "pattern " << c.pattern << " name " << c.name;
    // Patterns with many stars stay fast.
    EXPECT_FALSE(wildcardMatch("*a*a*a*a*a*a*a*a*a*a*a*a*b", std::string(3000, 'a')));
}
