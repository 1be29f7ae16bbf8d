#include "child_process.h"
#include "platform/command_line.h"
#include "platform/posix/posix_services.h"
#include "support/scoped_env.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

using namespace pl::test;
using pl::platform::quoteArgument;
using pl::platform::WindowStyle;
using pl::platform::posix::PosixProcesses;
using pl::platform::posix::PosixShell;
using Words = std::vector<std::string>;

namespace {

// The desktop's opener replaced, for the test's own processes, by the helper program under the
// name "xdg-open", which records what it was asked to open.
struct RecordingOpener {
    TempDir dir;
    ScopedEnv env;
    std::string record = dir.folder() + "opened";
    RecordingOpener() {
        std::filesystem::create_directory(dir.path() / "bin");
        std::filesystem::create_symlink(helperProgram(), dir.path() / "bin" / "xdg-open");
        const char* path = std::getenv("PATH");
        env.set("PATH", dir.folder() + "bin" + (path ? ":" + std::string(path) : std::string()));
        env.set("PLATFORM_TEST_RECORD", record);
    }
    std::optional<Words> opened(std::chrono::milliseconds timeout = std::chrono::seconds(10)) {
        auto recorded = waitForFile(record, timeout);
        if (!recorded)
            return std::nullopt;
        return splitRecordedWords(*recorded);
    }
};

} // namespace

TEST(shell, links_go_to_the_desktop_opener_unchanged) {
    RecordingOpener opener;
    PosixProcesses processes;
    PosixShell shell(processes);
    const std::string link = "mailto:support@example.com?subject=Fehlerbericht&body=Schritt%201 \"x\"";
    ASSERT_TRUE(shell.execute("open", link, "", "", WindowStyle::NormalFocus));
    EXPECT_EQ(opener.opened(), Words{link});
}

TEST(shell, documents_go_to_the_desktop_opener_with_their_full_path) {
    RecordingOpener opener;
    TempDir docs;
    const std::string pdf = docs.write("Bericht März.pdf", "%PDF-1.4\n");
    PosixProcesses processes;
    PosixShell shell(processes);
    ASSERT_TRUE(shell.execute("Open", "bericht märz.PDF", "ignored", docs.folder(), WindowStyle::MaximizedFocus));
    EXPECT_EQ(opener.opened(), Words{pdf});
}

TEST(shell, a_program_runs_with_its_parameters_in_the_given_folder) {
    TempDir dir;
    std::filesystem::create_directory(dir.path() / "work");
    PosixProcesses processes;
    PosixShell shell(processes);
    const std::string record = dir.folder() + "argv";
    ASSERT_TRUE(shell.execute("open", helperProgram(), "argv " + quoteArgument(record) + " \"two words\" $(x);y",
                              dir.folder() + "work", WindowStyle::NormalFocus));
    const auto recorded = waitForFile(record);
    ASSERT_TRUE(recorded.has_value());
    EXPECT_EQ(splitRecordedWords(*recorded), (Words{"two words", "$(x);y"}));

    const std::string cwdRecord = dir.folder() + "cwd";
    ASSERT_TRUE(shell.execute("", helperProgram(), "cwd " + quoteArgument(cwdRecord), dir.folder() + "work",
                              WindowStyle::NormalFocus));
    const auto cwd = waitForFile(cwdRecord);
    ASSERT_TRUE(cwd.has_value());
    EXPECT_EQ(std::filesystem::canonical(*cwd), std::filesystem::canonical(dir.path() / "work"));
}

TEST(shell, a_windows_program_name_finds_the_installed_program) {
    TempDir dir;
    std::filesystem::create_symlink(helperProgram(), dir.path() / "plconfig");
    PosixProcesses processes;
    PosixShell shell(processes);
    const std::string record = dir.folder() + "argv";
    ASSERT_TRUE(shell.execute("open", dir.folder() + "plconfig.exe", "argv " + quoteArgument(record) + " /user", "",
                              WindowStyle::NormalFocus));
    const auto recorded = waitForFile(record);
    ASSERT_TRUE(recorded.has_value());
    EXPECT_EQ(splitRecordedWords(*recorded), Words{"/user"});
}

TEST(shell, a_program_name_is_looked_up_on_the_search_path) {
    RecordingOpener opener; // puts a program called "xdg-open" first on the path
    PosixProcesses processes;
    PosixShell shell(processes);
    ASSERT_TRUE(shell.execute("open", "xdg-open", "one \"two three\"", "", WindowStyle::NormalFocus));
    EXPECT_EQ(opener.opened(), (Words{"one", "two three"}));
}

TEST(shell, nothing_starts_for_unknown_verbs_or_missing_files) {
    RecordingOpener opener;
    TempDir docs;
    const std::string pdf = docs.write("a.pdf", "%PDF");
    PosixProcesses processes;
    PosixShell shell(processes);
    EXPECT_FALSE(shell.execute("print", pdf, "", "", WindowStyle::NormalFocus));
    EXPECT_FALSE(shell.execute("open", docs.folder() + "missing.pdf", "", "", WindowStyle::NormalFocus));
    EXPECT_FALSE(shell.execute("open", "", "", "", WindowStyle::NormalFocus));
    EXPECT_FALSE(shell.execute("open", "paperlark-no-such-program", "", "", WindowStyle::NormalFocus));
    EXPECT_FALSE(opener.opened(std::chrono::milliseconds(300)).has_value());
}
