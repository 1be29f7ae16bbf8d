#pragma once
// The assistant's objects for a program's main, made in the order in which they depend on each
// other: the operating system's services, the registry, the process-wide state, the error report,
// the texts, the job dialogs and the resident form, all talking to the one view. The main binds its
// view to the forms, starts the program and runs the watch timer in its own event loop.

#include "assistant/error_report.h"
#include "assistant/resident_form.h"
#include "dialog/actions/job_actions.h"
#include "dialog/job_dialog_host.h"
#include "forms/context.h"
#include "platform/folder_changes.h"
#include "platform/platform.h"
#include "platform/registry.h"

#include <memory>
#include <string>

namespace pl::app {

class AssistantProgram {
public:
    // `commandLine` is the companion program's command line ("" for none).
    AssistantProgram(forms::View& view, std::string commandLine);
    AssistantProgram(const AssistantProgram&) = delete;
    AssistantProgram& operator=(const AssistantProgram&) = delete;

    assistant::ResidentForm& resident() { return resident_; }
    dialog::JobDialogSlot& dialogs() { return dialogs_; }
    forms::AppState& state() { return state_; }

    // The resident form's Form_Initialize and Form_Load; false when the program is to end at once
    // with state().exitCode.
    bool start();
    // One tick of the watch timer (every WatchInterval milliseconds); false once the program is to
    // end with state().exitCode.
    bool tick();

    static constexpr int WatchInterval = 1000;

private:
    std::unique_ptr<platform::Platform> os_;
    platform::Registry registry_;
    forms::AppState state_;
    assistant::ErrorReport report_;
    Services services_;
    texts::Texts texts_;
    naming::NamingState naming_;
    forms::Context context_;
    dialog::ActionHooks hooks_;
    dialog::JobDialogSlot dialogs_;
    std::unique_ptr<platform::FolderChanges> changes_;
    assistant::ResidentForm resident_;
};

} // namespace pl::app
