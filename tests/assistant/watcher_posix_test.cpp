// The watcher among files that only POSIX systems put into a spool folder: pipes, links and jobs
// of another owner.

#include "watcher_fixture.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace pl::test {
namespace {

namespace fs = std::filesystem;

TEST_P(watcher, files_that_are_not_the_users_own_plain_files_are_never_seen) {
    start();
    ASSERT_EQ(::mkfifo((world.machineFolder + "alice_0.ps").c_str(), 0600), 0);
    fs::create_directory(world.machineFolder + "alice_1.ps");
    writeJob(world.root.folder() + "elsewhere.ps");
    fs::create_symlink(world.root.folder() + "elsewhere.ps", world.machineFolder + "alice_2.ps");
    const bool root = ::geteuid() == 0;
    if (root) {
        writeJob(world.machineFolder + "alice_3.ps");
        ASSERT_EQ(::chown((world.machineFolder + "alice_3.ps").c_str(), 65534, 65534), 0);
    }
    writeJob(world.machineFolder + "alice_9.ps");
    r->ticks(3);
    EXPECT_EQ(r->host.taken, std::vector<std::string>{world.machineFolder + "alice_9.ps"});
    EXPECT_TRUE(world.view.messages.empty());
    if (!root)
        GTEST_SKIP() << "a file of another owner needs root to be made";
}

} // namespace
} // namespace pl::test
