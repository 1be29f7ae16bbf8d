#include "actions_fixture.h"

#include <filesystem>

namespace pl::test {
namespace {

namespace fs = std::filesystem;

class automatic_actions : public ActionsFixture {
protected:
    // A profile "Archiv" with the given automatic-action lines, and a job that names it.
    dialog::JobDialog& runProfile(const std::string& lines, const std::string& title = "Report") {
        root.write("suite/Archiv.plp", "-sDEVICE=pdfwrite\r\n" + lines);
        offerMachineJob(title, "anna~profile~Archiv.ps");
        return openWithActions();
    }
    std::vector<std::string> onlyCall() {
        const auto calls = waitForCalls(1);
        return calls.size() == 1 ? calls[0].args : std::vector<std::string>{};
    }
};

TEST_F(automatic_actions, savedir_saves_under_a_free_numbered_name_without_showing_the_dialog) {
    const std::string archive = root.folder() + "archive";
    root.write("archive/Report.pdf", "earlier");
    auto& d = runProfile("PLASSIST=SaveDir\r\nplassist2=" + archive + "\r\n");

    const auto args = onlyCall();
    ASSERT_EQ(args.size(), 5u);
    EXPECT_EQ(args[1], "delps,save,nocode"); // an automatic action does not open the PDF
    EXPECT_EQ(args[2], "Archiv");
    EXPECT_EQ(args[3], archive + "/Report (1).pdf");
    EXPECT_FALSE(d.form().loaded);
    EXPECT_FALSE(view.saw("front"));
    EXPECT_EQ(root.read("archive/Report.pdf"), "earlier");
}

TEST_F(automatic_actions, savedir_with_an_empty_folder_saves_nothing) {
    auto& d = runProfile("plassist=savedir\r\nplassist2=   \r\n");
    EXPECT_FALSE(d.form().loaded);
    EXPECT_TRUE(noCallArrives());
}

TEST_F(automatic_actions, savefile_saves_to_exactly_the_given_path) {
    root.write("out/fix.pdf", "replaced by the converter");
    runProfile("plassist=savefile\r\nplassist2=" + out + "fix.pdf\r\nplassist3=kept along\r\n", "Anything else");
    const auto args = onlyCall();
    ASSERT_EQ(args.size(), 5u);
    EXPECT_EQ(args[3], out + "fix.pdf");
    EXPECT_EQ(root.read("out/fix.pdf"), "replaced by the converter"); // left for the converter to replace
}

TEST_F(automatic_actions, multidoc_queues_the_job) {
    auto& d = runProfile("plassist=multidoc\r\n");
    EXPECT_TRUE(fs::exists(userSpool + "MultiDocanna1.ps"));
    EXPECT_FALSE(d.form().loaded);
    EXPECT_TRUE(noCallArrives());
}

TEST_F(automatic_actions, email_in_any_case_mails_the_pdf_without_opening_it) {
    setUser("OpenPdf", "1");
    runProfile("PLASSIST=Email\r\n");
    const auto args = onlyCall();
    ASSERT_EQ(args.size(), 5u);
    EXPECT_EQ(args[1], "delps,email,nocode");
    EXPECT_EQ(dialog->control("chkOpenPDF").value, 0);
}

TEST_F(automatic_actions, an_unknown_word_converts_nothing_and_closes_the_dialog) {
    setUser("ADefault", "desktop"); // not consulted: the profile had its lines
    auto& d = runProfile("plassist=print\r\n");
    EXPECT_FALSE(d.form().loaded);
    EXPECT_FALSE(state.DialogActive);
    EXPECT_TRUE(noCallArrives());
    EXPECT_FALSE(buttons().sortForm());
}

TEST_F(automatic_actions, the_action_word_one_ticks_the_open_box_and_runs_nothing) {
    offerMachineJob("Report");
    auto& d = openWithActions();
    EXPECT_FALSE(d.defaults().RunProfileDefault("plassist=1\r\n"));
    EXPECT_EQ(d.control("chkOpenPDF").value, 1);
    EXPECT_TRUE(d.defaults().RunProfileDefault("plassist3=only\r\n"));
    EXPECT_EQ(d.control("chkOpenPDF").value, 0);
    EXPECT_TRUE(noCallArrives());
}

TEST_F(automatic_actions, the_lines_are_collected_in_key_order_from_the_users_profile_first) {
    root.write("suite/Archiv.plp", "-sDEVICE=pdfwrite\r\nplassist=email\r\n");
    root.write("home/Paperlark/Archiv.plp",
               "-sDEVICE=pdfwrite\nPlAssist3=third\nplassist2=C:\\Out\\fix.pdf\nplassist=savefile\n");
    offerMachineJob("Report");
    auto& d = openWithActions();
    d.control("plProfile").text = "Archiv";
    EXPECT_EQ(d.defaults().LoadDefaultAction("archiv"),
              "plassist=savefile\r\nplassist2=C:\\Out\\fix.pdf\r\nPlAssist3=third\r\n");
}

TEST_F(automatic_actions, a_profile_that_cannot_be_read_is_reported_and_gives_no_lines) {
    offerMachineJob("Report");
    auto& d = openWithActions();
    EXPECT_EQ(d.defaults().LoadDefaultAction("nosuch"), "");
    ASSERT_EQ(errors.entries.size(), 1u);
    EXPECT_EQ(errors.entries[0].tag, "plDialog1.LoadDefaultAction");
    errors.entries.clear();
}

class administrator_default : public ActionsFixture {
protected:
    administrator_default() { offerMachineJob("Report"); }
};

TEST_F(administrator_default, the_users_word_wins_over_the_machines) {
    setUser("ADefault", "Desktop");
    setMachine("ADefault", "email");
    auto& d = openWithActions();
    const auto calls = waitForCalls(1);
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].args[3], desktop + "Report.pdf");
    EXPECT_FALSE(d.form().loaded);
    EXPECT_FALSE(view.saw("front"));
}

TEST_F(administrator_default, an_unknown_user_word_falls_through_to_the_machine) {
    setUser("ADefault", "print");
    setMachine("ADefault", "desktop");
    openWithActions();
    const auto calls = waitForCalls(1);
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].args[3], desktop + "Report.pdf");
}

TEST_F(administrator_default, multidoc_cannot_be_a_default_and_the_dialog_waits) {
    setMachine("ADefault", "multidoc");
    auto& d = openWithActions();
    EXPECT_TRUE(d.form().loaded);
    EXPECT_TRUE(view.saw("front plDialog1"));
    EXPECT_FALSE(fs::exists(userSpool + "MultiDocanna1.ps"));
}

TEST_F(administrator_default, saveas_opens_the_save_dialog) {
    setMachine("ADefault", "SaveAs");
    view.saveAnswers.push_back(out + "Chosen.pdf");
    openWithActions();
    ASSERT_EQ(view.saveRequests.size(), 1u);
    const auto calls = waitForCalls(1);
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].args[3], out + "Chosen.pdf");
}

TEST_F(administrator_default, a_profile_named_by_the_job_wins_over_the_default) {
    setUser("ADefault", "desktop");
    root.write("suite/Archiv.plp", "-sDEVICE=pdfwrite\r\nplassist=savefile\r\nplassist2=" + out + "a.pdf\r\n");
    offerMachineJob("Report", "anna~profile~archiv.ps");
    openWithActions();
    const auto calls = waitForCalls(1);
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].args[3], out + "a.pdf");
    EXPECT_EQ(waitForCalls(2, std::chrono::milliseconds(400)).size(), 1u); // and nothing else
}

} // namespace
} // namespace pl::test
