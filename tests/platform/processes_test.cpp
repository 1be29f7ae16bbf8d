// The platform's process services, each tried with the test helper as a real child process.

#include "child_process.h"
#include "platform/command_line.h"
#include "platform/platform.h"
#include "platform/posix/posix_services.h"
#include "support/scoped_env.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace pl::test;
using pl::platform::quoteArgument;
using pl::platform::WindowStyle;
using pl::platform::posix::PosixProcesses;
using Words = std::vector<std::string>;

TEST(processes, arguments_arrive_verbatim_in_the_working_folder_and_no_shell_runs_them) {
    TempDir dir;
    std::filesystem::create_directory(dir.path() / "Work Folder");
    // A Windows program name finds the installed program, whatever its case.
    std::filesystem::create_directory(dir.path() / "suite");
    std::filesystem::create_symlink(helperProgram(), dir.path() / "suite" / "paperlark-helper");
    const std::string record = dir.folder() + "argv";
    const Words words{"with blanks",   "\"quoted\"", "$(touch injected)", "a;touch semi", "`touch backticks`",
                      "back\\slash\\", "",           "Größe 100%"};
    std::string line = quoteArgument(dir.folder() + "Suite/Paperlark-Helper.EXE") + " argv " + quoteArgument(record);
    for (const auto& w : words)
        line += " " + quoteArgument(w);

    PosixProcesses processes;
    const auto pid = processes.start(line, WindowStyle::Hide, dir.folder() + "work folder");
    ASSERT_TRUE(pid.has_value());
    const auto recorded = waitForFile(record);
    ASSERT_TRUE(recorded.has_value());
    Words received = splitRecordedWords(*recorded);
    ASSERT_FALSE(received.empty());
    EXPECT_EQ(std::filesystem::canonical(received.front()), std::filesystem::canonical(dir.path() / "Work Folder"));
    EXPECT_EQ(Words(received.begin() + 1, received.end()), words);
    ASSERT_TRUE(waitUntilEnded(processes, *pid));
    for (const char* name : {"injected", "semi", "backticks"})
        EXPECT_FALSE(dir.exists("Work Folder/" + std::string(name))) << name;
    EXPECT_FALSE(processes.start(line, WindowStyle::Hide, dir.folder() + "no such folder"));
}

TEST(processes, a_program_that_does_not_exist_gives_no_process) {
    TempDir dir;
    PosixProcesses processes;
    EXPECT_FALSE(processes.start("paperlark-no-such-program /3 x", WindowStyle::NormalFocus));
    EXPECT_FALSE(processes.start(dir.folder() + "missing/prog arg", WindowStyle::NormalFocus));
    dir.write("not-executable", "just text");
    EXPECT_FALSE(processes.start(dir.folder() + "not-executable", WindowStyle::NormalFocus));
    EXPECT_FALSE(processes.start("  ", WindowStyle::NormalFocus));
}

TEST(processes, is_running_turns_false_and_leaves_no_zombie) {
    PosixProcesses processes;
    const auto pid = processes.start(quoteArgument(helperProgram()) + " sleep 0.3", WindowStyle::Hide);
    ASSERT_TRUE(pid.has_value());
    EXPECT_TRUE(processes.isRunning(*pid));
    ASSERT_TRUE(waitUntilEnded(processes, *pid));
    // No child of ours any more, and no zombie left in the process table.
    const pid_t waited = ::waitpid(static_cast<pid_t>(*pid), nullptr, WNOHANG);
    EXPECT_TRUE(waited == -1 && errno == ECHILD);
    EXPECT_FALSE(std::filesystem::exists("/proc/" + std::to_string(*pid)));
    EXPECT_FALSE(processes.isRunning(*pid));
}

// The desktop's opener is replaced, for the test's own processes, by the helper program under the
// name "xdg-open", which records what it was asked to open.
TEST(shell, links_and_documents_go_to_the_desktop_opener_and_nothing_else_starts) {
    TempDir dir;
    ScopedEnv env;
    std::filesystem::create_directory(dir.path() / "bin");
    std::filesystem::create_symlink(helperProgram(), dir.path() / "bin" / "xdg-open");
    const char* path = std::getenv("PATH");
    env.set("PATH", dir.folder() + "bin" + (path ? ":" + std::string(path) : std::string()));
    const std::string pdf = dir.write("docs/Bericht März.pdf", "%PDF-1.4\n");
    PosixProcesses processes;
    pl::platform::posix::PosixShell shell(processes);
    const auto opened = [&](const std::string& record, std::chrono::milliseconds timeout = std::chrono::seconds(10)) {
        const auto recorded = waitForFile(record, timeout);
        return recorded ? std::optional<Words>(splitRecordedWords(*recorded)) : std::nullopt;
    };

    const std::string link = "mailto:support@example.com?subject=Fehlerbericht&body=Schritt%201 \"x\"";
    env.set("PLATFORM_TEST_RECORD", dir.folder() + "link");
    ASSERT_TRUE(shell.execute("open", link, "", "", WindowStyle::NormalFocus));
    EXPECT_EQ(opened(dir.folder() + "link"), Words{link});

    // A document is found whatever its case and handed over with its full path.
    env.set("PLATFORM_TEST_RECORD", dir.folder() + "document");
    ASSERT_TRUE(
        shell.execute("Open", "bericht märz.PDF", "ignored", dir.folder() + "docs/", WindowStyle::MaximizedFocus));
    EXPECT_EQ(opened(dir.folder() + "document"), Words{pdf});

    env.set("PLATFORM_TEST_RECORD", dir.folder() + "nothing");
    EXPECT_FALSE(shell.execute("print", pdf, "", "", WindowStyle::NormalFocus));
    EXPECT_FALSE(shell.execute("open", dir.folder() + "missing.pdf", "", "", WindowStyle::NormalFocus));
    EXPECT_FALSE(shell.execute("open", "paperlark-no-such-program", "", "", WindowStyle::NormalFocus));
    EXPECT_FALSE(opened(dir.folder() + "nothing", std::chrono::milliseconds(300)).has_value());
}

TEST(instance_lock, a_second_holder_in_the_same_session_is_refused_until_the_first_ends) {
    // A session of the test's own, so that the test never meets a lock of a real session.
    TempDir runtime;
    ::chmod(runtime.path().c_str(), 0700);
    ScopedEnv env("XDG_RUNTIME_DIR", runtime.path().string());
    env.set("XDG_SESSION_ID", "lock-" + std::to_string(::getpid()));
    auto os = pl::platform::makeNativePlatform();

    const std::string ready = runtime.folder() + "ready";
    const auto holder = os->processes().start(quoteArgument(helperProgram()) + " lock plAssist " + quoteArgument(ready),
                                              WindowStyle::Hide);
    ASSERT_TRUE(holder.has_value());
    const auto state = waitForFile(ready);
    if (state != "held")
        ::kill(static_cast<pid_t>(*holder), SIGKILL);
    ASSERT_EQ(state, "held");

    EXPECT_FALSE(os->makeInstanceLock()->acquire("plAssist"));
    // Another name is another lock, and so is another session.
    EXPECT_TRUE(os->makeInstanceLock()->acquire("plSort"));
    {
        ScopedEnv otherSession("XDG_SESSION_ID", "second-" + std::to_string(::getpid()));
        EXPECT_TRUE(os->makeInstanceLock()->acquire("plAssist"));
    }

    // The kernel releases the lock however the holder ends, a crash included.
    ::kill(static_cast<pid_t>(*holder), SIGKILL);
    ASSERT_TRUE(waitUntilEnded(os->processes(), *holder));
    auto lock = os->makeInstanceLock();
    EXPECT_TRUE(lock->acquire("plAssist"));
    EXPECT_FALSE(os->makeInstanceLock()->acquire("plAssist"));
}
