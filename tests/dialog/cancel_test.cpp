#include "dialog_fixture.h"

#include <filesystem>

namespace pl::test {
namespace {

namespace fs = std::filesystem;
using dialog::unload_mode::Code;
using dialog::unload_mode::ControlMenu;

// A job in the user's spool folder with two queued documents beside it, and the queue of another
// user in the same folder.
class cancelling : public DialogFixture {
protected:
    void writeFolder() {
        writeJob(userSpool, "anna0001.ps", "Nachtrag");
        writeQueued(1, "Microsoft Word - Angebot.docx"); // the collection's first document names the PDF
        writeQueued(2);
        writeJob(userSpool, "MultiDocbert1.ps", "Bert's");
    }
    bool exists(const std::string& name) const { return fs::exists(userSpool + name); }
};

TEST_F(cancelling, by_close_button_or_escape_asks_and_deletes_the_job_and_its_folders_queue_only_on_consent) {
    enum How { CloseButton, Escape, ByAnAction };
    struct Case {
        How how;
        bool machineJob;
        int answer;
        int style; // of the question; 0: none is asked
        bool jobGone, queueGone, loaded, active;
    };
    const Case cases[] = {
        {CloseButton, false, mb::No, 36, false, false, true, true},
        {CloseButton, false, mb::Yes, 36, true, true, false, false},
        {CloseButton, true, mb::Yes, 36, true, false, false, false}, // the queue lies in the user folder
        {Escape, false, mb::Cancel, 33, false, false, true, true},
        {Escape, false, mb::Ok, 33, true, true, true, false}, // the dialog stays on screen
        {ByAnAction, false, 0, 0, false, false, false, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "how " << c.how << ", answer " << c.answer);
        writeFolder();
        if (c.machineJob)
            offerMachineJob("Report", "anna0009.ps");
        else
            offerJob(userSpool, "anna0001.ps");
        auto& d = openDialog();
        view.messages.clear();
        view.msgBoxAnswers.push_back(c.answer);
        state.TrayCheck = 2; // opened from the tray menu

        if (c.how == Escape) {
            int key = dialog::KeyEscape, shift = 0;
            d.Form_KeyDown(key, shift);
        } else {
            EXPECT_EQ(d.Unload(c.how == CloseButton ? ControlMenu : Code), !c.loaded);
        }

        if (c.style == 0) {
            EXPECT_TRUE(view.messages.empty());
            EXPECT_EQ(state.TrayCheck, 1); // the watcher's queue check is armed again
            EXPECT_FALSE(d.control("Timer1").enabled);
            view.msgBoxAnswers.clear();
        } else {
            ASSERT_EQ(view.messages.size(), 1u);
            EXPECT_EQ(view.messages[0].prompt, texts.text(5) + ": Angebot\r\n\r\n" + texts.text(11));
            EXPECT_EQ(view.messages[0].style, c.style);
            EXPECT_EQ(view.messages[0].title, texts.text(1));
        }
        EXPECT_EQ(fs::exists(state.PsFolder + state.PsFile), !c.jobGone);
        EXPECT_EQ(exists("MultiDocanna1.ps") || exists("MultiDocanna2.ps"), !c.queueGone);
        EXPECT_EQ(exists("MultiDocanna1.ps") && exists("MultiDocanna2.ps"), !c.queueGone);
        EXPECT_TRUE(exists("MultiDocbert1.ps")); // another user's queue is never touched
        EXPECT_EQ(exists("anna0001.ps"), c.machineJob || !c.jobGone);
        EXPECT_EQ(d.form().loaded, c.loaded);
        EXPECT_EQ(state.DialogActive, c.active);
    }
}

} // namespace
} // namespace pl::test
