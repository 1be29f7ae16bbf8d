// The POSIX store itself: hive files edited by hand or shared by processes, Windows semantics of
// names.

#include "platform/posix/registry/posix_registry.h"
#include "platform/posix/registry/regedit_format.h"
#include "support/test_registry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace pl::platform::posix {
namespace {

using test::TestRegistry;

const std::string Header = "Windows Registry Editor Version 5.00\n\n";
const char* const Key = "HKCU\\Software\\tobrin\\PaperlarkXP";

TEST(hive_store, hive_that_does_not_parse_is_reported_and_never_overwritten) {
    const std::pair<std::string, std::string> broken[] = {
        {Header + "[HKEY_CURRENT_USER\\Software\\tobrin\\PaperlarkXP]\n\"Style\"=\"1\"\n\"psdir\"=hex:zz\n",
         "HKEY_CURRENT_USER.reg, line 5"},
        // A section of another root makes the hive unusable too.
        {Header + "[HKEY_CURRENT_USER\\Software\\A]\n\"v\"=\"1\"\n\n[HKEY_LOCAL_MACHINE\\Software\\B]\n", "line 6"},
        {"Windows Registry Editor Version 4.00\n", "line 1"},
        {Header + "\"v\"=\"before any key\"\n", "line 3"},
        {Header + "[HKEY_NOWHERE\\A]\n", "line 3"},
        {Header + "[HKEY_CURRENT_USER\\A]\n\"v\"=\"no end\n", "line 4"},
        {Header + "[HKEY_CURRENT_USER\\A]\n; fine\n\"v\"=dword:123456789\n", "line 5"},
        {Header + "[HKEY_CURRENT_USER\\A]\n\"v\"=hex:00,\\\n  100\n", "line 5"},
    };
    for (const auto& [text, where] : broken) {
        TestRegistry reg;
        reg.writeHive("HKEY_CURRENT_USER", text);
        const PosixRegistry store(reg.dir().path());
        const std::optional<std::string> problem = store.hiveProblem(HKEY_CURRENT_USER);
        ASSERT_TRUE(problem);
        EXPECT_NE(problem->find(where), std::string::npos) << *problem;
        EXPECT_FALSE(store.hiveProblem(HKEY_LOCAL_MACHINE));

        Registry& r = reg.registry();
        EXPECT_EQ(r.GetRegValue(Key, "Style"), "");
        EXPECT_EQ(r.SetRegValue(Key, "Style", "2"), "Create or Open Error");
        EXPECT_EQ(reg.backend().deleteValue(HKEY_CURRENT_USER, "Software\\tobrin\\PaperlarkXP", "Style", 0),
                  RegCannotWrite);
        EXPECT_EQ(reg.backend().deleteKey(HKEY_CURRENT_USER, "Software\\tobrin\\PaperlarkXP", 0), RegCannotWrite);
        EXPECT_EQ(reg.readHive("HKEY_CURRENT_USER"), text);
        // Other hives go on working, and so does this one once the file is put right.
        EXPECT_EQ(r.SetRegValue("HKLM\\Software\\tobrin\\PaperlarkXP", "Style", "3"), "True");
        reg.writeHive("HKEY_CURRENT_USER", Header + "[HKEY_CURRENT_USER\\Software\\tobrin\\PaperlarkXP]\n");
        EXPECT_EQ(r.SetRegValue(Key, "Style", "2"), "True");
        EXPECT_EQ(r.GetRegValue(Key, "Style"), "2");
    }
}

TEST(hive_store, a_hive_that_is_no_plain_file_or_cannot_be_read_is_told_counts_as_empty_and_stays) {
    struct Case {
        const char* what;
        std::function<void(const std::filesystem::path&)> make;
    };
    std::vector<Case> cases{
        {"pipe", [](const std::filesystem::path& p) { ASSERT_EQ(::mkfifo(p.c_str(), 0644), 0); }},
        {"folder", [](const std::filesystem::path& p) { std::filesystem::create_directory(p); }},
    };
    if (::geteuid() != 0) // root reads whatever the permissions say
        cases.push_back({"unreadable", [](const std::filesystem::path& p) {
                             std::ofstream(p) << Header;
                             std::filesystem::permissions(p, std::filesystem::perms::none);
                         }});
    for (const auto& [what, make] : cases) {
        TestRegistry reg;
        const auto hive = reg.dir().path() / "HKEY_CURRENT_USER.reg";
        make(hive);
        const auto kind = std::filesystem::symlink_status(hive).type();
        ::testing::internal::CaptureStderr();
        Registry& r = reg.registry();
        EXPECT_EQ(r.GetRegValue(Key, "Style"), "") << what;
        EXPECT_EQ(r.SetRegValue(Key, "Style", "2"), "Create or Open Error") << what;
        EXPECT_EQ(r.GetRegValue(Key, "Style"), "") << what;
        const std::string told = ::testing::internal::GetCapturedStderr();
        EXPECT_NE(told.find("HKEY_CURRENT_USER.reg: "), std::string::npos) << what << ": " << told;
        EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 1) << what << ": said once: " << told;
        EXPECT_EQ(std::filesystem::symlink_status(hive).type(), kind) << what << " was replaced";
        EXPECT_EQ(r.SetRegValue("HKLM\\Software\\tobrin\\PaperlarkXP", "Style", "3"), "True") << what;
    }
}

TEST(hive_store, names_compare_without_case_and_keep_their_first_spelling) {
    TestRegistry reg;
    Registry& r = reg.registry();
    ASSERT_EQ(r.SetRegValue("HKCU\\Software\\MyCompany\\MyKey", "MyValue", "1"), "True");
    ASSERT_EQ(r.SetRegValue("HKCU\\SOFTWARE\\mycompany\\MYKEY", "MYVALUE", "2"), "True");
    ASSERT_EQ(r.SetRegValue("HKCU\\software\\MYCOMPANY\\mykey\\Sub", "Ärger", "3"), "True");
    ASSERT_EQ(r.SetRegValue("HKCU\\software\\MYCOMPANY\\mykey\\SUB", "äRGER", "4"), "True");
    EXPECT_EQ(r.GetRegValue("HKCU\\Software\\MyCompany\\MyKey\\sub", "ÄRGER"), "4");
    EXPECT_EQ(reg.readHive("HKEY_CURRENT_USER"), Header + "[HKEY_CURRENT_USER\\Software]\n\n"
                                                          "[HKEY_CURRENT_USER\\Software\\MyCompany]\n\n"
                                                          "[HKEY_CURRENT_USER\\Software\\MyCompany\\MyKey]\n"
                                                          "\"MyValue\"=\"2\"\n\n"
                                                          "[HKEY_CURRENT_USER\\Software\\MyCompany\\MyKey\\Sub]\n"
                                                          "\"Ärger\"=\"4\"\n\n");
}

constexpr int Writes = 2000;
const char* const RaceKey = "HKCU\\Software\\tobrin\\Race";

// The child's loop: before each write it checks that its own last write is still there, so any
// write the other process lost would be seen here.
int writeLoop(const std::filesystem::path& folder, const std::string& valueName) {
    PosixRegistry store(folder);
    Registry registry(store);
    for (int i = 1; i <= Writes; ++i) {
        const std::string stored = registry.GetRegValue(RaceKey, valueName);
        if (stored != (i == 1 ? "" : std::to_string(i - 1)))
            return 1;
        if (registry.SetRegValue(RaceKey, valueName, std::to_string(i)) != "True")
            return 2;
    }
    return 0;
}

TEST(hive_concurrency, two_writing_processes_lose_nothing_and_readers_never_see_half_a_file) {
    TestRegistry reg;
    const char* const names[] = {"first", "second"};
    pid_t writers[2];
    for (int w = 0; w < 2; ++w) {
        writers[w] = ::fork();
        ASSERT_GE(writers[w], 0);
        if (writers[w] == 0)
            ::_exit(writeLoop(reg.dir().path(), names[w]));
    }

    // Read along: the file always parses.
    long reads = 0;
    int status[2] = {0, 0};
    bool done[2] = {false, false};
    while (!done[0] || !done[1]) {
        const std::string bytes = reg.readHive("HKEY_CURRENT_USER");
        if (!bytes.empty()) {
            const RegFileParse parsed = parseRegFile(bytes);
            EXPECT_TRUE(parsed.file) << "line " << parsed.error.line << ": " << parsed.error.message;
            ++reads;
        }
        for (int w = 0; w < 2; ++w)
            done[w] = done[w] || ::waitpid(writers[w], &status[w], WNOHANG) == writers[w];
    }
    for (int w = 0; w < 2; ++w) {
        ASSERT_TRUE(WIFEXITED(status[w]));
        EXPECT_EQ(WEXITSTATUS(status[w]), 0);
        EXPECT_EQ(reg.registry().GetRegValue(RaceKey, names[w]), std::to_string(Writes));
    }
    EXPECT_GT(reads, 10);
}

} // namespace
} // namespace pl::platform::posix
