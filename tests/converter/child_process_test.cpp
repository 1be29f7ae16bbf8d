#include "platform/child_process.h"

#include "support/scoped_env.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <fstream>
#include <sys/stat.h>
#include <thread>

using namespace std::chrono_literals;
using pl::platform::runAndWait;

namespace {

// Gone, or ended and only waiting for whoever adopted it to collect its exit status.
bool processEnded(pid_t pid) {
    if (::kill(pid, 0) != 0 && errno == ESRCH)
        return true;
    std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
    std::string line;
    std::getline(stat, line);
    const auto close = line.rfind(')');
    return close != std::string::npos && close + 2 < line.size() && line[close + 2] == 'Z';
}

} // namespace

TEST(child_process, reports_the_exit_code_and_everything_the_program_printed) {
    const auto result = runAndWait({"sh", "-c", "echo to-out; echo to-err >&2; exit 3"}, 10s);
    EXPECT_TRUE(result.started);
    EXPECT_FALSE(result.timedOut);
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_NE(result.output.find("to-out"), std::string::npos);
    EXPECT_NE(result.output.find("to-err"), std::string::npos);
}

TEST(child_process, a_program_that_cannot_be_started_says_why) {
    auto result = runAndWait({"/nonexistent/folder/program"}, 5s);
    EXPECT_FALSE(result.started);
    EXPECT_FALSE(result.startError.empty());
    result = runAndWait({"paperlark-test-no-such-program"}, 5s);
    EXPECT_FALSE(result.started);
}

TEST(child_process, words_reach_the_program_unchanged_and_no_shell_sees_them) {
    pl::test::TempDir dir;
    const std::string marker = dir.folder() + "touched";
    // printf prints its arguments one per line; a shell would have run the $(...) and the ;.
    const auto result =
        runAndWait({"printf", "%s\\n", "$(touch " + marker + ")", "; touch " + marker, "a  b", "\"q\""}, 10s);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "$(touch " + marker + ")\n; touch " + marker + "\na  b\n\"q\"\n");
    EXPECT_FALSE(dir.exists("touched"));
}

TEST(child_process, the_program_gets_no_input_so_it_cannot_wait_for_any) {
    const auto start = std::chrono::steady_clock::now();
    const auto result = runAndWait({"sh", "-c", "read line; echo status=$?"}, 20s);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 10s);
    EXPECT_NE(result.output.find("status=1"), std::string::npos);
}

TEST(child_process, the_time_limit_ends_the_program_and_everything_it_started) {
    const auto start = std::chrono::steady_clock::now();
    // The inner sleep is a process of its own, started by the shell: it must end as well.
    const auto result = runAndWait({"sh", "-c", "sleep 60 & echo pid=$!; wait"}, 500ms);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 8s);
    EXPECT_TRUE(result.started);
    EXPECT_TRUE(result.timedOut);
    EXPECT_EQ(result.exitCode, -1);

    const auto at = result.output.find("pid=");
    ASSERT_NE(at, std::string::npos) << result.output;
    const pid_t sleeper = std::stoi(result.output.substr(at + 4));
    bool gone = false;
    for (int i = 0; i < 100 && !gone; ++i) {
        gone = processEnded(sleeper);
        if (!gone)
            std::this_thread::sleep_for(50ms);
    }
    EXPECT_TRUE(gone) << "the program's own child is still running";
}

TEST(child_process, a_program_that_ignores_the_polite_end_is_killed) {
    const auto start = std::chrono::steady_clock::now();
    const auto result = runAndWait({"sh", "-c", "trap '' TERM; while :; do sleep 1; done"}, 300ms);
    EXPECT_TRUE(result.timedOut);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 8s);
}

TEST(child_process, only_the_end_of_a_flood_of_output_is_kept) {
    const auto result = runAndWait({"sh", "-c", "head -c 300000 /dev/zero | tr '\\0' x; echo; echo LAST"}, 20s);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_LE(result.output.size(), 64u * 1024u);
    EXPECT_EQ(result.output.substr(result.output.size() - 5), "LAST\n");
}

TEST(child_process, a_private_folder_and_file_are_for_their_owner_only) {
    pl::test::TempDir dir;
    pl::test::ScopedEnv tmp("TMPDIR", dir.path().string());
    const auto folder = pl::platform::createPrivateTempFolder("secret-");
    ASSERT_TRUE(folder);
    EXPECT_EQ(std::filesystem::path(*folder).parent_path(), dir.path());
    EXPECT_EQ(std::filesystem::path(*folder).filename().string().rfind("secret-", 0), 0u);
    struct stat info {};
    ASSERT_EQ(::stat(folder->c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0700u);

    const std::string file = *folder + "/passwords";
    ASSERT_TRUE(pl::platform::writePrivateFile(file, "line one\nline two\n"));
    ASSERT_EQ(::stat(file.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0600u);
    std::ifstream in(file);
    std::string content((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    EXPECT_EQ(content, "line one\nline two\n");
    // An existing file is never written through: it might be somebody else's link.
    EXPECT_FALSE(pl::platform::writePrivateFile(file, "other"));
}

TEST(child_process, the_program_can_be_given_a_temporary_folder_of_its_own) {
    pl::test::TempDir dir;
    const auto result = runAndWait({"sh", "-c", "echo \"$TMPDIR|$TEMP|$TMP|$HOME\""}, 10s, dir.path().string());
    const std::string folder = dir.path().string();
    EXPECT_EQ(result.output, folder + "|" + folder + "|" + folder + "|" + std::getenv("HOME") + "\n");
}
