// The spool-folder watcher, tick by tick, with real folders. Every test runs twice: with the folder
// change service answering repeated searches, and reading the folders on every tick; both must
// behave the same.

#include "assistant_world.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <thread>

namespace pl::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

class watcher : public ::testing::TestWithParam<bool> {
protected:
    void start() {
        if (GetParam())
            changes = platform::makeFolderChanges();
        host = std::make_unique<TakingDialogHost>(world.state, world.os->files(), world.takenFolder);
        form = std::make_unique<assistant::ResidentForm>(*world.context, *host, changes.get());
        form->Form_Load();
        ASSERT_TRUE(form->timerEnabled());
        ASSERT_FALSE(world.state.quitRequested);
    }
    void ticks(int n) {
        for (int i = 0; i < n; ++i)
            form->Timer1_Timer();
    }
    std::string takenName(std::size_t i) const { return fs::path(host->taken.at(i)).filename().string(); }

    AssistantWorld world;
    std::unique_ptr<platform::FolderChanges> changes;
    std::unique_ptr<TakingDialogHost> host;
    std::unique_ptr<assistant::ResidentForm> form;
};

INSTANTIATE_TEST_SUITE_P(cached_and_plain, watcher, ::testing::Bool(),
                         [](const ::testing::TestParamInfo<bool>& p) { return p.param ? "cached" : "plain"; });

TEST_P(watcher, looks_in_the_machine_folder_then_the_user_folder_then_the_terminal_server_folder) {
    world.setUser("TsPath", world.tsFolder);
    start();
    writeJob(world.tsFolder + "alice_ts.ps");
    writeJob(world.userFolder + "alice_user.ps");
    writeJob(world.machineFolder + "alice_machine.ps");

    ticks(4);
    ASSERT_EQ(host->taken.size(), 3u);
    EXPECT_EQ(host->taken[0], world.machineFolder + "alice_machine.ps");
    EXPECT_EQ(host->taken[1], world.userFolder + "alice_user.ps");
    EXPECT_EQ(host->taken[2], world.tsFolder + "alice_ts.ps");
    EXPECT_EQ(std::count(world.view.events.begin(), world.view.events.end(), "show plDialog1"), 0)
        << "a dialog that unloaded itself during its load is not shown";
}

TEST_P(watcher, never_picks_up_another_users_job_unless_the_terminal_server_name_is_a_star) {
    world.setUser("TsPath", world.tsFolder);
    start();
    writeJob(world.machineFolder + "bob_1.ps");
    writeJob(world.userFolder + "bob_2.ps");
    writeJob(world.tsFolder + "bob_3.ps");
    ticks(3);
    EXPECT_TRUE(host->taken.empty());

    AssistantWorld starWorld;
    starWorld.setUser("TsName", "*");
    starWorld.setUser("TsPath", starWorld.tsFolder);
    auto starChanges = GetParam() ? platform::makeFolderChanges() : nullptr;
    TakingDialogHost starHost(starWorld.state, starWorld.os->files(), starWorld.takenFolder);
    assistant::ResidentForm star(*starWorld.context, starHost, starChanges.get());
    star.Form_Load();
    writeJob(starWorld.machineFolder + "bob_1.ps");
    writeJob(starWorld.tsFolder + "bob_3.ps");
    star.Timer1_Timer();
    star.Timer1_Timer();
    ASSERT_EQ(starHost.taken.size(), 1u);
    EXPECT_EQ(starHost.taken[0], starWorld.tsFolder + "bob_3.ps");
    EXPECT_TRUE(fs::exists(starWorld.machineFolder + "bob_1.ps"));
}

TEST_P(watcher, a_first_match_still_being_written_blocks_the_tick_even_when_complete_jobs_follow) {
    world.setUser("TsName", "*");
    world.setUser("TsPath", world.tsFolder);
    start();
    // Directory order is the file system's (on some, a hash of the name); build folders with
    // varying names until one lists the "~" file first.
    std::string folder, writing;
    for (int attempt = 0; attempt < 200 && folder.empty(); ++attempt) {
        const std::string candidate = world.root.folder() + "ts" + std::to_string(attempt) + "/";
        const std::string tilde = "~bob" + std::to_string(attempt) + ".ps";
        fs::create_directories(candidate);
        if (attempt % 2 == 0)
            writeJob(candidate + tilde);
        writeJob(candidate + "carol" + std::to_string(attempt) + ".ps");
        writeJob(candidate + "dave" + std::to_string(attempt) + ".ps");
        if (attempt % 2 == 1)
            writeJob(candidate + tilde);
        if (world.os->files().findFirst(candidate, "**.ps")->name == tilde) {
            folder = candidate;
            writing = tilde;
        }
    }
    ASSERT_FALSE(folder.empty()) << "no folder listed the file first";
    world.state.TsPath = folder;

    form->Timer1_Timer();
    form->Timer1_Timer();
    EXPECT_TRUE(host->taken.empty());

    // The printer completes the job under its final name: now the folder's first job is handed over.
    fs::rename(folder + writing, folder + writing.substr(1));
    const std::string firstListed = world.os->files().findFirst(folder, "**.ps")->name;
    form->Timer1_Timer();
    ASSERT_EQ(host->taken.size(), 1u) << "one job per tick";
    EXPECT_EQ(host->taken[0], folder + firstListed);
}

TEST_P(watcher, the_end_marker_ends_the_assistant_only_in_lower_case) {
    start();
    writeJob(world.machineFolder + "PLASSISTENDE.CMD");
    form->Timer1_Timer();
    EXPECT_FALSE(world.state.quitRequested);
    fs::remove(world.machineFolder + "PLASSISTENDE.CMD");
    writeJob(world.machineFolder + "plassistende.cmd");
    writeJob(world.machineFolder + "alice_1.ps");
    form->Timer1_Timer();
    EXPECT_TRUE(world.state.quitRequested);
    EXPECT_TRUE(host->taken.empty()) << "the end comes before the job search";
}

TEST_P(watcher, ends_when_the_companion_program_has_ended) {
    world.state.CommandLine = "/bin/sleep 0.4";
    start();
    ASSERT_GT(world.state.TsCommandPid, 0);
    form->Timer1_Timer();
    EXPECT_FALSE(world.state.quitRequested);
    const auto deadline = std::chrono::steady_clock::now() + 10s;
    while (!world.state.quitRequested && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(100ms);
        form->Timer1_Timer();
    }
    EXPECT_TRUE(world.state.quitRequested);
    EXPECT_EQ(world.state.exitCode, 0);
}

TEST_P(watcher, an_idle_assistant_logs_once_then_stays_quiet_until_the_next_job) {
    world.setUser("Debug", "1");
    start();
    const std::size_t startLines = world.logLines().size();
    for (int i = 0; i < 5; ++i)
        form->Timer1_Timer();
    auto lines = world.logLines();
    ASSERT_EQ(lines.size(), startLines + 2);
    EXPECT_EQ(lines[startLines], "Dialog geoeffnet...");
    EXPECT_EQ(lines[startLines + 1], "Kein PSFile, - Schalte Debug Fehlermeldungen aus...");
    EXPECT_EQ(world.state.DebugMode, "2");

    host->stayOpen = true;
    writeJob(world.machineFolder + "alice_7.ps");
    form->Timer1_Timer();
    lines = world.logLines();
    ASSERT_EQ(lines.size(), startLines + 5);
    EXPECT_EQ(lines[startLines + 2], "Datei gefunden: alice_7.ps");
    EXPECT_EQ(lines[startLines + 3], "oeffne Dialog");
    EXPECT_EQ(lines[startLines + 4], "Warte auf naechstes File...");
    EXPECT_EQ(world.state.DebugMode, "1");
    EXPECT_TRUE(world.view.saw("show plDialog1"));

    // While the dialog is open every tick only says so.
    form->Timer1_Timer();
    form->Timer1_Timer();
    lines = world.logLines();
    ASSERT_EQ(lines.size(), startLines + 7);
    EXPECT_EQ(lines[startLines + 5], "Dialog geoeffnet...");
    EXPECT_EQ(lines[startLines + 6], "Dialog geoeffnet...");
    EXPECT_EQ(host->taken.size(), 1u);
}

TEST_P(watcher, logging_switched_off_stays_off) {
    world.setUser("Debug", "0");
    start();
    writeJob(world.machineFolder + "alice_7.ps");
    form->Timer1_Timer();
    form->Timer1_Timer();
    EXPECT_EQ(world.state.DebugMode, "0");
    EXPECT_FALSE(fs::exists(world.logFile()));
}

TEST_P(watcher, a_minimised_dialog_is_not_shown) {
    start();
    host->stayOpen = true;
    host->windowState = forms::Minimized;
    writeJob(world.machineFolder + "alice_7.ps");
    form->Timer1_Timer();
    EXPECT_EQ(host->taken.size(), 1u);
    EXPECT_FALSE(world.view.saw("show plDialog1"));
}

TEST_P(watcher, the_tray_icon_shows_exactly_while_multidoc_documents_wait) {
    start();
    form->Timer1_Timer(); // arms the check
    EXPECT_FALSE(world.view.trayIconShown);
    writeJob(world.userFolder + "MultiDocalice1.ps");
    form->Timer1_Timer();
    EXPECT_TRUE(world.view.trayIconShown);
    EXPECT_EQ(world.view.trayTip, form->control("txtTooltip").text);
    EXPECT_TRUE(form->trayIconData().hasIcon);
    fs::remove(world.userFolder + "MultiDocalice1.ps");
    writeJob(world.userFolder + "MultiDocbob1.ps");
    form->Timer1_Timer();
    EXPECT_FALSE(world.view.trayIconShown) << "another user's queue does not count";
    EXPECT_TRUE(host->taken.empty()) << "queued documents are no jobs";
}

TEST_P(watcher, jobs_printed_without_a_user_name_are_adopted_by_the_first_assistant_that_sees_them) {
    world.setUser("Pagemaker5", "1");
    start();
    writeJob(world.machineFolder + "UnKnown_report_unknown.ps");
    form->Timer1_Timer();
    ASSERT_EQ(host->taken.size(), 1u);
    EXPECT_EQ(host->taken[0], world.userFolder + "alice_report_alice.ps");
    EXPECT_FALSE(fs::exists(world.machineFolder + "UnKnown_report_unknown.ps"));
}

TEST_P(watcher, without_pagemaker_support_unnamed_jobs_stay_where_they_are) {
    start();
    writeJob(world.machineFolder + "unknown_1.ps");
    form->Timer1_Timer();
    EXPECT_TRUE(host->taken.empty());
    EXPECT_TRUE(fs::exists(world.machineFolder + "unknown_1.ps"));
}

TEST_P(watcher, sees_every_change_between_ticks) {
    start();
    form->Timer1_Timer();
    for (int round = 0; round < 20; ++round) {
        const std::string name = "alice_" + std::to_string(round) + ".ps";
        // Written under a "~" name and renamed when complete, as the printer does.
        writeJob(world.machineFolder + "~" + name);
        form->Timer1_Timer();
        EXPECT_EQ(host->taken.size(), static_cast<std::size_t>(round));
        fs::rename(world.machineFolder + "~" + name, world.machineFolder + name);
        form->Timer1_Timer();
        ASSERT_EQ(host->taken.size(), static_cast<std::size_t>(round + 1));
        EXPECT_EQ(takenName(round), name);
    }
}

TEST_P(watcher, an_idle_tick_reads_no_folder_once_the_answers_are_known) {
    world.setUser("TsPath", world.tsFolder);
    start();
    form->Timer1_Timer();
    form->Timer1_Timer();
    const auto before = form->searches().scans();
    for (int i = 0; i < 10; ++i)
        form->Timer1_Timer();
    const auto perTick = (form->searches().scans() - before) / 10;
    if (GetParam())
        EXPECT_EQ(perTick, 0u);
    else
        EXPECT_EQ(perTick, 5u) << "end marker, MultiDoc queue and three job folders";
}

} // namespace
} // namespace pl::test
