#pragma once
// What the job dialog's buttons and options do, and the actions that run without the user. Every
// button that finishes a job takes the job file out of the watcher's sight first (a private "~"
// name), builds one converter command line, starts the converter and unloads the dialog; MultiDoc
// moves the job into the user's queue instead. One object per dialog instance, made by jobActions.
//
// The procedures keep their classic names and step texts: the step text of a failing procedure is
// what the error report tells, so it says how far the procedure came. A button whose procedure fails
// after the job was taken still unloads the dialog once the error is reported: the dialog is hidden
// by then, and a loaded dialog would keep the watcher from every later job.

#include "dialog/actions.h"
#include "forms/context.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace pl::dialog {

class SortForm;
struct ConverterCall;

// What the job dialog may ask of the program around it.
struct ActionHooks {
    // Switches the resident form's watch timer off (false) and on again (true) while the
    // configuration program is being started; nothing when there is no resident form.
    std::function<void(bool enabled)> residentTimer;
};

class DialogJobActions final : public JobActions {
public:
    DialogJobActions(JobDialog& dialog, ActionHooks hooks);
    ~DialogJobActions() override;
    DialogJobActions(const DialogJobActions&) = delete;
    DialogJobActions& operator=(const DialogJobActions&) = delete;

    // --- Buttons --------------------------------------------------------------------------------
    void cmdEmail_Click() override;   // email.cpp
    void cmdSave_Click() override;    // save.cpp
    void cmdDesktop_Click() override; // desktop.cpp
    void cmdMulti_Click() override;   // multidoc.cpp
    void cmdSort_Click() override;    // multidoc.cpp

    // --- Options (options.cpp) ------------------------------------------------------------------
    // Reads the chosen profile: its output format, and whether it brings a password of its own.
    void plProfile_Click() override;
    void chkOpenPDF_LostFocus() override;
    void lbOpenPDF_Click() override;
    // Called after the box has taken the click the standard way (an unticked or greyed box becomes
    // ticked, a ticked one unticked).
    void ckEncodePDF_MouseUp(int button, int shift, float x, float y) override;
    void lbEncodePDF_Click() override;
    void lbConfig_Click() override;

    // --- Save (save.cpp) ------------------------------------------------------------------------
    // Saves to `path` without asking; an empty path converts nothing. Always unloads the dialog.
    void AutoActionSave(std::string path);
    // The Save As dialog: the chosen path, or the empty text when the user cancelled. `hWnd` is
    // accepted and not used.
    std::string GetSaveName(std::string_view filter, std::string_view defExt, std::string_view initialDir,
                            std::string_view fileName, std::intptr_t hWnd);
    std::string CheckOpenFile(std::string_view outFile);
    void CheckForPdfExt(std::string& name);

    // --- Desktop (desktop.cpp) ------------------------------------------------------------------
    void CheckSuffix(std::string& name);
    // The desktop folder, ending in its separator; the empty text when none is known.
    std::string desktopFolder();
    // The Desktop button's caption: the administrator's, else text 9.
    std::string desktopCaption();

    // --- Encryption's third state (options.cpp) -------------------------------------------------
    // Whether the encrypt box can be greyed ("let the profile decide"): set whenever a profile is
    // selected, the load sequence's own selections included, and true exactly when the profile
    // brings a password of its own, the only case in which leaving the choice to it means something.
    bool EncodeTriState = false;
    // The encrypt box's value after the previous mouse click.
    int EncodeLastValue = 0;

    // The MultiDoc sort dialog of this job dialog, while there is one.
    SortForm* sortForm() { return sort_.get(); }

private:
    forms::Context& context();
    Services& services();
    forms::AppState& state();
    forms::View& view();
    ErrorSink& errors();
    forms::Control& control(std::string_view name);
    void log(std::string_view line);

    // Runs the procedure of a button that finishes the job, under its error trap `tag`, and unloads
    // the dialog afterwards, after an error too; not when the procedure answers false because the
    // job could not be taken, which leaves the dialog as it is.
    void finishJob(std::string_view tag, const std::function<bool(std::string& step)>& procedure);
    // The dialog's own timer stops for good once an action has begun.
    void stopTimer();
    // Gives the job file its private name: PsFile becomes its new full path, the empty text when the
    // rename failed. Returns the job's old path.
    std::string takeJob();
    // How E-mail, Desktop and MultiDoc begin: the log line, the dialog hidden, its timer stopped,
    // the job taken. Returns the job's old path.
    std::string hideAndTakeJob(std::string_view logLine);
    // E-mail's and Desktop's name box: an empty one gets the default name, a short one the output
    // suffix; CheckSuffix sees a copy, which is dropped. Returns the box's text.
    std::string& fillNameBox();
    // A conversion of the job as it stands (profile box, queue, job file) into `output`.
    ConverterCall conversion(std::string folder, std::string actions, std::string output);
    // The debug line, the presence check and the start of one conversion.
    enum class Route { Direct, Save };
    void startConverter(const ConverterCall& call, std::string_view loggedLine, Route route);

    JobDialog& dialog_;
    ActionHooks hooks_;
    std::unique_ptr<SortForm> sort_;
};

// The profile's automatic-action lines and the administrator's default action.
class DialogDefaultActions final : public DefaultActions {
public:
    explicit DialogDefaultActions(JobDialog& dialog, DialogJobActions& buttons) : dialog_(dialog), buttons_(buttons) {}

    std::string LoadDefaultAction(std::string_view profileName) override;
    bool RunProfileDefault(std::string_view autoPar) override;
    bool RunDefault() override;

private:
    // The "savedir" action: into a fixed folder under a free numbered name.
    void saveIntoFolder(std::string folder);

    JobDialog& dialog_;
    DialogJobActions& buttons_;
};

// The actions that convert jobs: the program's own. A dialog made with them finishes its job.
DialogActions jobActions(JobDialog& dialog);
// The same with the program's hooks (the resident form's timer).
DialogActionsFactory jobActionsWith(ActionHooks hooks);

} // namespace pl::dialog
