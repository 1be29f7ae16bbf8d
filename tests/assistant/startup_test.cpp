// Start-up of the resident form: refusals, clean-ups, spool folders, the log's first lines.

#include "assistant_world.h"

#include "base/text.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>

namespace pl::test {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

struct Started {
    explicit Started(AssistantWorld& w)
        : world(w), host(w.state, w.os->files(), w.takenFolder), form(*w.context, host) {}
    AssistantWorld& world;
    TakingDialogHost host;
    assistant::ResidentForm form;
};

TEST(startup, second_instance_in_the_same_session_ends_silently_and_the_first_keeps_running) {
    AssistantWorld world;
    world.setUser("Debug", "1");
    Started first(world);
    first.form.Form_Load();
    ASSERT_FALSE(world.state.quitRequested);
    ASSERT_TRUE(first.form.timerEnabled());

    forms::AppState secondState;
    assistant::ErrorReport secondReport(*world.os, world.registry, world.view, secondState, [](int) {});
    Services secondServices{*world.os, world.registry, secondReport, world.view};
    texts::Texts secondTexts;
    forms::Context secondContext{secondServices, secondState, secondTexts, world.naming, world.view};
    TakingDialogHost secondHost(secondState, world.os->files(), world.takenFolder);
    assistant::ResidentForm second(secondContext, secondHost);
    second.Form_Load();

    EXPECT_TRUE(secondState.quitRequested);
    EXPECT_EQ(secondState.exitCode, 0);
    EXPECT_FALSE(second.timerEnabled());
    EXPECT_TRUE(world.view.messages.empty()) << "the refusal shows no message box";
    const auto lines = world.logLines();
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back(), "Paperlark Assistant bereits gestartet");

    // The first one still watches: a job of its user is handed to the dialog.
    writeJob(world.machineFolder + "alice_report.ps");
    first.form.Timer1_Timer();
    EXPECT_FALSE(world.state.quitRequested);
    ASSERT_EQ(first.host.taken.size(), 1u);
}

TEST(startup, a_session_without_user_name_ends_after_the_clean_ups) {
    AssistantWorld world;
    world.setUser("Debug", "1");
    ScopedEnv noUser;
    noUser.set("username", std::nullopt);
    noUser.set("USER", std::nullopt);
    noUser.set("LOGNAME", std::nullopt);
    const std::string dfFile = world.tempFolder + "~df1234.tmp";
    writeJob(dfFile);

    Started s(world);
    s.form.Form_Load();

    EXPECT_TRUE(world.state.quitRequested);
    EXPECT_FALSE(s.form.timerEnabled());
    EXPECT_FALSE(fs::exists(dfFile)) << "the clean-ups run before the user name is checked";
    EXPECT_TRUE(world.view.messages.empty());
    const auto lines = world.logLines();
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back(),
              "Paperlark Assistant kann nicht als Dienst gestartet werden. Er benoetigt einen Benutzernamen!");
}

TEST(startup, a_companion_program_that_cannot_start_is_announced_and_ends_the_assistant) {
    AssistantWorld world;
    const std::string missing = world.root.folder() + "no-such-program";
    world.state.CommandLine = missing;
    Started s(world);
    s.form.Form_Load();

    EXPECT_TRUE(world.state.quitRequested);
    ASSERT_EQ(world.view.messages.size(), 1u);
    EXPECT_EQ(world.view.messages[0].prompt,
              "You have tried to run " + missing + " but this has failed! - plAssist.exe is exiting now.");
    EXPECT_FALSE(s.form.timerEnabled());
}

TEST(startup, an_unwritable_user_spool_folder_is_replaced_by_the_local_folder_and_written_back) {
    AssistantWorld world;
    // A "folder" below a plain file: nothing can be created in it, whoever we are.
    const std::string blocker = world.root.write("blocker", "x");
    world.setUser("psdir", blocker + "/spool/");
    Started s(world);
    s.form.Form_Load();

    const std::string expected = world.localAppData + "Paperlark_XP/";
    EXPECT_EQ(world.state.PsDirUser, expected);
    EXPECT_EQ(world.user("psdir"), expected);
    EXPECT_FALSE(world.state.quitRequested);
}

TEST(startup, a_writable_user_spool_folder_is_kept_and_left_clean) {
    AssistantWorld world;
    Started s(world);
    s.form.Form_Load();
    EXPECT_EQ(world.state.PsDirUser, world.userFolder);
    EXPECT_EQ(world.user("psdir"), world.userFolder);
    EXPECT_FALSE(fs::exists(world.userFolder + "test.txt")) << "the writability probe is removed again";
    EXPECT_EQ(world.state.PsDirMachine, world.machineFolder);
}

TEST(startup, terminal_server_name_and_folder_follow_their_rules) {
    struct Case {
        const char* userName;
        const char* machineName;
        const char* expected;
    };
    for (const Case& c : {Case{"*", "bob", "*"}, Case{"carol", "bob", "bob"}, Case{"", "", "alice"}}) {
        AssistantWorld world;
        if (*c.userName)
            world.setUser("TsName", c.userName);
        if (*c.machineName)
            world.setMachine("TsName", c.machineName);
        world.setUser("TsPath", world.root.folder() + "ts");
        Started s(world);
        s.form.Form_Load();
        EXPECT_EQ(world.state.TsName, c.expected) << "user " << c.userName << ", machine " << c.machineName;
        EXPECT_EQ(world.state.TsPath, world.tsFolder) << "a separator is appended";
    }
    AssistantWorld world;
    Started s(world);
    s.form.Form_Load();
    EXPECT_EQ(world.state.TsPath, "") << "no terminal-server folder stays none";
}

TEST(startup, stale_tilde_files_go_by_age_and_df_temporaries_go_whatever_their_age) {
    AssistantWorld world;
    const auto now = std::chrono::system_clock::now();
    const auto cutoff = startOfDayDaysAgo(3);
    const std::string psdirOld = world.fileAt(world.machineFolder + "~alice17.ps", now - 96h);
    const std::string psdirJustBefore = world.fileAt(world.machineFolder + "~alice18.ps", cutoff - 1min);
    const std::string psdirJustAfter = world.fileAt(world.machineFolder + "~alice19.ps", cutoff + 1min);
    const std::string psdirYesterday = world.fileAt(world.machineFolder + "~bob3.ps", now - 24h);
    const std::string oldJob = world.fileAt(world.machineFolder + "alice_old.ps", now - 240h);
    fs::create_directories(world.localAppData + "Paperlark_XP");
    const std::string localOld = world.fileAt(world.localAppData + "Paperlark_XP/~x.ps", now - 120h);
    const std::string localNew = world.fileAt(world.localAppData + "Paperlark_XP/~y.ps", now - 1h);
    const std::string dfNew = world.fileAt(world.tempFolder + "~DF0001.TMP", now);
    const std::string dfOld = world.fileAt(world.tempFolder + "~df0002.tmp", now - 2400h);
    const std::string otherTemp = world.fileAt(world.tempFolder + "~other.tmp", now - 2400h);

    Started s(world);
    s.form.Form_Load();

    EXPECT_FALSE(fs::exists(psdirOld));
    EXPECT_FALSE(fs::exists(psdirJustBefore));
    EXPECT_TRUE(fs::exists(psdirJustAfter));
    EXPECT_TRUE(fs::exists(psdirYesterday));
    EXPECT_TRUE(fs::exists(oldJob)) << "only \"~\" files are stale";
    EXPECT_FALSE(fs::exists(localOld));
    EXPECT_TRUE(fs::exists(localNew));
    EXPECT_FALSE(fs::exists(dfNew));
    EXPECT_FALSE(fs::exists(dfOld));
    EXPECT_TRUE(fs::exists(otherTemp));
}

TEST(startup, the_virtual_store_copies_of_the_machine_settings_are_removed) {
    AssistantWorld world;
    const std::string storeKey =
        "HKEY_CURRENT_USER\\Software\\Classes\\VirtualStore\\MACHINE\\SOFTWARE\\tobrin\\PaperlarkXP";
    world.registry.SetRegValue(storeKey, "psdir", "C:\\old\\");
    const std::string store = world.localAppData + "VirtualStore/Program Files/Paperlark_XP/";
    fs::create_directories(store);
    writeJob(store + "default.plp");
    writeJob(store + "german.lan");

    Started s(world);
    s.form.Form_Load();

    EXPECT_FALSE(world.testRegistry.backend().keyExists(
        platform::HKEY_CURRENT_USER, "Software\\Classes\\VirtualStore\\MACHINE\\SOFTWARE\\tobrin\\PaperlarkXP", 0));
    EXPECT_FALSE(fs::exists(store));
    EXPECT_TRUE(fs::exists(world.localAppData + "VirtualStore/Program Files"));
}

TEST(startup, a_fresh_log_begins_with_the_start_version_and_folder_lines) {
    AssistantWorld world;
    world.setUser("Debug", "1");
    {
        std::ofstream old(world.logFile());
        old << "left over from the last run\r\n";
    }
    Started s(world);
    s.form.Form_Load();

    const auto lines = world.logLines();
    ASSERT_GE(lines.size(), 3u);
    const std::time_t now = std::time(nullptr);
    char date[32];
    std::strftime(date, sizeof date, "%d.%m.%Y", std::localtime(&now));
    EXPECT_TRUE(lines[0].starts_with(std::string("Starte plAssist.exe am ") + date + " um ")) << lines[0];
    EXPECT_EQ(lines[0].size(), std::string("Starte plAssist.exe am DD.MM.YYYY um HH:MM").size());
    EXPECT_TRUE(lines[1].starts_with("Version 4.12.")) << lines[1];
    EXPECT_EQ(lines[2], "CurDir = " + fs::current_path().string());
    EXPECT_EQ(world.state.DebugMode, "1");
}

TEST(startup, the_tray_tip_and_menu_caption_take_text_13_of_the_chosen_language) {
    for (const char* language : {"1", "2"}) {
        AssistantWorld world;
        world.setMachine("language", language);
        Started s(world);
        s.form.Form_Load();
        texts::Texts reference;
        reference.setLanguage(std::stoi(language));
        const std::string expected = reference.text(13);
        ASSERT_FALSE(expected.empty());
        EXPECT_EQ(s.form.control("txtTooltip").text, expected);
        EXPECT_EQ(s.form.control("mnShowPlAssist").caption, expected);
        EXPECT_TRUE(world.view.saw("hide frmPlAssist1"));
    }
}

TEST(startup, settings_switches_are_on_only_for_exactly_1) {
    AssistantWorld world;
    world.setUser("Pagemaker5", "1");
    world.setMachine("CitrixUnload", "1");
    world.setUser("DisableFCN", "yes");
    Started s(world);
    s.form.Form_Load();
    EXPECT_TRUE(world.state.Pm5Support);
    EXPECT_TRUE(world.state.CitrixUnload);
    EXPECT_FALSE(world.state.DisableFcn);
}

TEST(startup, the_working_drive_is_the_profile_drive_unless_the_profile_is_on_the_network) {
    AssistantWorld world;
    {
        ScopedEnv profile("userprofile", "C:\\Users\\alice");
        Started s(world);
        s.form.Form_Load();
        EXPECT_EQ(s.form.workingDrive(), "C:");
        EXPECT_EQ(world.state.StepName, "6: ChDrive C:\\Users\\alice");
    }
    AssistantWorld other;
    ScopedEnv profile("userprofile", "\\\\server\\profiles\\alice");
    Started s(other);
    s.form.Form_Load();
    EXPECT_EQ(s.form.workingDrive(), "");
}

TEST(startup, an_error_while_loading_is_reported_with_the_stage_that_failed) {
    AssistantWorld world;
    // A DWORD that does not fit the classic signed long raises an overflow when read as text.
    platform::RegValue debug;
    debug.name = "Debug";
    debug.type = platform::regtype::Dword;
    debug.data = {0x00, 0x00, 0x00, 0x80};
    ASSERT_EQ(
        world.testRegistry.backend().setValue(platform::HKEY_CURRENT_USER, "Software\\tobrin\\PaperlarkXP", debug, 0),
        platform::RegOk);
    Started s(world);
    s.form.Form_Load();

    EXPECT_TRUE(world.state.quitRequested);
    EXPECT_FALSE(s.form.timerEnabled());
    ASSERT_EQ(world.view.messages.size(), 1u);
    const std::string& prompt = world.view.messages[0].prompt;
    EXPECT_NE(prompt.find("Error 6 (Overflow)"), std::string::npos) << prompt;
    EXPECT_NE(prompt.find("frmPlAssist1.Form.Load"), std::string::npos) << prompt;
    EXPECT_NE(prompt.find("Data:\r\n1: Init"), std::string::npos) << prompt;
}

} // namespace
} // namespace pl::test
