#include "assistant/runtime_helpers.h"

#include "support/test_services.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace pl;

namespace {

constexpr std::string_view ShellFolders = "HKCU\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
constexpr std::string_view UserKey = "HKCU\\Software\\tobrin\\PaperlarkXP";
constexpr std::string_view MachineKey = "HKLM\\Software\\tobrin\\PaperlarkXP";

struct runtime_helpers : ::testing::Test {
    test::TempDir home;
    test::TestServices real;
    Services& services = real.services;
    test::ScopedEnv env;
    texts::Texts texts;
};

} // namespace

TEST_F(runtime_helpers, log_lines_go_to_the_desktop_whenever_the_profile_folder_exists) {
    home.write("profile/ntuser.dat", "");
    std::filesystem::create_directories(home.path() / "fresh-profile");
    env.set("PLTEST_HOME", home.path().string());
    real.set(ShellFolders, "Desktop", "%PLTEST_HOME%/Schreibtisch");
    struct Case {
        std::optional<std::string> profile;
        std::string log;
    };
    for (const Case& c :
         {Case{home.folder() + "profile", home.folder() + "Schreibtisch/plAssist.log"},
          Case{home.folder() + "fresh-profile", home.folder() + "Schreibtisch/plAssist.log"},
          Case{home.folder() + "no-such-profile", "/tmp/plAssist.log"}, Case{std::nullopt, "/tmp/plAssist.log"}}) {
        env.set("userprofile", c.profile);
        env.set("HOME", "");
        EXPECT_EQ(assistant::logFilePath(services), c.log) << c.profile.value_or("no profile");
    }

    env.set("userprofile", home.folder() + "profile");
    home.write("Schreibtisch/readme.txt", "");
    assistant::DebugWrite("Starte plAssist.exe", services);
    assistant::DebugWrite("Datei gefunden: Anna.ps", services);
    EXPECT_EQ(home.read("Schreibtisch/plAssist.log"), "Starte plAssist.exe\r\nDatei gefunden: Anna.ps\r\n");

    // A log that cannot be written is lost quietly.
    real.set(ShellFolders, "Desktop", home.folder() + "missing/folder");
    assistant::DebugWrite("oeffne Dialog", services);
    EXPECT_FALSE(home.exists("missing"));
    EXPECT_TRUE(real.errors.entries.empty());
}

TEST_F(runtime_helpers, desktop_name_is_the_last_part_of_the_desktop_path) {
    env.set("PLTEST_DESK", "/srv/desks/Escritorio");
    // Without a registry value the platform names the desktop.
    home.write("config/user-dirs.dirs", "XDG_DESKTOP_DIR=\"$HOME/Skrivebord\"\n");
    env.set("HOME", home.path().string());
    env.set("XDG_CONFIG_HOME", home.folder() + "config");
    for (const auto& [value, name] : {std::pair<std::string, std::string>{"/home/anna/Schreibtisch", "Schreibtisch"},
                                      {std::string("/home/anna/Bureau") + '\0', "Bureau"},
                                      {"Arbeitsfläche", "Desktop"},
                                      {"%PLTEST_DESK%", "Escritorio"},
                                      {"", "Skrivebord"}}) {
        real.set(ShellFolders, "Desktop", value);
        EXPECT_EQ(assistant::LoadDesktop(services), name) << value;
    }
}

TEST_F(runtime_helpers, a_renamed_job_is_hidden_from_the_watcher_under_a_free_number) {
    env.set("username", "Anna");
    // Half the numbers are taken: fifty draws all landing on taken ones will not happen.
    for (int n = 1; n <= 500; ++n)
        home.write("spool/~Anna" + std::to_string(n) + ".ps", "old " + std::to_string(n));
    const std::string job = home.write("spool/Anna-Brief.ps", "%!PS job");

    const std::string renamed = assistant::RandomNamePSFile(job, home.folder() + "spool/", texts, services);

    // folder + "~" + user name + a number from 1 to 999 + ".ps"
    const std::string prefix = home.folder() + "spool/~Anna";
    ASSERT_TRUE(renamed.starts_with(prefix) && renamed.ends_with(".ps")) << renamed;
    const std::string digits = renamed.substr(prefix.size(), renamed.size() - prefix.size() - 3);
    ASSERT_TRUE(!digits.empty() && digits.find_first_not_of("0123456789") == std::string::npos) << renamed;
    EXPECT_GE(std::stoi(digits), 501);
    EXPECT_LE(std::stoi(digits), 999);
    EXPECT_FALSE(std::filesystem::exists(job));
    EXPECT_EQ(home.read(renamed.substr(home.folder().size())), "%!PS job");
    for (int n = 1; n <= 500; ++n)
        ASSERT_EQ(home.read("spool/~Anna" + std::to_string(n) + ".ps"), "old " + std::to_string(n));
    EXPECT_TRUE(real.view.messages.empty());
}

TEST_F(runtime_helpers, job_that_cannot_be_renamed_is_reported_to_the_user) {
    env.set("username", "Anna");
    texts.setLanguage(texts::German);
    for (int n = 1; n <= 999; ++n) // every name taken
        home.write("spool/~Anna" + std::to_string(n) + ".ps", "");
    const std::string job = home.write("spool/Anna.ps", "job");
    const std::string missing = home.folder() + "spool/Gone.ps";

    EXPECT_EQ(assistant::RandomNamePSFile(job, home.folder() + "spool/", texts, services), "");
    EXPECT_EQ(assistant::RandomNamePSFile(missing, home.folder() + "spool/", texts, services), "");

    EXPECT_EQ(home.read("spool/Anna.ps"), "job");
    ASSERT_EQ(real.view.messages.size(), 2u);
    EXPECT_EQ(real.view.messages[0].prompt, "Unzulässiger Pfad\nPermission error: Cannot delete " + job);
    EXPECT_EQ(real.view.messages[0].style, mb::Exclamation);
    EXPECT_EQ(real.view.messages[1].prompt, "Unzulässiger Pfad\nPermission error: Cannot delete " + missing);
    EXPECT_TRUE(real.errors.entries.empty());
}

TEST_F(runtime_helpers, ghostscript_named_in_the_settings_or_on_the_path_enables_encryption) {
    // The machine's own Ghostscript, found the way a user's shell would find it.
    EXPECT_TRUE(assistant::EncryptionAvailable(services));

    env.set("PATH", home.folder() + "empty-path");
    EXPECT_FALSE(assistant::EncryptionAvailable(services));
    home.write("gs10/bin/gswin64c.exe", "");
    real.set(MachineKey, "gswin32c", home.folder() + "gs10");
    EXPECT_TRUE(assistant::EncryptionAvailable(services));
    // The user's value is asked first, but one naming nothing does not hide the machine's.
    real.set(UserKey, "gswin32c", home.folder() + "nowhere");
    EXPECT_TRUE(assistant::EncryptionAvailable(services));
    real.set(MachineKey, "gswin32c", "");
    EXPECT_FALSE(assistant::EncryptionAvailable(services));
    home.write("tools/gs/gs", "");
    env.set("PLTEST_TOOLS", home.folder() + "tools");
    real.set(UserKey, "gswin32c", "%PLTEST_TOOLS%");
    EXPECT_TRUE(assistant::EncryptionAvailable(services));
    real.set(UserKey, "gswin32c", home.folder() + "tools/gs/gs");
    EXPECT_TRUE(assistant::EncryptionAvailable(services));
    real.set(UserKey, "gswin32c", "");

    home.write("bin/gs", "");
    env.set("PATH", "/nonexistent:" + home.folder() + "bin");
    EXPECT_TRUE(assistant::EncryptionAvailable(services));
    home.write("gs-as-folder/gs/placeholder", "");
    env.set("PATH", home.folder() + "gs-as-folder");
    EXPECT_FALSE(assistant::EncryptionAvailable(services));
}
