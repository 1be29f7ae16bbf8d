#include "platform/child_process.h"

#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <fstream>
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

TEST(child_process, reports_the_exit_code_and_all_output_and_gives_the_program_no_input) {
    // Without input of its own the program cannot wait for any: its read fails at once.
    const auto result = runAndWait({"sh", "-c", "read line; echo status=$?; echo to-err >&2; exit 3"}, 20s);
    EXPECT_TRUE(result.started);
    EXPECT_FALSE(result.timedOut);
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_NE(result.output.find("status=1"), std::string::npos) << result.output;
    EXPECT_NE(result.output.find("to-err"), std::string::npos) << result.output;

    // A limit beyond the clock's range is no limit, not an overflow.
    const auto unlimited = runAndWait({"true"}, std::chrono::milliseconds::max());
    EXPECT_EQ(unlimited.exitCode, 0);
    EXPECT_FALSE(unlimited.timedOut);

    const auto missing = runAndWait({"/nonexistent/folder/program"}, 5s);
    EXPECT_FALSE(missing.started);
    EXPECT_FALSE(missing.startError.empty());
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

TEST(child_process, the_time_limit_kills_the_program_and_everything_it_started_even_if_they_ignore_it) {
    const auto start = std::chrono::steady_clock::now();
    // The inner sleep is a process of its own, started by the shell, and like the shell it ignores
    // the polite request to end: both must end all the same.
    const auto result = runAndWait({"sh", "-c", "trap '' TERM; sleep 60 & echo pid=$!; wait"}, 500ms);
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
