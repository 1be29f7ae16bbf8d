// Processes, the session lock and files held open, each with a real second process.

#include "platform/file_in_use.h"
#include "platform/win32/win32_services.h"
#include "support/temp_dir.h"
#include "support/test_registry.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <sstream>
#include <thread>

namespace pl::platform::win32 {
namespace {

using namespace std::chrono_literals;
using test::TempDir;

// The helper program as Windows names it: the build folder is on the host's root, drive Z:.
std::string helper() {
    std::string path = "Z:" + std::string(WIN32_TEST_HELPER);
    for (char& c : path)
        if (c == '/')
            c = '\\';
    return "\"" + path + "\"";
}

bool waitFor(const std::function<bool()>& condition, std::chrono::milliseconds limit = 10s) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(20ms);
    }
    return true;
}

std::string contents(const std::string& path) {
    std::ifstream in(path);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

// Runs the helper to its end; its exit code.
DWORD runHelper(const std::string& arguments) {
    std::string line = helper() + " " + arguments;
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION info{};
    if (!CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &info))
        return 999;
    WaitForSingleObject(info.hProcess, 30000);
    DWORD code = 999;
    GetExitCodeProcess(info.hProcess, &code);
    CloseHandle(info.hThread);
    CloseHandle(info.hProcess);
    return code;
}

void end(ProcessId id) {
    HANDLE process = OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, static_cast<DWORD>(id));
    ASSERT_NE(process, nullptr);
    TerminateProcess(process, 0);
    WaitForSingleObject(process, 10000);
    CloseHandle(process);
}

TEST(processes_win32, a_program_starts_with_its_window_style_in_its_folder_and_its_end_is_seen) {
    TempDir dir;
    Win32Processes processes;
    const std::pair<WindowStyle, std::string> styles[] = {
        {WindowStyle::NormalFocus, "1"},
        {WindowStyle::MaximizedFocus, "3"},
        {WindowStyle::MinimizedNoFocus, "7"},
    };
    for (const auto& [style, show] : styles) {
        const std::string record = dir.folder() + "startup-" + show;
        const auto id = processes.start(helper() + " startup \"" + record + "\"", style, dir.folder() + ".");
        ASSERT_TRUE(id) << show;
        ASSERT_TRUE(waitFor([&] { return !processes.isRunning(*id); })) << show;
        std::string folder = dir.folder();
        folder.pop_back();
        EXPECT_EQ(contents(record), show + " " + folder);
    }

    const auto sleeper = processes.start(helper() + " sleep 700", WindowStyle::NormalFocus);
    ASSERT_TRUE(sleeper);
    EXPECT_TRUE(processes.isRunning(*sleeper));
    EXPECT_TRUE(waitFor([&] { return !processes.isRunning(*sleeper); }));
    EXPECT_TRUE(processes.isRunning(processes.currentId()));
    EXPECT_FALSE(processes.start("\"" + dir.folder() + "missing.exe\"", WindowStyle::NormalFocus));
}

TEST(processes_win32, a_second_holder_of_the_session_lock_is_refused_until_the_first_lets_go) {
    const std::string name = "PaperlarkTestLock" + std::to_string(GetCurrentProcessId());
    {
        Win32InstanceLock first;
        ASSERT_TRUE(first.acquire(name));
        EXPECT_EQ(runHelper("lock " + name), 1u);
        Win32InstanceLock second;
        EXPECT_FALSE(second.acquire(name)) << "refused in the same process too";
    }
    EXPECT_EQ(runHelper("lock " + name), 0u);
}

TEST(processes_win32, a_file_held_open_by_another_process_is_found_as_such_and_cannot_be_moved) {
    TempDir dir;
    Win32Processes processes;
    Win32FileSystem files;
    const std::string job = dir.write("Rechnung März.pdf", "%PDF");
    const std::string ready = dir.folder() + "ready";
    EXPECT_FALSE(heldOpenElsewhere(job));

    const auto holder = processes.start(helper() + " hold \"" + job + "\" \"" + ready + "\"", WindowStyle::Hide);
    ASSERT_TRUE(holder);
    ASSERT_TRUE(waitFor([&] { return files.exists(ready); }));
    EXPECT_TRUE(heldOpenElsewhere(job));
    EXPECT_FALSE(files.rename(job, dir.folder() + "moved.pdf"));
    EXPECT_TRUE(files.exists(job));

    end(*holder);
    EXPECT_FALSE(heldOpenElsewhere(job));
    EXPECT_TRUE(files.rename(job, dir.folder() + "moved.pdf"));
    EXPECT_FALSE(heldOpenElsewhere(dir.folder() + "missing.pdf"));
}

TEST(processes_win32, the_shell_opens_a_document_with_its_registered_program) {
    TempDir dir;
    test::TestRegistry reg; // the classes of this process are the test's own
    const std::string record = dir.folder() + "opened.txt";
    Registry& r = reg.registry();
    ASSERT_EQ(r.SetRegValue("HKCR\\.pltest", "", "pltestfile"), "True");
    ASSERT_EQ(
        r.SetRegValue("HKCR\\pltestfile\\shell\\open\\command", "", helper() + " opened \"" + record + "\" \"%1\""),
        "True");
    const std::string document = dir.write("Bericht Größe.pltest", "x");
    Win32Shell shell;
    EXPECT_TRUE(shell.execute("open", document, "", dir.folder(), WindowStyle::NormalFocus));
    ASSERT_TRUE(waitFor([&] { return !contents(record).empty(); }));
    EXPECT_EQ(contents(record), document);
    EXPECT_FALSE(shell.execute("open", dir.folder() + "missing.pltest", "", "", WindowStyle::NormalFocus));
}

} // namespace
} // namespace pl::platform::win32
