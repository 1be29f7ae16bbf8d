#include "child_process.h"
#include "platform/command_line.h"
#include "platform/platform.h"
#include "support/scoped_env.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

using namespace pl::test;
using pl::platform::quoteArgument;
using pl::platform::WindowStyle;

namespace {

// A session of the test's own, so that the test never meets a lock of a real session.
struct Session {
    TempDir runtime;
    ScopedEnv env;
    explicit Session(const std::string& id) {
        ::chmod(runtime.path().c_str(), 0700);
        env.set("XDG_RUNTIME_DIR", runtime.path().string());
        env.set("XDG_SESSION_ID", id + "-" + std::to_string(::getpid()));
    }
};

// Starts the helper holding the lock `name`; returns its process id once it holds it.
std::optional<pl::platform::ProcessId> startHolder(pl::platform::Platform& os, const TempDir& dir,
                                                   const std::string& name) {
    const std::string ready = dir.folder() + "ready-" + name;
    const auto pid = os.processes().start(quoteArgument(helperProgram()) + " lock " + quoteArgument(name) + " " +
                                              quoteArgument(ready),
                                          WindowStyle::Hide);
    if (!pid)
        return std::nullopt;
    const auto state = waitForFile(ready);
    if (state != "held") {
        ::kill(static_cast<pid_t>(*pid), SIGKILL);
        waitUntilEnded(os.processes(), *pid);
        return std::nullopt;
    }
    return pid;
}

} // namespace

TEST(instance_lock, a_second_holder_in_the_same_session_is_refused_until_the_first_ends) {
    Session session("lock");
    auto os = pl::platform::makeNativePlatform();
    const auto holder = startHolder(*os, session.runtime, "plAssist");
    ASSERT_TRUE(holder.has_value());

    EXPECT_FALSE(os->makeInstanceLock()->acquire("plAssist"));
    // Another name is another lock.
    EXPECT_TRUE(os->makeInstanceLock()->acquire("plSort"));

    // The kernel releases the lock however the holder ends, a crash included.
    ::kill(static_cast<pid_t>(*holder), SIGKILL);
    ASSERT_TRUE(waitUntilEnded(os->processes(), *holder));
    auto lock = os->makeInstanceLock();
    EXPECT_TRUE(lock->acquire("plAssist"));
    EXPECT_FALSE(os->makeInstanceLock()->acquire("plAssist"));
}

TEST(instance_lock, another_session_has_a_lock_of_its_own) {
    Session session("first");
    auto os = pl::platform::makeNativePlatform();
    const auto holder = startHolder(*os, session.runtime, "plAssist");
    ASSERT_TRUE(holder.has_value());
    {
        ScopedEnv otherSession("XDG_SESSION_ID", "second-" + std::to_string(::getpid()));
        EXPECT_TRUE(os->makeInstanceLock()->acquire("plAssist"));
    }
    EXPECT_FALSE(os->makeInstanceLock()->acquire("plAssist"));
    ::kill(static_cast<pid_t>(*holder), SIGKILL);
    EXPECT_TRUE(waitUntilEnded(os->processes(), *holder));
}

TEST(instance_lock, the_session_falls_back_to_the_display) {
    Session session("unused");
    session.env.set("XDG_SESSION_ID", std::nullopt);
    session.env.set("DISPLAY", ":77");
    auto os = pl::platform::makeNativePlatform();
    auto lock = os->makeInstanceLock();
    ASSERT_TRUE(lock->acquire("plAssist"));
    EXPECT_FALSE(os->makeInstanceLock()->acquire("plAssist"));
    session.env.set("DISPLAY", ":78");
    EXPECT_TRUE(os->makeInstanceLock()->acquire("plAssist"));
    // The lock file lies in the runtime folder and its name tells the lock and the session apart.
    bool found = false;
    for (const auto& entry : std::filesystem::directory_iterator(session.runtime.path())) {
        const std::string name = entry.path().filename().string();
        found = found || (name.find("plAssist") != std::string::npos && name.find("77") != std::string::npos);
    }
    EXPECT_TRUE(found);
}

TEST(instance_lock, without_a_runtime_folder_a_private_folder_in_tmp_is_used) {
    ScopedEnv env;
    env.set("XDG_RUNTIME_DIR", std::nullopt);
    env.set("XDG_SESSION_ID", "fallback-" + std::to_string(::getpid()));
    auto os = pl::platform::makeNativePlatform();
    {
        auto lock = os->makeInstanceLock();
        ASSERT_TRUE(lock->acquire("plAssistTest"));
        EXPECT_FALSE(os->makeInstanceLock()->acquire("plAssistTest"));
        struct stat st {};
        const std::string folder = "/tmp/paperlark-" + std::to_string(::getuid());
        ASSERT_EQ(::lstat(folder.c_str(), &st), 0);
        EXPECT_TRUE(S_ISDIR(st.st_mode));
        EXPECT_EQ(st.st_mode & 0777, 0700u);
        EXPECT_EQ(st.st_uid, ::getuid());
    }
    // Released with the object.
    EXPECT_TRUE(os->makeInstanceLock()->acquire("plAssistTest"));

    std::error_code ec;
    const std::string session = "fallback-" + std::to_string(::getpid());
    for (const auto& entry : std::filesystem::directory_iterator("/tmp/paperlark-" + std::to_string(::getuid()), ec))
        if (entry.path().filename().string().find(session) != std::string::npos)
            std::filesystem::remove(entry.path(), ec);
}
