#include "actions_fixture.h"

#include "dialog/actions/output_names.h"
#include "dialog/settings.h"

#include <filesystem>

namespace pl::test {
namespace {

namespace fs = std::filesystem;

class saving : public ActionsFixture {
protected:
    saving() { offerMachineJob("Report"); }
    std::string saveAs(const std::optional<std::string>& answer) {
        view.saveAnswers.push_back(answer);
        openWithActions().actions().cmdSave_Click();
        return outputOfOnlyCall();
    }
};

TEST_F(saving, asks_with_the_save_dialog_for_the_output_format_and_the_proposed_name) {
    EXPECT_EQ(saveAs(out + "Report.pdf"), out + "Report.pdf");

    ASSERT_EQ(view.saveRequests.size(), 1u);
    const auto& request = view.saveRequests[0];
    EXPECT_EQ(request.filter, std::string("Paperlark File     (.pdf)\0*.pdf", 31));
    EXPECT_EQ(request.defaultExt, "");
    EXPECT_EQ(request.initDir, ""); // no "LastDir" yet
    EXPECT_EQ(request.fileName, "Report");
    EXPECT_TRUE(request.overwritePrompt);
    EXPECT_TRUE(request.pathMustExist);
    EXPECT_FALSE(dialog->form().loaded);
    EXPECT_TRUE(view.saw("hide plDialog1"));
}

TEST_F(saving, remembers_the_chosen_folder_for_the_next_save) {
    fs::create_directories(out + "Archiv 2024");
    saveAs(out + "Archiv 2024/Report.pdf");
    EXPECT_EQ(user("LastDir"), out + "Archiv 2024");

    offerMachineJob("Next", "anna0002.ps");
    view.saveAnswers.push_back(out + "Next.pdf");
    openWithActions().actions().cmdSave_Click();
    ASSERT_EQ(view.saveRequests.size(), 2u);
    EXPECT_EQ(view.saveRequests[1].initDir, out + "Archiv 2024");
}

TEST_F(saving, cancelled_or_with_a_question_mark_gives_the_job_back_and_converts_nothing) {
    for (const std::optional<std::string>& answer :
         {std::optional<std::string>(), std::optional<std::string>(out + "Re?ort.pdf")}) {
        SCOPED_TRACE(answer.value_or("(cancelled)"));
        view.saveAnswers.push_back(answer);
        offerJob(machineSpool, "anna0001.ps"); // as the watcher offers it again
        auto& d = openWithActions();
        d.actions().cmdSave_Click();

        EXPECT_FALSE(d.form().loaded);
        EXPECT_FALSE(state.DialogActive);
        // Under its old name the watcher offers it again.
        EXPECT_TRUE(fs::exists(machineSpool + "anna0001.ps"));
        EXPECT_EQ(std::distance(fs::directory_iterator(machineSpool), fs::directory_iterator()), 1);
    }
    EXPECT_TRUE(view.messages.empty()); // given back silently
    EXPECT_TRUE(noCallArrives());
    EXPECT_EQ(user("LastDir"), "");
}

TEST_F(saving, a_file_held_open_elsewhere_is_not_overwritten_but_a_numbered_name_is_used) {
    root.write("out/Report.pdf", "last month's report");
    for (auto lock : {FileHolder::Lock::Flock, FileHolder::Lock::RecordLock}) {
        FileHolder viewer(out + "Report.pdf", lock);
        ASSERT_TRUE(viewer.holding());
        auto& d = openWithActions();
        view.saveAnswers.push_back(out + "Report.pdf");
        d.actions().cmdSave_Click();
        offerMachineJob("Report", "anna000" + std::to_string(static_cast<int>(lock) + 2) + ".ps");
    }
    const auto calls = waitForCalls(2);
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[0].args[3], out + "Report (1).pdf");
    EXPECT_EQ(calls[1].args[3], out + "Report (1).pdf");
    EXPECT_EQ(root.read("out/Report.pdf"), "last month's report");
}

TEST_F(saving, an_existing_file_nobody_holds_is_left_for_the_converter_to_overwrite) {
    root.write("out/Report.pdf", "old");
    EXPECT_EQ(saveAs(out + "Report.pdf"), out + "Report.pdf");
    EXPECT_EQ(root.read("out/Report.pdf"), "old");
    EXPECT_FALSE(fs::exists(out + "~Report.pdf"));
}

TEST_F(saving, repairs_the_extension_after_the_open_file_test) {
    EXPECT_EQ(saveAs(out + "report.PDF"), out + "report.pdf");
}

TEST_F(saving, a_chosen_name_without_extension_gets_the_output_suffix) {
    EXPECT_EQ(saveAs(out + "Report"), out + "Report.pdf");
}

TEST_F(saving, image_output_puts_the_page_pattern_before_the_suffix) {
    root.write("suite/High Quality.plp", "-sDEVICE=png16m -r150\r\n");
    EXPECT_EQ(saveAs(out + "Scan.PNG"), out + "Scan - %02d.png");
}

TEST_F(saving, the_automatic_save_with_an_empty_path_converts_nothing_and_closes) {
    auto& d = openWithActions();
    buttons().AutoActionSave("");
    EXPECT_FALSE(d.form().loaded);
    EXPECT_TRUE(noCallArrives());
}

TEST_F(saving, the_automatic_save_repairs_the_extension_and_leaves_existing_files_to_the_converter) {
    root.write("out/Fixed.pdf", "old");
    FileHolder viewer(out + "Fixed.pdf", FileHolder::Lock::Flock);
    openWithActions();
    buttons().AutoActionSave("  " + out + "Fixed  ");
    const auto calls = waitForCalls(1);
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].args[3], out + "Fixed.pdf");
}

TEST(output_names, the_automatic_save_checks_a_four_character_ending) {
    struct Case {
        const char* name;
        const char* suffix;
        const char* repaired;
    };
    for (const Case& c : {Case{"   ", ".pdf", "Paperlark File.pdf"}, Case{"ab", ".pdf", "ab.pdf"},
                          Case{"ab.PDF", ".pdf", "ab.PDF"}, Case{" Bericht ", ".pdf", "Bericht.pdf"},
                          Case{"x.ps", ".ps", "x.ps.ps"}, Case{"Übersicht.pdf", ".pdf", "Übersicht.pdf"}}) {
        std::string name = c.name;
        dialog::CheckForPdfExt(name, c.suffix);
        EXPECT_EQ(name, c.repaired) << c.name;
    }
}

TEST(output_names, check_suffix_looks_one_character_too_far_and_so_always_appends) {
    struct Case {
        const char* name;
        const char* suffix;
        const char* checked;
    };
    for (const Case& c : {Case{"report", ".pdf", "report.pdf"}, Case{"report.pdf", ".pdf", "report.pdf.pdf"},
                          Case{"  ", ".pdf", "Paperlark_XP Created File.pdf"}, Case{"report", "", "report"}}) {
        std::string name = c.name;
        dialog::CheckSuffix(name, c.suffix);
        EXPECT_EQ(name, c.checked) << c.name;
    }
}

TEST(output_names, the_name_box_repair_counts_characters_not_bytes) {
    EXPECT_EQ(dialog::repairNameBoxSuffix("Bericht.PDF", ".pdf", ""), "Bericht.pdf");
    EXPECT_EQ(dialog::repairNameBoxSuffix("Grüße", ".pdf", ""), "Grüße.pdf");
    EXPECT_EQ(dialog::repairNameBoxSuffix("äö.png", ".png", " - %02d"), "äö - %02d.png");
    EXPECT_EQ(dialog::repairSavedPathSuffix(".pdf", ".pdf", ""), ".pdf");
    EXPECT_EQ(dialog::repairNameBoxSuffix(".pdf", ".pdf", ""), ".pdf");
}

} // namespace
} // namespace pl::test
