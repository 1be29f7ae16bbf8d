// Values that Windows keeps by itself, answered from the running system while the hive holds no
// value of that name.

#include "platform/posix/registry/platform_values.h"
#include "support/test_registry.h"

#include <gtest/gtest.h>

#include <filesystem>

#include <sys/utsname.h>

namespace pl::platform::posix {
namespace {

using test::ScopedEnv;
using test::TestRegistry;

const char* const ShellFolders = "HKCU\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
const char* const International = "HKCU\\Control Panel\\International";
const char* const WindowsNt = "HKLM\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion";
const char* const Suite = "HKLM\\Software\\tobrin\\PaperlarkXP";

TEST(platform_values, shell_folders_come_from_the_xdg_folders_until_a_value_is_stored) {
    TestRegistry reg;
    ScopedEnv env;
    env.set("XDG_DESKTOP_DIR", reg.dir().folder() + "Schreibtisch");
    env.set("XDG_DATA_HOME", reg.dir().folder() + "data");
    Registry& r = reg.registry();
    EXPECT_EQ(r.GetRegValue(ShellFolders, "Desktop"), reg.dir().folder() + "Schreibtisch");
    EXPECT_EQ(r.GetRegValue(ShellFolders, "local appdata"), reg.dir().folder() + "data");
    EXPECT_EQ(r.EnumRegStringValues(ShellFolders), "Desktop\rLocal AppData\r");
    EXPECT_EQ(r.EnumRegStringValues("HKCU\\Software\\Microsoft\\Windows"), std::nullopt);
    EXPECT_FALSE(reg.dir().exists("HKEY_CURRENT_USER.reg"));

    ASSERT_EQ(r.SetRegValue(ShellFolders, "DESKTOP", "/elsewhere"), "True");
    EXPECT_EQ(r.GetRegValue(ShellFolders, "Desktop"), "/elsewhere");
    EXPECT_EQ(r.EnumRegStringValues(ShellFolders), "DESKTOP\rLocal AppData\r");
    EXPECT_EQ(r.DeleteRegEntry(ShellFolders, "Desktop"), "True");
    EXPECT_EQ(r.GetRegValue(ShellFolders, "Desktop"), reg.dir().folder() + "Schreibtisch");
    // Only stored values can be deleted.
    EXPECT_EQ(r.DeleteRegEntry(ShellFolders, "Desktop"), "False");
}

TEST(platform_values, locale_follows_lc_all_then_lc_messages_then_lang) {
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
    env.set("LC_ALL", "");
    EXPECT_EQ(r.GetRegValue(International, "locale"), "0000040C");
    ASSERT_EQ(r.SetRegValue(International, "locale", "00000413"), "True");
    EXPECT_EQ(r.GetRegValue(International, "locale"), "00000413");
}

TEST(platform_values, locale_names_map_to_windows_locale_identifiers) {
    const std::pair<const char*, const char*> cases[] = {
        {"de_DE.UTF-8", "00000407"},
        {"de_CH", "00000407"},
        {"en_US.UTF-8", "00000409"},
        {"en_GB.UTF-8", "00000809"},
        {"fr_FR", "0000040C"},
        {"it_IT.UTF-8", "00000410"},
        {"nl_NL", "00000413"},
        {"es_ES.UTF-8", "0000040A"},
        {"pt_BR.UTF-8", "00000416"},
        {"pt_PT", "00000816"},
        {"pl_PL", "00000415"},
        {"ru_RU.UTF-8", "00000419"},
        {"zh_CN.UTF-8", "00000804"},
        {"zh_TW.UTF-8", "00000404"},
        {"cs_CZ", "00000405"},
        {"hu_HU", "0000040E"},
        {"fi_FI", "0000040B"},
        {"nb_NO.UTF-8", "00000414"},
        {"no_NO", "00000414"},
        {"sv_SE@euro", "0000041D"},
        {"C", "00000409"},
        {"POSIX", "00000409"},
        {"", "00000409"},
        {"xx_YY", "00000409"},
    };
    for (const auto& [posix, windows] : cases)
        EXPECT_EQ(localeIdentifier(posix), windows) << posix;
}

TEST(platform_values, windows_version_comes_from_the_kernel_and_os_release) {
    TestRegistry reg;
    Registry& r = reg.registry();
    utsname names{};
    ASSERT_EQ(::uname(&names), 0);
    const std::string release = names.release;
    const std::string version = r.GetRegValue(WindowsNt, "CurrentVersion");
    const std::string build = r.GetRegValue(WindowsNt, "CurrentBuildNumber");
    ASSERT_NE(version.find('.'), std::string::npos) << version;
    EXPECT_TRUE(release.starts_with(version + "." + build)) << release << " vs " << version << "." << build;
    EXPECT_FALSE(r.GetRegValue(WindowsNt, "CSDVersion").empty());
    EXPECT_EQ(r.GetRegValue(WindowsNt, "ProductName"), "");
}

TEST(platform_values, suite_folder_is_where_the_running_program_lies) {
    TestRegistry reg;
    Registry& r = reg.registry();
    const std::string expected = std::filesystem::canonical("/proc/self/exe").parent_path().string() + "/";
    EXPECT_EQ(r.GetRegValue(Suite, "plDir"), expected);
    EXPECT_EQ(r.GetRegValue("HKLM64\\Software\\tobrin\\PaperlarkXP", "pldir"), expected);
    // The machine key exists on a fresh installation, so its other values read as missing.
    EXPECT_EQ(r.GetRegValue(Suite, "psdir"), "");
    EXPECT_EQ(r.EnumRegStringValues(Suite), "plDir\r");
    ASSERT_EQ(r.SetRegValue(Suite, "pldir", "/opt/paperlark/"), "True");
    EXPECT_EQ(r.GetRegValue(Suite, "plDir"), "/opt/paperlark/");
}

} // namespace
} // namespace pl::platform::posix
