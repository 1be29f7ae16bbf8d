// Many users' assistants sharing one machine spool folder, each on its own thread as each would be
// in its own session, while the printer keeps writing jobs into the folder: every job reaches its
// own user's assistant exactly once, and every job printed without a user name is adopted exactly
// once.

#include "assistant_world.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <map>
#include <set>
#include <thread>

namespace pl::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr int Users = 20;
constexpr int JobsPerUser = 100;
constexpr int UnnamedJobs = 200;

std::string numbered(const char* prefix, int i) {
    char text[32];
    std::snprintf(text, sizeof text, "%s%04d", prefix, i);
    return text;
}

// One user's assistant with everything of its own (its registry store is found through the
// environment), sharing only the machine spool folder.
struct UserAssistant : Session {
    UserAssistant(const std::string& user, const std::string& machine, const std::string& base,
                  std::atomic<int>& takenCount)
        : name(user), resident(
                          *this, base + "taken/" + user + "/", changes.get(), [user] { return user; }, &takenCount) {
        fs::create_directories(base + "users/" + user);
        fs::create_directories(base + "taken/" + user);
        // What start-up would have settled for this user.
        state.PsDirMachine = machine;
        state.PsDirUser = base + "users/" + user + "/";
        state.TsName = user;
        state.Pm5Support = true;
    }
    std::string name;
    std::unique_ptr<platform::FolderChanges> changes = platform::makeFolderChanges();
    Resident resident;
};

TEST(several_users, share_one_machine_spool_folder_and_each_job_is_taken_once_by_its_owner) {
    TempDir dir;
    TestRegistry hives; // each assistant's store finds these through the environment
    const std::string machine = dir.folder() + "machine/";
    fs::create_directories(machine);
    std::atomic<int> takenCount{0};
    const int expected = Users * JobsPerUser + UnnamedJobs;

    std::vector<std::unique_ptr<UserAssistant>> assistants;
    for (int u = 0; u < Users; ++u)
        assistants.push_back(std::make_unique<UserAssistant>(numbered("user", u), machine, dir.folder(), takenCount));

    // The printer: every job is written under a "~" name and renamed when complete, users mixed.
    std::atomic<bool> printing{true};
    std::thread printer([&] {
        auto print = [&](const std::string& name) {
            writeJob(machine + "~" + name);
            fs::rename(machine + "~" + name, machine + name);
        };
        for (int j = 0; j < JobsPerUser; ++j) {
            for (int u = 0; u < Users; ++u)
                print(numbered("user", u) + "_" + numbered("j", j) + ".ps");
            if (j < UnnamedJobs / 2) {
                print("unknown_" + numbered("x", 2 * j) + ".ps");
                print("Unknown_" + numbered("x", 2 * j + 1) + ".ps");
            }
        }
        printing = false;
    });

    const auto deadline = std::chrono::steady_clock::now() + 240s;
    std::vector<std::thread> sessions;
    for (auto& a : assistants) {
        sessions.emplace_back([&, assistant = a.get()] {
            while ((printing || takenCount < expected) && std::chrono::steady_clock::now() < deadline &&
                   !assistant->state.quitRequested) {
                assistant->resident.ticks(1);
                std::this_thread::sleep_for(200us);
            }
        });
    }
    printer.join();
    for (auto& t : sessions)
        t.join();

    ASSERT_EQ(takenCount.load(), expected);
    std::map<std::string, int> adopted; // unnamed job number -> how often taken
    std::set<std::string> all;
    for (const auto& a : assistants) {
        EXPECT_FALSE(a->state.quitRequested) << a->name;
        EXPECT_TRUE(a->view.messages.empty()) << a->name;
        int own = 0;
        for (const auto& path : a->resident.host.taken) {
            const std::string file = fs::path(path).filename().string();
            EXPECT_TRUE(file.starts_with(a->name + "_")) << a->name << " took " << path;
            EXPECT_TRUE(all.insert(file).second) << file << " taken twice";
            if (file.find("_x") != std::string::npos)
                ++adopted[file.substr(a->name.size())];
            else
                ++own;
        }
        EXPECT_EQ(own, JobsPerUser) << a->name;
        const auto onDisk =
            std::distance(fs::directory_iterator(dir.folder() + "taken/" + a->name), fs::directory_iterator());
        EXPECT_EQ(onDisk, static_cast<long>(a->resident.host.taken.size())) << a->name;
    }
    EXPECT_EQ(adopted.size(), static_cast<std::size_t>(UnnamedJobs));
    for (const auto& [job, times] : adopted)
        EXPECT_EQ(times, 1) << job;

    EXPECT_TRUE(fs::is_empty(machine)) << "every job was taken";
}

} // namespace
} // namespace pl::test
