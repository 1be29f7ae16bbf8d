// "Edit Configuration" in a job dialog whose suite folder is an installed suite: the installation
// holds the name the dialog looks for and starts the configuration program under the other.

#include "actions_fixture.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>

namespace pl::test {
namespace {

namespace fs = std::filesystem;

// The process running `program` whose parent is this process; 0 when none shows up in time.
pid_t childRunning(const fs::path& program) {
    const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (std::chrono::steady_clock::now() < until) {
        for (const auto& entry : fs::directory_iterator("/proc")) {
            const std::string name = entry.path().filename().string();
            if (name.find_first_not_of("0123456789") != std::string::npos)
                continue;
            std::error_code ec;
            if (fs::read_symlink(entry.path() / "exe", ec) != program || ec)
                continue;
            // "pid (name) state ppid ...": the parent follows the state after the name's ")".
            std::ifstream stat(entry.path() / "stat");
            std::string line;
            std::getline(stat, line);
            std::istringstream rest(line.substr(line.rfind(')') + 1));
            char state = 0;
            pid_t parent = 0;
            rest >> state >> parent;
            if (parent == ::getpid())
                return std::stoi(name);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return 0;
}

class edit_configuration : public ActionsFixture {};

TEST_F(edit_configuration, starts_the_installed_configuration_program) {
    const char* stage = std::getenv("PAPERLARK_INSTALL_STAGE");
    ASSERT_NE(stage, nullptr);
    const std::string installed = std::string(stage) + "/usr/lib/paperlark/";
    ASSERT_TRUE(fs::is_symlink(installed + "plconfig"));
    setMachine("pldir", installed);
    env.set("QT_QPA_PLATFORM", "offscreen");
    offerMachineJob();
    openWithActions();

    buttons().lbConfig_Click();
    EXPECT_TRUE(view.messages.empty());
    const pid_t pid = childRunning(fs::canonical(installed + "plucnfg"));
    ASSERT_NE(pid, 0) << "plucnfg was not started";
    ::kill(pid, SIGTERM);
    ::waitpid(pid, nullptr, 0);
}

} // namespace
} // namespace pl::test
