#include "platform/posix/posix_services.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>

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

} // namespace

TEST(file_system, search_gives_matches_in_directory_order_ignoring_case) {
    TempDir dir;
    for (const char* name : {"smith1.ps", "SMITH2.PS", "jones.ps", "smith3.ps.sort", "Smith4.Ps", "~smith5.ps"})
        dir.write(name, "%!PS\n");
    fs::create_directory(dir.path() / "smith.ps");
    const std::set<std::string> matching{"smith1.ps", "SMITH2.PS", "Smith4.Ps"};
    std::vector<std::string> expected;
    for (const auto& name : directoryOrder(dir.path()))
        if (matching.count(name))
            expected.push_back(name);

    PosixFileSystem files;
    std::vector<std::string> found;
    for (const auto& e : files.findAll(dir.folder(), "smith*.ps"))
        found.push_back(e.name);
    EXPECT_EQ(found, expected);
    const auto first = files.findFirst(dir.folder(), "SMITH*.PS");
    ASSERT_TRUE(first.has_value());
    EXPECT_EQ(first->name, expected.front());
    EXPECT_FALSE(first->isFolder);
    // Folders are found only when asked for.
    EXPECT_EQ(files.findAll(dir.folder(), "smith.ps", true).size(), 1u);
    EXPECT_FALSE(files.findFirst(dir.folder() + "missing/", "*").has_value());
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
