#include "actions_fixture.h"

#include <filesystem>

namespace pl::test {
namespace {

namespace fs = std::filesystem;

class on_desktop : public ActionsFixture {
protected:
    on_desktop() { offerMachineJob("Report"); }
    // The output argument of the one conversion that the action started.
    std::string outputOf(void (dialog::JobActions::*action)(), const std::string& nameBox) {
        auto& d = openWithActions();
        d.control("pdfName").text = nameBox;
        (d.actions().*action)();
        return outputOfOnlyCall();
    }
    std::string onDesktop(const std::string& nameBox) {
        return outputOf(&dialog::JobActions::cmdDesktop_Click, nameBox);
    }
    std::string byMail(const std::string& nameBox) { return outputOf(&dialog::JobActions::cmdEmail_Click, nameBox); }
};

TEST_F(on_desktop, a_taken_name_is_numbered_and_nothing_is_overwritten) {
    root.write("desktop/Report.pdf", "yesterday's");
    root.write("desktop/Report (1).pdf", "the day before");
    EXPECT_EQ(onDesktop("Report"), desktop + "Report (2).pdf");
    EXPECT_EQ(dialog->control("pdfName").text, "Report (2).pdf");
    EXPECT_EQ(root.read("desktop/Report.pdf"), "yesterday's");
}

TEST_F(on_desktop, an_empty_name_box_gives_the_default_name) {
    EXPECT_EQ(onDesktop(""), desktop + "Paperlark_XP PDF.pdf");
}

TEST_F(on_desktop, a_short_name_gets_its_suffix_once) {
    EXPECT_EQ(onDesktop("ab"), desktop + "ab.pdf");
}

TEST_F(on_desktop, image_output_puts_the_page_pattern_between_name_and_suffix) {
    root.write("suite/High Quality.plp", "-sDEVICE=jpeg -r150\r\n");
    EXPECT_EQ(onDesktop("Scan.JPG"), desktop + "Scan - %02d.jpg");
}

TEST_F(on_desktop, the_administrators_desktop_folder_gets_exactly_one_separator) {
    fs::create_directories(root.folder() + "Schreibtisch");
    env.set("PAPERLARK_HOME", root.folder().substr(0, root.folder().size() - 1));
    setMachine("Desktop", "%PAPERLARK_HOME%/Schreibtisch");
    EXPECT_EQ(onDesktop("Report"), root.folder() + "Schreibtisch/Report.pdf");
}

TEST_F(on_desktop, the_users_desktop_value_wins_over_the_machines) {
    fs::create_directories(root.folder() + "mine");
    setMachine("Desktop", root.folder() + "machine/");
    setUser("Desktop", root.folder() + "mine/");
    EXPECT_EQ(onDesktop("Report"), root.folder() + "mine/Report.pdf");
}

TEST_F(on_desktop, the_button_caption_is_the_administrators_with_the_users_first) {
    setMachine("DesktopCaption", "Ins Archiv");
    auto& d = openWithActions();
    EXPECT_EQ(buttons().desktopCaption(), "Ins Archiv");
    setUser("DesktopCaption", "Auf meinen Schreibtisch");
    d.actions().cmdDesktop_Click();
    EXPECT_EQ(d.control("cmdDesktop").caption, "Auf meinen Schreibtisch");
    waitForCalls(1);
}

TEST_F(on_desktop, enter_in_the_name_box_puts_the_file_on_the_desktop) {
    auto& d = openWithActions();
    int key = dialog::KeyEnter;
    d.pdfName_KeyPress(key);
    const auto calls = waitForCalls(1);
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].args[3], desktop + "Report.pdf");
}

TEST_F(on_desktop, a_job_that_cannot_be_renamed_leaves_the_dialog_loaded_and_hidden) {
    fs::remove(machineSpool + "anna0001.ps"); // gone before the button was pressed
    auto& d = openWithActions();
    d.actions().cmdDesktop_Click();
    EXPECT_TRUE(d.form().loaded);
    EXPECT_FALSE(d.form().visible);
    EXPECT_EQ(view.messages.size(), 1u); // the rename's own message
    EXPECT_TRUE(noCallArrives());
}

using by_mail = on_desktop;

TEST_F(by_mail, converts_into_the_spool_folder_and_never_opens_the_file) {
    auto& d = openWithActions();
    d.control("chkOpenPDF").value = 1;
    d.control("pdfName").text = "Invoice";
    d.actions().cmdEmail_Click();
    const auto calls = waitForCalls(1);
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].args[1], "delps,email,nocode");
    EXPECT_EQ(calls[0].args[3], userSpool + "Invoice.pdf");
    EXPECT_EQ(d.control("pdfName").text, userSpool + "Invoice.pdf");
}

TEST_F(by_mail, an_empty_name_box_gives_the_default_name) {
    EXPECT_EQ(byMail(""), userSpool + "Paperlark_XP PDF.pdf");
}

TEST_F(by_mail, a_file_of_that_name_held_open_in_the_spool_folder_gives_a_numbered_name) {
    root.write("spool/Invoice.pdf", "sent last week");
    FileHolder mailer(userSpool + "Invoice.pdf", FileHolder::Lock::Flock);
    ASSERT_TRUE(mailer.holding());
    EXPECT_EQ(byMail("Invoice.pdf"), userSpool + "Invoice (1).pdf");
}

TEST_F(by_mail, the_open_file_test_sees_the_name_before_its_suffix_is_repaired) {
    // "Invoice" is not "Invoice.pdf": the held file does not count.
    root.write("spool/Invoice.pdf", "sent last week");
    FileHolder mailer(userSpool + "Invoice.pdf", FileHolder::Lock::Flock);
    ASSERT_TRUE(mailer.holding());
    EXPECT_EQ(byMail("Invoice"), userSpool + "Invoice.pdf");
}

} // namespace
} // namespace pl::test
