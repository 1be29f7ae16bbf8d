// The spool-folder watcher, tick by tick, with real folders. Every test runs twice: with the folder
// change service answering repeated searches, and reading the folders on every tick; both must
// behave the same.

#include "watcher_fixture.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <thread>

namespace pl::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

INSTANTIATE_TEST_SUITE_P(cached_and_plain, watcher, ::testing::Bool(),
                         [](const ::testing::TestParamInfo<bool>& p) { return p.param ? "cached" : "plain"; });

TEST_P(watcher, looks_in_the_machine_folder_then_the_user_folder_then_the_terminal_server_folder) {
    world.setUser("TsPath", world.tsFolder);
    start();
    writeJob(world.tsFolder + "alice_ts.ps");
    writeJob(world.userFolder + "alice_user.ps");
    writeJob(world.machineFolder + "alice_machine.ps");

    r->ticks(4);
    const std::vector<std::string> expected{world.machineFolder + "alice_machine.ps",
                                            world.userFolder + "alice_user.ps", world.tsFolder + "alice_ts.ps"};
    EXPECT_EQ(r->host.taken, expected);
    EXPECT_FALSE(world.view.saw("show plDialog1")) << "a dialog that unloaded itself during its load is not shown";
}

TEST_P(watcher, never_picks_up_another_users_job_unless_the_terminal_server_name_is_a_star) {
    world.setUser("TsPath", world.tsFolder);
    start();
    writeJob(world.machineFolder + "bob_1.ps");
    writeJob(world.userFolder + "bob_2.ps");
    writeJob(world.tsFolder + "bob_3.ps");
    writeJob(world.machineFolder + "UnKnown_report_unknown.ps");
    r->ticks(3);
    EXPECT_TRUE(r->host.taken.empty());
    EXPECT_TRUE(fs::exists(world.machineFolder + "UnKnown_report_unknown.ps")) << "without Pagemaker support";

    // Jobs printed without a user name are adopted by the first assistant that sees them.
    world.state.Pm5Support = true;
    r->ticks(1);
    EXPECT_EQ(r->host.taken, std::vector<std::string>{world.userFolder + "alice_report_alice.ps"});
    EXPECT_FALSE(fs::exists(world.machineFolder + "UnKnown_report_unknown.ps"));

    AssistantWorld starWorld;
    starWorld.setUser("TsName", "*");
    starWorld.setUser("TsPath", starWorld.tsFolder);
    auto star = startIn(starWorld);
    writeJob(starWorld.machineFolder + "bob_1.ps");
    writeJob(starWorld.tsFolder + "bob_3.ps");
    star->ticks(2);
    EXPECT_EQ(star->host.taken, std::vector<std::string>{starWorld.tsFolder + "bob_3.ps"});
    EXPECT_TRUE(fs::exists(starWorld.machineFolder + "bob_1.ps"));
}

TEST_P(watcher, a_first_match_still_being_written_blocks_the_tick_even_when_complete_jobs_follow) {
    world.setUser("TsName", "*");
    world.setUser("TsPath", world.tsFolder);
    start();
    // "~" lists after the letters, but before an umlaut.
    writeJob(world.tsFolder + "~bob.ps");
    writeJob(world.tsFolder + "\u00dcmit.ps");
    r->ticks(2);
    EXPECT_TRUE(r->host.taken.empty());

    // The printer completes the job under its final name: now it is the folder's first job.
    fs::rename(world.tsFolder + "~bob.ps", world.tsFolder + "bob.ps");
    r->ticks(1);
    EXPECT_EQ(r->host.taken, std::vector<std::string>{world.tsFolder + "bob.ps"}) << "one job per tick";
}

TEST_P(watcher, jobs_are_handled_in_name_order_whatever_order_they_arrived_in) {
    start();
    std::vector<std::string> expected;
    for (int n = 30; n >= 1; --n) {
        char name[32];
        std::snprintf(name, sizeof name, "%s_%03d.ps", n % 2 ? "ALICE" : "alice", n);
        writeJob(world.machineFolder + name);
        expected.insert(expected.begin(), world.machineFolder + name);
    }
    r->ticks(30);
    EXPECT_EQ(r->host.taken, expected);
}

TEST_P(watcher, the_end_marker_ends_the_assistant_only_in_lower_case) {
    start();
    writeJob(world.machineFolder + "PLASSISTENDE.CMD");
    r->ticks(1);
    EXPECT_FALSE(world.state.quitRequested);
    fs::remove(world.machineFolder + "PLASSISTENDE.CMD");
    writeJob(world.machineFolder + "plassistende.cmd");
    writeJob(world.machineFolder + "alice_1.ps");
    r->ticks(1);
    EXPECT_TRUE(world.state.quitRequested);
    EXPECT_TRUE(r->host.taken.empty()) << "the end comes before the job search";
}

TEST_P(watcher, ends_when_the_companion_program_has_ended) {
    world.state.CommandLine = "/bin/sleep 0.4";
    start();
    ASSERT_GT(world.state.TsCommandPid, 0);
    r->ticks(1);
    EXPECT_FALSE(world.state.quitRequested);
    const auto deadline = std::chrono::steady_clock::now() + 10s;
    while (!world.state.quitRequested && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(100ms);
        r->ticks(1);
    }
    EXPECT_TRUE(world.state.quitRequested);
    EXPECT_EQ(world.state.exitCode, 0);
}

TEST_P(watcher, an_idle_assistant_logs_once_then_stays_quiet_and_reads_no_folder_until_the_next_job) {
    world.setUser("Debug", "1");
    world.setUser("TsPath", world.tsFolder);
    start();
    const std::size_t startLines = world.logLines().size();
    r->ticks(2);
    const auto scans = r->form.searches().scans();
    r->ticks(3);
    EXPECT_EQ(r->form.searches().scans() - scans, GetParam() ? 0u : 15u)
        << "uncached, each tick reads the end marker, the MultiDoc queue and three job folders";
    auto lines = world.logLines();
    const std::vector<std::string> idle{"Dialog geoeffnet...", "Kein PSFile, - Schalte Debug Fehlermeldungen aus..."};
    EXPECT_EQ(std::vector<std::string>(lines.begin() + startLines, lines.end()), idle);
    EXPECT_EQ(world.state.DebugMode, "2");

    // A job switches the log back on; while the dialog is open every tick only says so.
    r->host.stayOpen = true;
    writeJob(world.machineFolder + "alice_7.ps");
    r->ticks(3);
    lines = world.logLines();
    const std::vector<std::string> busy{"Datei gefunden: alice_7.ps", "oeffne Dialog", "Warte auf naechstes File...",
                                        "Dialog geoeffnet...", "Dialog geoeffnet..."};
    EXPECT_EQ(std::vector<std::string>(lines.begin() + startLines + 2, lines.end()), busy);
    EXPECT_EQ(world.state.DebugMode, "1");
    EXPECT_TRUE(world.view.saw("show plDialog1"));
    EXPECT_EQ(r->host.taken.size(), 1u);
}

} // namespace
} // namespace pl::test
