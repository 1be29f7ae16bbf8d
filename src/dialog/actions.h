#pragma once
// Where the job dialog hands over to the procedures that finish a job. The dialog prepares itself,
// shows the job and deals with cancelling; what the buttons and options do, and which action runs
// without asking, lives behind these two interfaces. A dialog is built with a factory that makes
// both for that one dialog instance, so an implementation can hold on to its dialog.

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace pl::dialog {

class JobDialog;

// The dialog's buttons and option controls. The views call them when the user clicks; the dialog
// itself calls cmdDesktop_Click for Enter in the name box and plProfile_Click whenever the profile
// selection changes (as a classic combo box raises its click event for a selection made in code).
// Every action that finishes the job ends by unloading the dialog (JobDialog::Unload).
class JobActions {
public:
    virtual ~JobActions() = default;

    virtual void cmdEmail_Click() = 0;
    virtual void cmdSave_Click() = 0;
    virtual void cmdDesktop_Click() = 0;
    virtual void cmdMulti_Click() = 0;
    // Opens the MultiDoc sort dialog.
    virtual void cmdSort_Click() = 0;

    // The selected profile changed: read its file (output format, encryption settings).
    virtual void plProfile_Click() = 0;

    virtual void chkOpenPDF_LostFocus() = 0;
    virtual void lbOpenPDF_Click() = 0;
    virtual void ckEncodePDF_MouseUp(int button, int shift, float x, float y) = 0;
    virtual void lbEncodePDF_Click() = 0;
    virtual void lbConfig_Click() = 0;
};

// The actions that run without the user: a profile's automatic-action lines, and the
// administrator's default action. Called at the end of the dialog's load sequence.
class DefaultActions {
public:
    virtual ~DefaultActions() = default;

    // The automatic-action lines ("plassist=", "plassist2=", "plassist3=") of the profile
    // `profileName`, each ended by CR LF; the empty text when it has none.
    virtual std::string LoadDefaultAction(std::string_view profileName) = 0;
    // Runs the automatic action described by `autoPar`; false when its action word is unknown. The
    // dialog unloads itself afterwards whatever the result.
    virtual bool RunProfileDefault(std::string_view autoPar) = 0;
    // Runs the administrator's default action ("ADefault"); true when one was run, which then has
    // closed the dialog itself.
    virtual bool RunDefault() = 0;
};

struct DialogActions {
    std::unique_ptr<JobActions> job;
    std::unique_ptr<DefaultActions> defaults;
};

// Makes the actions of one dialog instance; called once, while the dialog is being constructed.
using DialogActionsFactory = std::function<DialogActions(JobDialog&)>;

// Actions that do nothing: no button converts, no profile has automatic-action lines and no
// default action is set. The dialog runs with these until the real job actions are plugged in
// through the same factory, so preparing and cancelling a job work on their own.
DialogActions noActions(JobDialog& dialog);

} // namespace pl::dialog
