#include "converter/settings.h"

#include "platform/platform.h"
#include "support/scoped_env.h"
#include "support/temp_dir.h"
#include "support/test_registry.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;
using pl::converter::parseTimeLimit;
using pl::converter::readSettings;

namespace {

constexpr const char* kUser = "HKCU\\Software\\tobrin\\PaperlarkXP";
constexpr const char* kMachine = "HKLM\\Software\\tobrin\\PaperlarkXP";

} // namespace

TEST(converter_settings, the_time_limit_is_whole_seconds_of_at_least_one) {
    EXPECT_EQ(parseTimeLimit("3"), 3s);
    EXPECT_EQ(parseTimeLimit(" 120 "), 120s);
    EXPECT_FALSE(parseTimeLimit(""));
    EXPECT_FALSE(parseTimeLimit("0"));
    EXPECT_FALSE(parseTimeLimit("-5"));
    EXPECT_FALSE(parseTimeLimit("10s"));
    EXPECT_FALSE(parseTimeLimit("1.5"));
    EXPECT_FALSE(parseTimeLimit("99999999999999999999999"));
}

TEST(converter_settings, nothing_set_or_no_registry_gives_the_defaults) {
    pl::test::TestRegistry reg;
    auto os = pl::platform::makeNativePlatform();
    for (const pl::platform::Registry* registry : {&reg.registry(), static_cast<pl::platform::Registry*>(nullptr)}) {
        const auto settings = readSettings(registry, os->environment(), os->files(), "gs");
        EXPECT_EQ(settings.ghostscript, "gs");
        EXPECT_EQ(settings.timeLimit, 600s);
        EXPECT_FALSE(settings.debug);
    }
}

TEST(converter_settings, the_user_key_wins_over_the_machine_key) {
    pl::test::TestRegistry reg;
    auto os = pl::platform::makeNativePlatform();
    reg.registry().SetRegValue(kMachine, "GsTimeout", "30");
    reg.registry().SetRegValue(kMachine, "gswin32c", "/machine/gs");
    auto settings = readSettings(&reg.registry(), os->environment(), os->files(), "gs");
    EXPECT_EQ(settings.timeLimit, 30s);
    EXPECT_EQ(settings.ghostscript, "/machine/gs");

    reg.registry().SetRegValue(kUser, "GsTimeout", "4");
    reg.registry().SetRegValue(kUser, "gswin32c", "/user/gs");
    settings = readSettings(&reg.registry(), os->environment(), os->files(), "gs");
    EXPECT_EQ(settings.timeLimit, 4s);
    EXPECT_EQ(settings.ghostscript, "/user/gs");

    // A user value that is no time limit is no setting: the default, not the machine's value.
    reg.registry().SetRegValue(kUser, "GsTimeout", "soon");
    EXPECT_EQ(readSettings(&reg.registry(), os->environment(), os->files(), "gs").timeLimit, 600s);
}

TEST(converter_settings, the_ghostscript_path_may_name_environment_variables) {
    pl::test::TestRegistry reg;
    pl::test::ScopedEnv env("PAPERLARK_TEST_GS_HOME", "/opt/ghostscript");
    auto os = pl::platform::makeNativePlatform();
    reg.registry().SetRegValue(kUser, "gswin32c", "%PAPERLARK_TEST_GS_HOME%/bin/gs");
    EXPECT_EQ(readSettings(&reg.registry(), os->environment(), os->files(), "gs").ghostscript,
              "/opt/ghostscript/bin/gs");
}

TEST(converter_settings, only_the_users_debug_switch_set_to_1_writes_the_log) {
    pl::test::TestRegistry reg;
    auto os = pl::platform::makeNativePlatform();
    reg.registry().SetRegValue(kMachine, "Debug", "1");
    EXPECT_FALSE(readSettings(&reg.registry(), os->environment(), os->files(), "gs").debug);
    reg.registry().SetRegValue(kUser, "Debug", "2");
    EXPECT_FALSE(readSettings(&reg.registry(), os->environment(), os->files(), "gs").debug);
    reg.registry().SetRegValue(kUser, "Debug", "1");
    EXPECT_TRUE(readSettings(&reg.registry(), os->environment(), os->files(), "gs").debug);
}

TEST(converter_settings, a_broken_registry_store_gives_the_defaults) {
    pl::test::TestRegistry reg;
    auto os = pl::platform::makeNativePlatform();
    reg.writeHive("HKEY_CURRENT_USER", "this is not a registry file\n[unclosed\n\"GsTimeout\"=\"3\"\n");
    const auto settings = readSettings(&reg.registry(), os->environment(), os->files(), "gs");
    EXPECT_EQ(settings.ghostscript, "gs");
    EXPECT_EQ(settings.timeLimit, 600s);
}

TEST(converter_settings, a_ghostscript_folder_is_searched_for_the_program) {
    pl::test::TestRegistry reg;
    pl::test::TempDir dir;
    auto os = pl::platform::makeNativePlatform();
    const std::string program = dir.write("gs10/bin/gs", "");
    reg.registry().SetRegValue(kUser, "gswin32c", dir.folder() + "gs10");
    EXPECT_EQ(readSettings(&reg.registry(), os->environment(), os->files(), "gs").ghostscript, program);
    reg.registry().SetRegValue(kUser, "gswin32c", dir.folder() + "gs10/bin/");
    EXPECT_EQ(readSettings(&reg.registry(), os->environment(), os->files(), "gs").ghostscript, program);

    // A folder without the program stays as it is, so that the failure can name it.
    reg.registry().SetRegValue(kUser, "gswin32c", dir.folder());
    EXPECT_EQ(readSettings(&reg.registry(), os->environment(), os->files(), "gs").ghostscript, dir.folder());
}
