#include "dialog_fixture.h"

#include "dialog/job_dialog_host.h"

namespace pl::test {
namespace {

class job_dialog_host : public DialogFixture {};

TEST_F(job_dialog_host, loads_one_dialog_per_job_and_a_fresh_one_after_it_ended) {
    writeJob(machineSpool, "anna0001.ps", "First");
    offerJob(machineSpool, "anna0001.ps");
    dialog::JobDialogSlot slot(*context);

    auto& first = slot.loadJobDialog();
    EXPECT_TRUE(first.loaded);
    EXPECT_TRUE(state.DialogActive);
    EXPECT_EQ(slot.current()->control("pdfName").text, "First");
    // While it is loaded the same dialog is answered.
    EXPECT_EQ(&slot.loadJobDialog(), &first);

    slot.current()->Unload();
    EXPECT_FALSE(state.DialogActive);

    writeJob(machineSpool, "anna0002.ps", "Second");
    offerJob(machineSpool, "anna0002.ps");
    auto& second = slot.loadJobDialog();
    EXPECT_TRUE(second.loaded);
    EXPECT_TRUE(state.DialogActive);
    EXPECT_EQ(slot.current()->control("pdfName").text, "Second");
}

TEST_F(job_dialog_host, a_dialog_whose_automatic_action_ran_comes_back_unloaded) {
    writeProfile(suite, "fax.plp");
    writeJob(machineSpool, "anna~profile~fax.ps", "Fax");
    offerJob(machineSpool, "anna~profile~fax.ps");
    actionLog.autoPar = "plassist=desktop\r\n";
    dialog::JobDialogSlot slot(*context, [this](dialog::JobDialog&) {
        return dialog::DialogActions{std::make_unique<RecordingJobActions>(actionLog),
                                     std::make_unique<RecordingDefaultActions>(actionLog)};
    });

    const auto& form = slot.loadJobDialog();

    EXPECT_FALSE(form.loaded);
    EXPECT_FALSE(state.DialogActive);
    EXPECT_TRUE(actionLog.called("RunProfileDefault plassist=desktop\r\n"));
}

} // namespace
} // namespace pl::test
