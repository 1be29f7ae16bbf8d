#include "dialog/job_dialog.h"

#include "assistant/runtime_helpers.h"
#include "dialog/dialog_layout.h"

namespace pl::dialog {

JobDialog::JobDialog(forms::Context& context, const DialogActionsFactory& makeActions) : context_(context) {
    buildJobDialogForm(form_);
    actions_ = makeActions(*this);
}

void JobDialog::Load() {
    if (form_.loaded)
        return;
    form_.loaded = true;
    form_.windowState = forms::Normal;
    Form_Load();
}

bool JobDialog::Unload(int unloadMode) {
    if (!form_.loaded)
        return true;
    int cancel = 0;
    Form_QueryUnload(cancel, unloadMode);
    if (cancel != 0)
        return false;
    Form_Unload(cancel);
    if (cancel != 0)
        return false;
    form_.loaded = false;
    control("Timer1").enabled = false; // a form's timers end with it
    view().unload(form_);
    return true;
}

void JobDialog::Timer1_Timer() {
    std::string step;
    trapErrors(errors(), "plDialog1.Timer1_Timer", step, [&] {
        step = "Profile aktualisieren";
        refreshProfiles();
        step = "InfoLabel aktualisieren";
        control("lbInfo").caption = GetInfos();
        view().refresh(form_);
    });
}

void JobDialog::log(std::string_view line) {
    if (state().DebugMode == "1")
        assistant::DebugWrite(line, services());
}

std::string JobDialog::userName() {
    return assistant::userName(services());
}

} // namespace pl::dialog
