#include "platform/posix/posix_services.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;
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

std::vector<std::string> namesOf(const std::vector<pl::platform::DirEntry>& entries) {
    std::vector<std::string> names;
    for (const auto& e : entries)
        names.push_back(e.name);
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
    EXPECT_EQ(namesOf(files.findAll(dir.folder(), "smith*.ps")), expected);
    const auto first = files.findFirst(dir.folder(), "smith*.ps");
    ASSERT_TRUE(first.has_value());
    EXPECT_EQ(first->name, expected.front());
    EXPECT_FALSE(first->isFolder);
    // The same through the folder's name in another case, without the trailing separator.
    std::string shouted = dir.path().filename().string();
    std::transform(shouted.begin(), shouted.end(), shouted.begin(), ::toupper);
    const auto viaOtherCase = files.findFirst((dir.path().parent_path() / shouted).string(), "SMITH*.PS");
    ASSERT_TRUE(viaOtherCase.has_value());
    EXPECT_EQ(viaOtherCase->name, expected.front());
}

TEST(file_system, folders_are_found_only_when_asked_for_and_dot_entries_never) {
    TempDir dir;
    fs::create_directory(dir.path() / "Profiles");
    dir.write("a.plp", "");
    PosixFileSystem files;
    const auto withFolders = files.findAll(dir.folder(), "*.*", true);
    ASSERT_EQ(withFolders.size(), 2u);
    for (const auto& e : withFolders) {
        EXPECT_NE(e.name, ".");
        EXPECT_NE(e.name, "..");
        EXPECT_EQ(e.isFolder, e.name == "Profiles");
    }
    EXPECT_EQ(namesOf(files.findAll(dir.folder(), "*")), std::vector<std::string>{"a.plp"});
    EXPECT_FALSE(files.findFirst(dir.folder(), "*.ps").has_value());
    EXPECT_FALSE(files.findFirst(dir.folder() + "missing/", "*").has_value());
}

TEST(file_system, resolve_case_finds_the_spelling_on_disk) {
    TempDir dir;
    const std::string profile = dir.write("Profiles/Standard.PLP", "-sDEVICE=pdfwrite");
    PosixFileSystem files;
    EXPECT_EQ(files.resolveCase(dir.folder() + "profiles/standard.plp"), profile);
    EXPECT_EQ(files.resolveCase(dir.folder() + "Profiles/STANDARD.plp"), profile);
    EXPECT_EQ(files.resolveCase(dir.folder() + "PROFILES/"), dir.folder() + "Profiles/");
    EXPECT_EQ(files.resolveCase(profile), profile);
    // Nothing to find: the path comes back as it was given.
    const std::string missing = dir.folder() + "profiles/other.plp";
    EXPECT_EQ(files.resolveCase(missing), missing);
    EXPECT_TRUE(files.exists(dir.folder() + "PROFILES/standard.plp"));
    EXPECT_FALSE(files.exists(missing));
}

TEST(file_system, resolve_case_prefers_the_exact_name) {
    TempDir dir;
    const std::string upper = dir.write("JOB.ps", "upper");
    const std::string lower = dir.write("job.ps", "lower");
    PosixFileSystem files;
    EXPECT_EQ(files.resolveCase(upper), upper);
    EXPECT_EQ(files.resolveCase(lower), lower);
    const std::string other = files.resolveCase(dir.folder() + "Job.PS");
    EXPECT_TRUE(other == upper || other == lower) << other;
}

TEST(file_system, size_modification_time_and_kind) {
    TempDir dir;
    const std::string job = dir.write("Job.ps", std::string(1234, 'x'));
    const auto when = fs::file_time_type::clock::now() - std::chrono::hours(80);
    fs::last_write_time(job, when);
    PosixFileSystem files;
    EXPECT_EQ(files.size(dir.folder() + "job.PS"), 1234u);
    const auto modified = files.modified(job);
    ASSERT_TRUE(modified.has_value());
    const auto age = std::chrono::system_clock::now() - *modified;
    EXPECT_GT(age, std::chrono::hours(79));
    EXPECT_LT(age, std::chrono::hours(81));
    EXPECT_FALSE(files.isFolder(job));
    EXPECT_TRUE(files.isFolder(dir.path().string()));
    EXPECT_FALSE(files.size(dir.folder() + "missing").has_value());
    EXPECT_FALSE(files.modified(dir.folder() + "missing").has_value());
}

TEST(file_system, rename_never_replaces_an_existing_file) {
    TempDir dir;
    const std::string job = dir.write("job.ps", "job");
    const std::string taken = dir.write("~smith7.ps", "older job");
    PosixFileSystem files;
    EXPECT_FALSE(files.rename(job, taken));
    EXPECT_FALSE(files.rename(job, dir.folder() + "~SMITH7.PS")); // taken, as far as Windows is concerned
    EXPECT_EQ(dir.read("job.ps"), "job");
    EXPECT_EQ(dir.read("~smith7.ps"), "older job");
    EXPECT_FALSE(files.rename(dir.folder() + "missing.ps", dir.folder() + "new.ps"));
    EXPECT_FALSE(dir.exists("new.ps"));
}

TEST(file_system, rename_moves_across_folders_and_changes_case) {
    TempDir dir;
    const std::string job = dir.write("spool/Job.ps", "content");
    fs::create_directory(dir.path() / "Queue");
    PosixFileSystem files;
    ASSERT_TRUE(files.rename(dir.folder() + "spool/job.ps", dir.folder() + "queue/~smith1.ps"));
    EXPECT_FALSE(dir.exists("spool/Job.ps"));
    EXPECT_EQ(dir.read("Queue/~smith1.ps"), "content");
    ASSERT_TRUE(files.rename(dir.folder() + "Queue/~smith1.ps", dir.folder() + "Queue/~SMITH1.PS"));
    EXPECT_EQ(directoryOrder(dir.path() / "Queue"), std::vector<std::string>{"~SMITH1.PS"});
    EXPECT_FALSE(files.rename(dir.folder() + "Queue/~SMITH1.PS", dir.folder() + "nowhere/x.ps"));
}

TEST(file_system, rename_moves_a_file_to_another_file_system) {
    TempDir dir;
    std::error_code ec;
    const fs::path shm = "/dev/shm";
    struct stat a {
    }, b{};
    if (::stat(dir.path().c_str(), &a) != 0 || ::stat(shm.c_str(), &b) != 0 || a.st_dev == b.st_dev)
        GTEST_SKIP() << "no second file system to move to";
    const fs::path other = shm / ("paperlark-test-" + std::to_string(::getpid()));
    fs::create_directory(other);

    const std::string job = dir.write("job.ps", "moved across");
    ::chmod(job.c_str(), 0640);
    const auto when = fs::file_time_type::clock::now() - std::chrono::hours(5);
    fs::last_write_time(job, when);
    dir.write("taken.ps", "stays");
    PosixFileSystem files;
    const std::string target = (other / "job.ps").string();
    const bool moved = files.rename(job, target);
    const bool refused = !files.rename(dir.folder() + "taken.ps", target);

    std::string content;
    if (fs::exists(target)) {
        std::ifstream in(target);
        std::getline(in, content);
    }
    const auto perms = fs::status(target, ec).permissions();
    const auto movedTime = fs::last_write_time(target, ec);
    fs::remove_all(other, ec);

    EXPECT_TRUE(moved);
    EXPECT_FALSE(dir.exists("job.ps"));
    EXPECT_EQ(content, "moved across");
    EXPECT_EQ(perms & fs::perms::all, fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    EXPECT_EQ(movedTime, when);
    EXPECT_TRUE(refused);
    EXPECT_EQ(dir.read("taken.ps"), "stays");
}

TEST(file_system, create_folder_makes_parents_and_reuses_other_spellings) {
    TempDir dir;
    fs::create_directory(dir.path() / "Paperlark");
    PosixFileSystem files;
    EXPECT_TRUE(files.createFolder(dir.folder() + "paperlark/Profiles/Ärger/"));
    EXPECT_TRUE(fs::is_directory(dir.path() / "Paperlark/Profiles/Ärger"));
    EXPECT_FALSE(fs::exists(dir.path() / "paperlark"));
    EXPECT_TRUE(files.createFolder(dir.folder() + "Paperlark/Profiles"));
    dir.write("file", "");
    EXPECT_FALSE(files.createFolder(dir.folder() + "file/sub"));
}

TEST(file_system, files_and_empty_folders_are_removed_each_by_their_own_call) {
    TempDir dir;
    dir.write("Job.ps", "x");
    dir.write("full/x", "");
    fs::create_directory(dir.path() / "Empty");
    PosixFileSystem files;
    EXPECT_TRUE(files.remove(dir.folder() + "job.ps"));
    EXPECT_FALSE(dir.exists("Job.ps"));
    EXPECT_FALSE(files.remove(dir.folder() + "job.ps"));
    EXPECT_FALSE(files.remove(dir.folder() + "empty"));
    EXPECT_FALSE(files.removeFolder(dir.folder() + "full"));
    EXPECT_TRUE(dir.exists("full/x"));
    EXPECT_TRUE(files.removeFolder(dir.folder() + "empty"));
    EXPECT_FALSE(dir.exists("Empty"));
}
