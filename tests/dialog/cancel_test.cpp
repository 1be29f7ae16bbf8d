#include "dialog_fixture.h"

#include <filesystem>

namespace pl::test {
namespace {

using dialog::unload_mode::Code;
using dialog::unload_mode::ControlMenu;

// A job in the user's spool folder with two queued documents beside it, and the queue of another
// user in the same folder.
class cancelling : public DialogFixture {
protected:
    cancelling() {
        writeJob(userSpool, "anna0001.ps", "Nachtrag");
        writeQueued(1, "Microsoft Word - Angebot.docx"); // the collection's first document names the PDF
        writeQueued(2);
        writeJob(userSpool, "MultiDocbert1.ps", "Bert's");
        offerJob(userSpool, "anna0001.ps");
    }
    bool exists(const std::string& name) const { return std::filesystem::exists(userSpool + name); }
    bool jobKept() const { return exists("anna0001.ps"); }
    bool queueKept() const { return exists("MultiDocanna1.ps") && exists("MultiDocanna2.ps"); }
    std::string confirmation() const { return texts.text(5) + ": Angebot\r\n\r\n" + texts.text(11); }
};

TEST_F(cancelling, closing_and_answering_no_keeps_dialog_job_and_queue) {
    auto& d = openDialog();
    view.msgBoxAnswers.push_back(mb::No);

    EXPECT_FALSE(d.Unload(ControlMenu));

    ASSERT_EQ(view.messages.size(), 1u);
    EXPECT_EQ(view.messages[0].prompt, confirmation());
    EXPECT_EQ(view.messages[0].style, 36); // Yes/No with a question mark
    EXPECT_EQ(view.messages[0].title, texts.text(1));
    EXPECT_TRUE(d.form().loaded);
    EXPECT_TRUE(state.DialogActive);
    EXPECT_TRUE(jobKept());
    EXPECT_TRUE(queueKept());
}

TEST_F(cancelling, closing_and_answering_yes_deletes_the_job_and_the_users_queue) {
    auto& d = openDialog();
    view.msgBoxAnswers.push_back(mb::Yes);

    EXPECT_TRUE(d.Unload(ControlMenu));

    EXPECT_FALSE(d.form().loaded);
    EXPECT_TRUE(view.saw("unload plDialog1"));
    EXPECT_FALSE(state.DialogActive);
    EXPECT_FALSE(jobKept());
    EXPECT_FALSE(exists("MultiDocanna1.ps"));
    EXPECT_FALSE(exists("MultiDocanna2.ps"));
    EXPECT_TRUE(exists("MultiDocbert1.ps")); // another user's queue is not touched
}

TEST_F(cancelling, a_job_from_the_machine_folder_leaves_the_queue_in_the_user_folder) {
    writeJob(machineSpool, "anna0009.ps", "From the machine folder");
    offerJob(machineSpool, "anna0009.ps");
    auto& d = openDialog();
    view.msgBoxAnswers.push_back(mb::Yes);

    EXPECT_TRUE(d.Unload(ControlMenu));

    EXPECT_FALSE(std::filesystem::exists(machineSpool + "anna0009.ps"));
    EXPECT_TRUE(queueKept());
    EXPECT_TRUE(jobKept()); // the other job in the user folder is not this dialog's
}

TEST_F(cancelling, escape_and_ok_deletes_the_job_but_leaves_the_dialog_on_screen) {
    auto& d = openDialog();
    view.msgBoxAnswers.push_back(mb::Ok);
    int key = dialog::KeyEscape, shift = 0;

    d.Form_KeyDown(key, shift);

    ASSERT_EQ(view.messages.size(), 1u);
    EXPECT_EQ(view.messages[0].prompt, confirmation());
    EXPECT_EQ(view.messages[0].style, 33); // OK/Cancel with a question mark
    EXPECT_FALSE(jobKept());
    EXPECT_FALSE(queueKept());
    EXPECT_TRUE(exists("MultiDocbert1.ps"));
    EXPECT_FALSE(state.DialogActive);
    EXPECT_TRUE(d.form().loaded);
}

TEST_F(cancelling, escape_and_cancel_deletes_nothing) {
    auto& d = openDialog();
    view.msgBoxAnswers.push_back(mb::Cancel);
    int key = dialog::KeyEscape, shift = 0;

    d.Form_KeyDown(key, shift);

    EXPECT_TRUE(jobKept());
    EXPECT_TRUE(queueKept());
    EXPECT_TRUE(state.DialogActive);
}

TEST_F(cancelling, other_keys_ask_nothing) {
    auto& d = openDialog();
    for (int key : {13, 8, 65, 115}) {
        int shift = 4;
        d.Form_KeyDown(key, shift);
    }
    EXPECT_TRUE(view.messages.empty());
    EXPECT_TRUE(jobKept());
}

TEST_F(cancelling, an_action_unloading_the_dialog_asks_nothing_and_deletes_nothing) {
    auto& d = openDialog();
    state.TrayCheck = 2; // the dialog was opened from the tray menu

    EXPECT_TRUE(d.Unload(Code));

    EXPECT_TRUE(view.messages.empty());
    EXPECT_TRUE(jobKept());
    EXPECT_TRUE(queueKept());
    EXPECT_FALSE(state.DialogActive);
    EXPECT_EQ(state.TrayCheck, 1); // the watcher's queue check is armed again
    EXPECT_FALSE(d.control("Timer1").enabled);
}

TEST_F(cancelling, unloading_leaves_other_tray_states_alone_and_terminating_rearms_the_watcher) {
    auto& d = openDialog();
    state.TrayCheck = 0;
    d.Unload();
    EXPECT_EQ(state.TrayCheck, 0);

    state.DialogActive = true;
    d.Form_Terminate();
    EXPECT_FALSE(state.DialogActive);
}

TEST_F(cancelling, a_job_already_gone_is_no_error) {
    auto& d = openDialog();
    std::filesystem::remove(userSpool + "anna0001.ps");
    view.msgBoxAnswers.push_back(mb::Yes);

    EXPECT_TRUE(d.Unload(ControlMenu));

    EXPECT_FALSE(queueKept());
    EXPECT_TRUE(errors.entries.empty());
}

} // namespace
} // namespace pl::test
