#include "child_process.h"
#include "platform/command_line.h"
#include "platform/posix/posix_services.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <sys/wait.h>
#include <unistd.h>

using namespace pl::test;
using pl::platform::quoteArgument;
using pl::platform::WindowStyle;
using pl::platform::posix::PosixProcesses;

namespace {

// True when `pid` is no child of ours any more: it has been reaped and left no zombie behind.
bool reaped(pl::platform::ProcessId pid) {
    return ::waitpid(static_cast<pid_t>(pid), nullptr, WNOHANG) == -1 && errno == ECHILD;
}

// The process state letter from /proc ('Z' for a zombie), or 0 when there is no such process.
char processState(pl::platform::ProcessId pid) {
    std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
    std::string line;
    if (!std::getline(stat, line))
        return 0;
    const auto close = line.rfind(')');
    return close != std::string::npos && close + 2 < line.size() ? line[close + 2] : 0;
}

} // namespace

TEST(processes, arguments_arrive_verbatim_and_no_shell_runs_them) {
    TempDir dir;
    const std::string record = dir.folder() + "argv";
    const std::vector<std::string> words{
        "with blanks",   "\"quoted\"", "$(touch injected)", "a;touch semi", "`touch backticks`",
        "back\\slash\\", "",           "Größe 100%"};
    std::string line = quoteArgument(helperProgram()) + " argv " + quoteArgument(record);
    for (const auto& w : words)
        line += " " + quoteArgument(w);

    PosixProcesses processes;
    const auto pid = processes.start(line, WindowStyle::Hide, dir.folder());
    ASSERT_TRUE(pid.has_value());
    const auto recorded = waitForFile(record);
    ASSERT_TRUE(recorded.has_value());
    EXPECT_EQ(splitRecordedWords(*recorded), words);
    ASSERT_TRUE(waitUntilEnded(processes, *pid));
    for (const char* name : {"injected", "semi", "backticks"})
        EXPECT_FALSE(dir.exists(name)) << name;
}

TEST(processes, a_program_that_does_not_exist_gives_no_process) {
    TempDir dir;
    PosixProcesses processes;
    EXPECT_FALSE(processes.start("paperlark-no-such-program /3 x", WindowStyle::NormalFocus));
    EXPECT_FALSE(processes.start(dir.folder() + "missing/prog arg", WindowStyle::NormalFocus));
    dir.write("not-executable", "just text");
    EXPECT_FALSE(processes.start(dir.folder() + "not-executable", WindowStyle::NormalFocus));
    EXPECT_FALSE(processes.start("", WindowStyle::NormalFocus));
    EXPECT_FALSE(processes.start("  ", WindowStyle::NormalFocus));
}

TEST(processes, a_windows_program_name_finds_the_installed_program) {
    TempDir dir;
    std::filesystem::create_directory(dir.path() / "suite");
    std::filesystem::create_symlink(helperProgram(), dir.path() / "suite" / "paperlark-helper");
    PosixProcesses processes;
    const std::string record = dir.folder() + "argv";
    const auto pid = processes.start(quoteArgument(dir.folder() + "Suite/Paperlark-Helper.EXE") + " argv " +
                                         quoteArgument(record) + " /3",
                                     WindowStyle::Hide);
    ASSERT_TRUE(pid.has_value());
    const auto recorded = waitForFile(record);
    ASSERT_TRUE(recorded.has_value());
    EXPECT_EQ(splitRecordedWords(*recorded), std::vector<std::string>{"/3"});
    EXPECT_FALSE(processes.start(quoteArgument(dir.folder() + "suite/Other.exe"), WindowStyle::Hide));
}

TEST(processes, the_working_folder_is_honoured) {
    TempDir dir;
    std::filesystem::create_directory(dir.path() / "Work Folder");
    const std::string record = dir.folder() + "cwd";
    PosixProcesses processes;
    const auto pid = processes.start(quoteArgument(helperProgram()) + " cwd " + quoteArgument(record),
                                     WindowStyle::Hide, dir.folder() + "work folder");
    ASSERT_TRUE(pid.has_value());
    const auto cwd = waitForFile(record);
    ASSERT_TRUE(cwd.has_value());
    EXPECT_EQ(std::filesystem::canonical(*cwd), std::filesystem::canonical(dir.path() / "Work Folder"));
    EXPECT_FALSE(
        processes.start(quoteArgument(helperProgram()) + " cwd x", WindowStyle::Hide, dir.folder() + "no such folder"));
}

TEST(processes, a_relative_program_path_is_found_from_the_callers_folder) {
    TempDir dir;
    const auto helper = std::filesystem::path(helperProgram());
    const auto here = std::filesystem::current_path();
    std::filesystem::current_path(helper.parent_path().parent_path());
    const std::string relative = (helper.parent_path().filename() / helper.filename()).string();
    PosixProcesses processes;
    const auto pid =
        processes.start(relative + " cwd " + quoteArgument(dir.folder() + "cwd"), WindowStyle::Hide, dir.folder());
    std::filesystem::current_path(here);
    ASSERT_TRUE(pid.has_value());
    EXPECT_TRUE(waitForFile(dir.folder() + "cwd").has_value());
}

TEST(processes, is_running_turns_false_and_leaves_no_zombie) {
    PosixProcesses processes;
    const auto pid = processes.start(quoteArgument(helperProgram()) + " sleep 0.3", WindowStyle::Hide);
    ASSERT_TRUE(pid.has_value());
    EXPECT_TRUE(processes.isRunning(*pid));
    ASSERT_TRUE(waitUntilEnded(processes, *pid));
    EXPECT_TRUE(reaped(*pid));
    EXPECT_EQ(processState(*pid), 0);
    EXPECT_FALSE(processes.isRunning(*pid));
}

TEST(processes, children_nobody_asks_about_are_reaped_at_the_next_start) {
    PosixProcesses processes;
    const auto first = processes.start(quoteArgument(helperProgram()) + " sleep 0", WindowStyle::Hide);
    ASSERT_TRUE(first.has_value());
    for (int i = 0; i < 500 && processState(*first) != 'Z'; ++i)
        ::usleep(10000);
    ASSERT_EQ(processState(*first), 'Z');
    const auto second = processes.start(quoteArgument(helperProgram()) + " sleep 0", WindowStyle::Hide);
    ASSERT_TRUE(second.has_value());
    EXPECT_TRUE(reaped(*first));
    EXPECT_TRUE(waitUntilEnded(processes, *second));
}

TEST(processes, other_processes_are_asked_whether_they_exist) {
    PosixProcesses processes;
    EXPECT_TRUE(processes.isRunning(::getppid()));
    EXPECT_TRUE(processes.isRunning(processes.currentId()));
    EXPECT_EQ(processes.currentId(), ::getpid());
    EXPECT_FALSE(processes.isRunning(0));
    EXPECT_FALSE(processes.isRunning(-1));
}
