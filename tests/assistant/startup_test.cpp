// Start-up of the resident form: refusals, clean-ups, spool folders, the log's first lines.

#include "assistant_world.h"

#include "platform/paths.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>

namespace pl::test {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

TEST(startup, second_instance_in_the_same_session_ends_silently_and_the_first_keeps_running) {
    AssistantWorld world;
    world.setUser("Debug", "1");
    Resident first(world, world.takenFolder);
    first.form.Form_Load();
    ASSERT_FALSE(world.state.quitRequested);
    ASSERT_TRUE(first.form.timerEnabled());

    Session secondSession(&world.registry);
    Resident second(secondSession, world.takenFolder);
    second.form.Form_Load();

    EXPECT_TRUE(secondSession.state.quitRequested);
    EXPECT_EQ(secondSession.state.exitCode, 0);
    EXPECT_FALSE(second.form.timerEnabled());
    EXPECT_TRUE(secondSession.view.messages.empty()) << "the refusal shows no message box";
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
    for (const char* name : {"username", "USER", "LOGNAME"})
        noUser.set(name, std::nullopt);
    const std::string dfFile = world.tempFolder + "~df1234.tmp";
    writeJob(dfFile);

    Resident s(world, world.takenFolder);
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

TEST(startup, an_unwritable_user_spool_folder_is_replaced_by_the_local_folder_and_written_back) {
    for (const bool writable : {false, true}) {
        AssistantWorld world;
        // A "folder" below a plain file: nothing can be created in it, whoever we are.
        if (!writable)
            world.setUser("psdir", world.root.write("blocker", "x") + "/spool/");
        Resident s(world, world.takenFolder);
        s.form.Form_Load();

        const std::string expected =
            writable ? world.userFolder : world.localAppData + "Paperlark_XP" + platform::PathSep;
        EXPECT_EQ(world.state.PsDirUser, expected);
        EXPECT_EQ(world.user("psdir"), expected);
        EXPECT_FALSE(fs::exists(expected + "test.txt")) << "the writability probe is removed again";
        EXPECT_EQ(world.state.PsDirMachine, world.machineFolder);
        EXPECT_FALSE(world.state.quitRequested);
    }
}

TEST(startup, stale_tilde_files_go_by_age_and_df_temporaries_go_whatever_their_age) {
    AssistantWorld world;
    fs::create_directories(world.localAppData + "Paperlark_XP");
    const auto now = std::chrono::system_clock::now();
    const auto cutoff = startOfDayDaysAgo(3);
    struct Case {
        std::string path;
        std::chrono::system_clock::time_point modified;
        bool kept;
    };
    const Case cases[] = {
        {world.machineFolder + "~alice17.ps", now - 96h, false},
        {world.machineFolder + "~alice18.ps", cutoff - 1min, false},
        {world.machineFolder + "~alice19.ps", cutoff + 1min, true},
        {world.machineFolder + "~bob3.ps", now - 24h, true},
        {world.machineFolder + "alice_old.ps", now - 240h, true}, // only "~" files are stale
        {world.localAppData + "Paperlark_XP/~x.ps", now - 120h, false},
        {world.localAppData + "Paperlark_XP/~y.ps", now - 1h, true},
        {world.tempFolder + "~DF0001.TMP", now, false},
        {world.tempFolder + "~df0002.tmp", now - 2400h, false},
        {world.tempFolder + "~other.tmp", now - 2400h, true},
    };
    for (const Case& c : cases)
        world.fileAt(c.path, c.modified);

    Resident s(world, world.takenFolder);
    s.form.Form_Load();

    for (const Case& c : cases)
        EXPECT_EQ(fs::exists(c.path), c.kept) << c.path;
}

// One ordinary start settles everything at once: the log, the switches, the terminal-server names,
// the tray texts, and the removal of the virtual-store copies.
TEST(startup, a_start_writes_the_log_header_and_settles_names_switches_and_clean_ups) {
    AssistantWorld world;
    world.setUser("Debug", "1");
    world.setMachine("language", "1");
    world.setUser("Pagemaker5", "1");
    world.setMachine("CitrixUnload", "1");
    world.setUser("DisableFCN", "yes");
    world.setUser("TsName", "carol");
    world.setMachine("TsName", "bob");
    world.setUser("TsPath", world.root.folder() + "ts");
    const std::string storeKey = "Software\\Classes\\VirtualStore\\MACHINE\\SOFTWARE\\tobrin\\PaperlarkXP";
    world.registry.SetRegValue("HKEY_CURRENT_USER\\" + storeKey, "psdir", "C:\\old\\");
    const std::string store = world.localAppData + "VirtualStore/Program Files/Paperlark_XP/";
    fs::create_directories(store);
    writeJob(store + "default.plp");
    std::ofstream(world.logFile()) << "left over from the last run\r\n";

    // The folder the program starts in: on Windows the start goes on to the profile's drive.
    const std::string startFolder = fs::current_path().string();
    Resident s(world, world.takenFolder);
    s.form.Form_Load();

    const auto lines = world.logLines();
    ASSERT_GE(lines.size(), 3u);
    const std::time_t now = std::time(nullptr);
    char date[32];
    std::strftime(date, sizeof date, "%d.%m.%Y", std::localtime(&now));
    EXPECT_TRUE(lines[0].starts_with(std::string("Starte plAssist.exe am ") + date + " um ")) << lines[0];
    EXPECT_EQ(lines[0].size(), std::string("Starte plAssist.exe am DD.MM.YYYY um HH:MM").size());
    EXPECT_TRUE(lines[1].starts_with("Version 4.12.")) << lines[1];
    EXPECT_EQ(lines[2], "CurDir = " + startFolder);
    EXPECT_EQ(world.state.DebugMode, "1");

    EXPECT_TRUE(world.state.Pm5Support);
    EXPECT_TRUE(world.state.CitrixUnload);
    EXPECT_FALSE(world.state.DisableFcn) << "switches are on only for exactly \"1\"";
    EXPECT_EQ(world.state.TsName, "bob") << "the machine's name wins over any but \"*\"";
    EXPECT_EQ(world.state.TsPath, world.tsFolder) << "a separator is appended";

    texts::Texts german;
    german.setLanguage(texts::German);
    ASSERT_FALSE(german.text(13).empty());
    EXPECT_EQ(s.form.control("txtTooltip").text, german.text(13));
    EXPECT_EQ(s.form.control("mnShowPlAssist").caption, german.text(13));
    EXPECT_TRUE(world.view.saw("hide frmPlAssist1"));

    EXPECT_FALSE(world.testRegistry.backend().keyExists(platform::HKEY_CURRENT_USER, storeKey, 0));
    EXPECT_FALSE(fs::exists(store));
    EXPECT_TRUE(fs::exists(world.localAppData + "VirtualStore/Program Files"));
}

TEST(startup, a_defect_language_text_with_error_reports_off_leaves_the_watcher_armed) {
    AssistantWorld world;
    world.setMachine("DisableErr", "1");
    world.setMachine("language", "3");
    world.setMachine("LanFile", "defect.lan");
    world.setMachine("plDir", world.root.folder());
    world.root.write("defect.lan", "[plAssist.exe]\r\ntext_13:BOT\r\nnever ended\r\n");
    Resident s(world, world.takenFolder);
    s.form.Form_Load();
    EXPECT_TRUE(s.form.timerEnabled());
    EXPECT_FALSE(world.state.quitRequested);
    EXPECT_TRUE(world.view.messages.empty());
}

TEST(startup, a_failing_start_is_announced_and_ends_the_assistant) {
    for (const bool companion : {true, false}) {
        AssistantWorld world;
        const std::string missing = world.root.folder() + "no-such-program";
        if (companion) {
            world.state.CommandLine = missing;
        } else {
            // A DWORD that does not fit the classic signed long raises an overflow when read as text.
            const platform::RegValue debug{"Debug", platform::regtype::Dword, {0x00, 0x00, 0x00, 0x80}};
            ASSERT_EQ(world.testRegistry.backend().setValue(platform::HKEY_CURRENT_USER,
                                                            "Software\\tobrin\\PaperlarkXP", debug, 0),
                      platform::RegOk);
        }
        Resident s(world, world.takenFolder);
        s.form.Form_Load();

        EXPECT_TRUE(world.state.quitRequested);
        EXPECT_FALSE(s.form.timerEnabled());
        ASSERT_EQ(world.view.messages.size(), 1u);
        const std::string& prompt = world.view.messages[0].prompt;
        if (companion) {
            EXPECT_EQ(prompt,
                      "You have tried to run " + missing + " but this has failed! - plAssist.exe is exiting now.");
        } else {
            EXPECT_NE(prompt.find("Error 6 (Overflow)"), std::string::npos) << prompt;
            EXPECT_NE(prompt.find("frmPlAssist1.Form.Load\r\n\r\nData:\r\n1: Init"), std::string::npos) << prompt;
        }
    }
}

} // namespace
} // namespace pl::test
