#include "dialog/job_dialog_host.h"

namespace pl::dialog {

JobDialogSlot::JobDialogSlot(forms::Context& context, DialogActionsFactory makeActions)
    : context_(context), makeActions_(std::move(makeActions)) {}

JobDialogSlot::~JobDialogSlot() {
    release();
}

forms::Form& JobDialogSlot::loadJobDialog() {
    if (dialog_ && dialog_->form().loaded)
        return dialog_->form();
    release();
    dialog_ = std::make_unique<JobDialog>(context_, makeActions_);
    dialog_->Load();
    return dialog_->form();
}

// An instance ends when nothing refers to it any more: after its unloading, when the next job
// needs a fresh one, or at the end of the program.
void JobDialogSlot::release() {
    if (!dialog_)
        return;
    dialog_->Unload(unload_mode::AppWindows);
    dialog_->Form_Terminate();
    dialog_.reset();
}

} // namespace pl::dialog
