#pragma once
// The watcher's way to the job dialog: one dialog instance at a time, made afresh for each job
// once the previous one has been unloaded.

#include "dialog/actions.h"
#include "dialog/actions/job_actions.h"
#include "dialog/job_dialog.h"
#include "forms/context.h"

#include <memory>

namespace pl::dialog {

// Each dialog gets the program's own actions unless told otherwise: a slot that is to convert
// nothing (a test of the dialog's preparation) says so with noActions.
class JobDialogSlot final : public forms::JobDialogHost {
public:
    explicit JobDialogSlot(forms::Context& context, DialogActionsFactory makeActions = jobActions);
    ~JobDialogSlot() override;
    JobDialogSlot(const JobDialogSlot&) = delete;
    JobDialogSlot& operator=(const JobDialogSlot&) = delete;

    // The loaded dialog; otherwise a new instance, loaded (which runs its load sequence). An
    // automatic action may have unloaded it again before this returns.
    forms::Form& loadJobDialog() override;

    // The current instance, loaded or not; null before the first job.
    JobDialog* current() { return dialog_.get(); }

private:
    void release();

    forms::Context& context_;
    DialogActionsFactory makeActions_;
    std::unique_ptr<JobDialog> dialog_;
};

} // namespace pl::dialog
