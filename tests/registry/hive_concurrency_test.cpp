// Two processes writing one hive at full speed while a third reads it.

#include "platform/posix/registry/regedit_format.h"
#include "support/test_registry.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iostream>
#include <sstream>

#include <sys/wait.h>
#include <unistd.h>

namespace pl::platform::posix {
namespace {

constexpr int Writes = 2000;
const char* const RaceKey = "HKCU\\Software\\tobrin\\Race";

// The child's loop: before each write it checks that its own last write is still there, so any
// write the other process lost would be seen here.
int writeLoop(const std::filesystem::path& folder, const std::string& valueName) {
    PosixRegistry store(folder);
    Registry registry(store);
    for (int i = 1; i <= Writes; ++i) {
        const std::string stored = registry.GetRegValue(RaceKey, valueName);
        if (stored != (i == 1 ? "" : std::to_string(i - 1))) {
            std::cerr << valueName << ": expected " << i - 1 << ", found \"" << stored << "\"\n";
            return 1;
        }
        if (registry.SetRegValue(RaceKey, valueName, std::to_string(i)) != "True") {
            std::cerr << valueName << ": write " << i << " failed\n";
            return 2;
        }
    }
    return 0;
}

std::string fileBytes(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

TEST(hive_concurrency, two_writing_processes_lose_nothing_and_readers_never_see_half_a_file) {
    test::TestRegistry reg;
    const std::filesystem::path folder = reg.dir().path();
    std::vector<pid_t> writers;
    for (const char* name : {"first", "second"}) {
        const pid_t pid = ::fork();
        ASSERT_GE(pid, 0);
        if (pid == 0)
            ::_exit(writeLoop(folder, name));
        writers.push_back(pid);
    }

    // Read along: the file always parses and neither counter ever goes back.
    const std::filesystem::path hive = reg.backend().hiveFile(HKEY_CURRENT_USER);
    long reads = 0;
    long last[2] = {0, 0};
    int status[2] = {0, 0};
    bool done[2] = {false, false};
    while (!done[0] || !done[1]) {
        const std::string bytes = fileBytes(hive);
        if (!bytes.empty()) {
            const RegFileParse parsed = parseRegFile(bytes);
            EXPECT_TRUE(parsed.file) << "line " << parsed.error.line << ": " << parsed.error.message;
            ++reads;
        }
        for (int w = 0; w < 2; ++w) {
            const std::string value = reg.registry().GetRegValue(RaceKey, w == 0 ? "first" : "second");
            const long now = value.empty() ? 0 : std::stol(value);
            EXPECT_GE(now, last[w]) << (w == 0 ? "first" : "second");
            last[w] = now;
            if (!done[w] && ::waitpid(writers[w], &status[w], WNOHANG) == writers[w])
                done[w] = true;
        }
    }
    for (int w = 0; w < 2; ++w) {
        ASSERT_TRUE(WIFEXITED(status[w]));
        EXPECT_EQ(WEXITSTATUS(status[w]), 0);
    }
    EXPECT_GT(reads, 10);
    EXPECT_EQ(reg.registry().GetRegValue(RaceKey, "first"), std::to_string(Writes));
    EXPECT_EQ(reg.registry().GetRegValue(RaceKey, "second"), std::to_string(Writes));
    // Nothing but the hive and its lock is left behind.
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::string>{"HKEY_CURRENT_USER.reg", "HKEY_CURRENT_USER.reg.lock"}));
}

} // namespace
} // namespace pl::platform::posix
