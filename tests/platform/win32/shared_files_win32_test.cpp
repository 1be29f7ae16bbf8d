// What the converter relies on when it writes into folders that other jobs and runs share: results
// placed only under free names, read-only outputs told apart, only plain files read, leftovers of
// killed runs removed, and a helper program followed and stopped while it runs.

#include "platform/child_process.h"
#include "platform/durable_files.h"
#include "platform/plain_file.h"
#include "platform/run_marks.h"
#include "support/scoped_env.h"
#include "support/temp_dir.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

namespace pl::platform {
namespace {

using namespace std::chrono_literals;
using test::TempDir;

TEST(shared_files_win32, a_result_takes_only_a_free_name) {
    TempDir dir;
    const std::string result = dir.write("result.tmp", "new");
    dir.write("taken.pdf", "old");

    EXPECT_EQ(placeWithoutReplacing(result, dir.folder() + "taken.pdf"), Placed::Taken);
    EXPECT_EQ(placeWithoutReplacing(result, dir.folder() + "TAKEN.PDF"), Placed::Taken) << "names match in any case";
    EXPECT_EQ(dir.read("taken.pdf"), "old");
    EXPECT_EQ(dir.read("result.tmp"), "new");

    EXPECT_EQ(placeWithoutReplacing(result, dir.folder() + "free.pdf"), Placed::Done);
    EXPECT_EQ(dir.read("free.pdf"), "new");
    EXPECT_FALSE(dir.exists("result.tmp"));
    EXPECT_EQ(placeWithoutReplacing(result, dir.folder() + "other.pdf"), Placed::Failed) << "nothing to place";
    EXPECT_FALSE(dir.exists("other.pdf"));

    EXPECT_TRUE(syncFile(dir.folder() + "free.pdf"));
    EXPECT_FALSE(syncFile(dir.folder() + "missing.pdf"));
}

TEST(shared_files_win32, only_files_marked_read_only_count_as_read_only) {
    TempDir dir;
    const std::string writable = dir.write("writable.pdf", "x");
    const std::string marked = dir.write("marked.pdf", "x");
    ASSERT_TRUE(SetFileAttributesA(marked.c_str(), FILE_ATTRIBUTE_READONLY));
    EXPECT_TRUE(isReadOnly(marked));
    EXPECT_FALSE(isReadOnly(writable));
    EXPECT_FALSE(isReadOnly(dir.folder() + "missing.pdf"));
    SetFileAttributesA(marked.c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST(shared_files_win32, only_plain_files_are_read) {
    TempDir dir;
    const std::string job = dir.write("job.ps", "%!PS-Adobe\n");
    std::filesystem::create_directory(dir.path() / "folder.ps");

    PlainFileReader reader(job);
    ASSERT_TRUE(reader.isOpen());
    char buffer[64];
    EXPECT_EQ(reader.read(buffer, sizeof buffer), std::optional<std::size_t>(11));
    EXPECT_EQ(std::string(buffer, 11), "%!PS-Adobe\n");
    EXPECT_EQ(reader.read(buffer, sizeof buffer), std::optional<std::size_t>(0)) << "the end";

    for (const std::string& refused : {dir.folder() + "folder.ps", dir.folder() + "missing.ps", std::string("NUL")})
        EXPECT_FALSE(PlainFileReader(refused).isOpen()) << refused;
}

// The id of a process that has ended.
unsigned long endedProcessId() {
    char line[] = "cmd.exe /c exit 0";
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION info{};
    if (!CreateProcessA(nullptr, line, nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr, nullptr, &startup, &info))
        return 0;
    WaitForSingleObject(info.hProcess, 10000);
    CloseHandle(info.hThread);
    CloseHandle(info.hProcess);
    return info.dwProcessId;
}

TEST(shared_files_win32, only_the_private_folders_of_ended_runs_on_this_machine_are_removed) {
    TempDir dir;
    test::ScopedEnv env("TMP", dir.folder());
    env.set("TEMP", dir.folder());
    const std::string ownTag = currentRunTag();
    const std::string machine = ownTag.substr(ownTag.find('-') + 1);
    const unsigned long ended = endedProcessId();
    ASSERT_NE(ended, 0u);

    const auto created = createPrivateTempFolder("paperlark-");
    ASSERT_TRUE(created);
    const std::string name = std::filesystem::path(*created).filename().string();
    ASSERT_EQ(name.rfind("paperlark-" + ownTag + "-", 0), 0u) << name;
    EXPECT_EQ(name.size(), std::string("paperlark-").size() + ownTag.size() + 7) << name;

    const std::string stale = "paperlark-" + std::to_string(ended) + "-" + machine + "-0a1b2c";
    const std::string kept[] = {
        "paperlark-" + std::to_string(ended) + "-ELSEWHERE-0a1b2c", // another machine may still use it
        "paperlark-" + ownTag + "-0a1b2c",                          // this run's
        "paperlark-x" + std::to_string(ended) + "-" + machine + "-0a1b2c",
        "other-" + std::to_string(ended) + "-" + machine + "-0a1b2c",
    };
    std::filesystem::create_directory(dir.path() / stale);
    dir.write(stale + "\\gs_temp", "x");
    for (const auto& folder : kept)
        std::filesystem::create_directory(dir.path() / folder);

    removeStalePrivateTempFolders("paperlark-");
    EXPECT_FALSE(dir.exists(stale));
    for (const auto& folder : kept)
        EXPECT_TRUE(dir.exists(folder)) << folder;
    EXPECT_TRUE(std::filesystem::is_directory(*created));
}

TEST(shared_files_win32, a_watched_program_is_heard_while_it_runs_and_ends_when_asked) {
    std::string heard;
    ChildWatch listen{[&](std::string_view piece) { heard += piece; }, [] { return false; }};
    const ChildResult echoed = runAndWait({"cmd.exe", "/c", "echo Page 1"}, 30s, {}, &listen);
    ASSERT_TRUE(echoed.started) << echoed.startError;
    EXPECT_EQ(echoed.exitCode, 0);
    EXPECT_FALSE(echoed.stopped);
    EXPECT_EQ(heard, "Page 1\r\n");
    EXPECT_EQ(echoed.output, heard);

    int asked = 0;
    ChildWatch stop{nullptr, [&] { return ++asked == 3; }};
    const auto start = std::chrono::steady_clock::now();
    const ChildResult stopped = runAndWait({WIN32_TEST_HELPER, "sleep", "30000"}, 60s, {}, &stop);
    EXPECT_TRUE(stopped.started);
    EXPECT_TRUE(stopped.stopped);
    EXPECT_FALSE(stopped.timedOut);
    EXPECT_EQ(stopped.exitCode, -1);
    EXPECT_EQ(asked, 3);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 10s);
}

} // namespace
} // namespace pl::platform
