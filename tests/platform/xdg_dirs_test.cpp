#include "platform/posix/posix_services.h"
#include "platform/posix/xdg_dirs.h"
#include "support/scoped_env.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace pl::platform::posix;
using pl::test::ScopedEnv;
using pl::test::TempDir;

namespace {

// A home and a configuration folder of the test's own, with no desktop settings in force.
struct FakeUser {
    TempDir config;
    ScopedEnv env;
    FakeUser() {
        env.set("HOME", "/home/tester");
        env.set("XDG_CONFIG_HOME", config.path().string());
        env.set("XDG_DESKTOP_DIR", std::nullopt);
        env.set("XDG_DOCUMENTS_DIR", std::nullopt);
        env.set("XDG_DATA_HOME", std::nullopt);
    }
};

} // namespace

TEST(xdg_dirs, desktop_is_read_from_user_dirs_with_home_expanded) {
    FakeUser user;
    user.config.write("user-dirs.dirs", "# written by the desktop\n"
                                        "XDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n"
                                        "  XDG_DESKTOP_DIR=\"$HOME/Schreib \\\"tisch\\\"\"\n");
    EXPECT_EQ(xdgDesktopDir(), "/home/tester/Schreib \"tisch\"");
    EXPECT_EQ(xdgDocumentsDir(), "/home/tester/Dokumente");
    EXPECT_EQ(PosixSpecialFolders().desktop(), "/home/tester/Schreib \"tisch\"");
}

TEST(xdg_dirs, an_absolute_entry_is_taken_as_it_is_and_a_relative_one_ignored) {
    FakeUser user;
    user.config.write("user-dirs.dirs", "XDG_DESKTOP_DIR=\"/srv/desk/\"\nXDG_DOCUMENTS_DIR=\"docs\"\n");
    EXPECT_EQ(xdgDesktopDir(), "/srv/desk");
    EXPECT_EQ(xdgDocumentsDir(), "/home/tester/Documents");
}

TEST(xdg_dirs, the_environment_overrides_the_file_and_home_is_the_last_resort) {
    FakeUser user;
    EXPECT_EQ(xdgDesktopDir(), "/home/tester/Desktop");
    user.config.write("user-dirs.dirs", "XDG_DESKTOP_DIR=\"$HOME/Arbeitsfläche\"\n");
    EXPECT_EQ(xdgDesktopDir(), "/home/tester/Arbeitsfläche");
    user.env.set("XDG_DESKTOP_DIR", "$HOME/Elsewhere");
    EXPECT_EQ(xdgDesktopDir(), "/home/tester/Elsewhere");
}

TEST(xdg_dirs, data_and_config_homes_ignore_relative_values) {
    FakeUser user;
    user.env.set("XDG_DATA_HOME", "relative/data");
    EXPECT_EQ(xdgDataHome(), "/home/tester/.local/share");
    EXPECT_EQ(PosixSpecialFolders().localAppData(), "/home/tester/.local/share");
    user.env.set("XDG_DATA_HOME", "/data/");
    EXPECT_EQ(xdgDataHome(), "/data");
    user.env.set("XDG_CONFIG_HOME", "config");
    EXPECT_EQ(xdgConfigHome(), "/home/tester/.config");
}

TEST(xdg_dirs, the_suite_folder_is_where_the_running_program_lies) {
    const auto expected = std::filesystem::canonical(PLATFORM_TEST_BINARY_DIR).string();
    EXPECT_EQ(suiteFolder(), expected + "/");
    EXPECT_EQ(PosixSpecialFolders().programFolder(), expected);
}
