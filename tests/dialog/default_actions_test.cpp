#include "actions_fixture.h"
#include "platform/paths.h"

#include <filesystem>

namespace pl::test {
namespace {

namespace fs = std::filesystem;

class automatic_actions : public ActionsFixture {};

// A job that names the profile "Archiv" runs the profile's action, not the user's "ADefault".
TEST_F(automatic_actions, a_job_naming_its_profile_runs_the_profiles_action_without_showing_the_dialog) {
    const std::string archive = root.folder() + "archive";
    root.write("archive/Report.pdf", "earlier");
    root.write("out/fix.pdf", "replaced by the converter");
    setUser("ADefault", "desktop");
    struct Case {
        std::string lines;
        std::string actions, output; // of the one call; none when empty
        bool queued = false;
    };
    const Case cases[] = {
        {"PLASSIST=SaveDir\r\nplassist2=" + archive + "\r\n", "delps,save,nocode",
         archive + platform::PathSep + "Report (1).pdf"},
        {"plassist=savedir\r\nplassist2=   \r\n", "", ""},
        {"plassist=savefile\r\nplassist2=" + out + "fix.pdf\r\nplassist3=kept along\r\n", "delps,save,nocode",
         out + "fix.pdf"},
        {"plassist=multidoc\r\n", "", "", true},
        {"PLASSIST=Email\r\n", "delps,email,nocode", userSpool + "Report.pdf"}, // never opened
        {"plassist=print\r\n", "", ""},
        // Without lines of its own the user's default runs.
        {"", "delps,save,open,nocode", desktop + "Report.pdf"},
    };
    std::size_t calls = 0;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.lines);
        setUser("OpenPdf", "1");
        root.write("suite/Archiv.plp", "-sDEVICE=pdfwrite\r\n" + c.lines);
        offerMachineJob("Report", "anna~profile~ARCHIV.ps");
        view.events.clear();
        auto& d = openWithActions();

        EXPECT_EQ(d.control("plProfile").text, "Archiv");
        EXPECT_FALSE(d.form().loaded);
        EXPECT_FALSE(state.DialogActive);
        EXPECT_FALSE(view.saw("front"));
        EXPECT_EQ(fs::exists(userSpool + "MultiDocanna1.ps"), c.queued);
        fs::remove(userSpool + "MultiDocanna1.ps");
        if (!c.output.empty()) {
            const auto recorded = waitForCalls(++calls);
            ASSERT_EQ(recorded.size(), calls);
            EXPECT_EQ(recorded.back().args,
                      (std::vector<std::string>{"/3", c.actions, "Archiv", c.output, state.PsFile}));
        }
    }
    EXPECT_EQ(waitForCalls(calls + 1, std::chrono::milliseconds(400)).size(), calls);
    EXPECT_EQ(root.read("archive/Report.pdf"), "earlier");
    EXPECT_EQ(root.read("out/fix.pdf"), "replaced by the converter"); // left for the converter to replace
}

// Profiles come from Windows editors as 8-bit text: a "Büro" folder there is the folder "Büro".
TEST_F(automatic_actions, a_savedir_folder_from_an_8bit_profile_keeps_its_umlaut) {
    const std::string folder = root.folder() + "Ablage/B\xC3\xBCro";
    fs::create_directories(folder);
    root.write("suite/Archiv.plp",
               "-sDEVICE=pdfwrite\r\nplassist=savedir\r\nplassist2=" + root.folder() + "Ablage/B\xFCro\r\n");
    offerMachineJob("Report", "anna~profile~Archiv.ps");
    openWithActions();
    const auto calls = waitForCalls(1);
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].args[3], folder + platform::PathSep + "Report.pdf");
}

// An account without a desktop folder, or a profile naming a folder not made yet: the folder is
// made, and the job goes there instead of failing.
TEST_F(automatic_actions, a_missing_desktop_or_savedir_folder_is_made_for_the_job) {
    fs::remove_all(desktop);
    setUser("ADefault", "desktop");
    offerMachineJob("Report", "anna1.ps");
    openWithActions();
    auto calls = waitForCalls(1);
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].args[3], desktop + "Report.pdf");
    EXPECT_TRUE(fs::is_directory(desktop));

    const std::string folder = root.folder() + "Archiv" + platform::PathSep + "2026" + platform::PathSep + "Rechnungen";
    root.write("suite/Archiv.plp", "-sDEVICE=pdfwrite\r\nplassist=savedir\r\nplassist2=" + folder + "\r\n");
    offerMachineJob("Report", "anna2~profile~Archiv.ps");
    openWithActions();
    calls = waitForCalls(2);
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[1].args[3], folder + platform::PathSep + "Report.pdf");
    EXPECT_TRUE(fs::is_directory(folder));
}

TEST_F(automatic_actions, the_users_default_action_wins_over_the_machines_unless_unknown) {
    struct Case {
        std::string user, machine;
        std::string output; // none: the dialog waits for the user
    };
    const Case cases[] = {
        {"Desktop", "email", desktop + "Report.pdf"},
        {"print", "desktop", desktop + "Report.pdf"},
        {"", "email", userSpool + "Report.pdf"},
        {"", "SaveAs", out + "Chosen.pdf"},
        {"", "multidoc", ""}, // cannot be a default
    };
    std::size_t calls = 0;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.user + "/" + c.machine);
        setUser("ADefault", c.user);
        setMachine("ADefault", c.machine);
        view.saveAnswers = {out + "Chosen.pdf"};
        view.events.clear();
        offerMachineJob("Report", "anna" + std::to_string(calls) + ".ps");
        auto& d = openWithActions();

        EXPECT_EQ(d.form().loaded, c.output.empty());
        EXPECT_EQ(view.saw("front plDialog1"), c.output.empty());
        if (!c.output.empty()) {
            const auto recorded = waitForCalls(++calls);
            ASSERT_EQ(recorded.size(), calls);
            EXPECT_EQ(recorded.back().args[3], c.output);
        }
    }
    EXPECT_FALSE(fs::exists(userSpool + "MultiDocanna1.ps"));
    EXPECT_EQ(waitForCalls(calls + 1, std::chrono::milliseconds(400)).size(), calls);
}

} // namespace
} // namespace pl::test
