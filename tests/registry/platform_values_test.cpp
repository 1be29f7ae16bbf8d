// Values that Windows keeps by itself, answered from the running system while the hive holds no
// value of that name.

#include "support/test_registry.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace pl::platform::posix {
namespace {

using test::ScopedEnv;
using test::TestRegistry;

const char* const ShellFolders = "HKCU\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";

TEST(platform_values, shell_folders_come_from_the_xdg_folders_until_a_value_is_stored) {
    TestRegistry reg;
    ScopedEnv env;
    env.set("XDG_DESKTOP_DIR", reg.dir().folder() + "Schreibtisch");
    env.set("XDG_DATA_HOME", reg.dir().folder() + "data");
    Registry& r = reg.registry();
    EXPECT_EQ(r.GetRegValue(ShellFolders, "Desktop"), reg.dir().folder() + "Schreibtisch");
    EXPECT_EQ(r.GetRegValue(ShellFolders, "local appdata"), reg.dir().folder() + "data");
    EXPECT_EQ(r.EnumRegStringValues(ShellFolders), "Desktop\rLocal AppData\r");
    EXPECT_FALSE(reg.dir().exists("HKEY_CURRENT_USER.reg"));

    ASSERT_EQ(r.SetRegValue(ShellFolders, "DESKTOP", "/elsewhere"), "True");
    EXPECT_EQ(r.GetRegValue(ShellFolders, "Desktop"), "/elsewhere");
    EXPECT_EQ(r.EnumRegStringValues(ShellFolders), "DESKTOP\rLocal AppData\r");
    EXPECT_EQ(r.DeleteRegEntry(ShellFolders, "Desktop"), "True");
    EXPECT_EQ(r.GetRegValue(ShellFolders, "Desktop"), reg.dir().folder() + "Schreibtisch");
    // Only stored values can be deleted.
    EXPECT_EQ(r.DeleteRegEntry(ShellFolders, "Desktop"), "False");
}

TEST(platform_values, locale_and_suite_folder_come_from_the_running_system) {
    const char* const International = "HKCU\\Control Panel\\International";
    TestRegistry reg;
    ScopedEnv env;
    env.set("LC_ALL", std::nullopt);
    env.set("LC_MESSAGES", std::nullopt);
    env.set("LANG", "de_AT.UTF-8");
    Registry& r = reg.registry();
    EXPECT_EQ(r.GetRegValue(International, "locale"), "00000407");
    env.set("LC_MESSAGES", "fr_FR.UTF-8");
    EXPECT_EQ(r.GetRegValue(International, "Locale"), "0000040C");
    env.set("LC_ALL", "pt_BR.UTF-8");
    EXPECT_EQ(r.GetRegValue(International, "locale"), "00000416");
    ASSERT_EQ(r.SetRegValue(International, "locale", "00000413"), "True");
    EXPECT_EQ(r.GetRegValue(International, "locale"), "00000413");

    // The suite folder is where the running program lies.
    const char* const Suite = "HKLM\\Software\\tobrin\\PaperlarkXP";
    const std::string expected = std::filesystem::canonical("/proc/self/exe").parent_path().string() + "/";
    EXPECT_EQ(r.GetRegValue("HKLM64\\Software\\tobrin\\PaperlarkXP", "pldir"), expected);
    // The machine key exists on a fresh installation, so its other values read as missing.
    EXPECT_EQ(r.EnumRegStringValues(Suite), "plDir\r");
    ASSERT_EQ(r.SetRegValue(Suite, "pldir", "/opt/paperlark/"), "True");
    EXPECT_EQ(r.GetRegValue(Suite, "plDir"), "/opt/paperlark/");
}

} // namespace
} // namespace pl::platform::posix
