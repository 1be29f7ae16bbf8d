#pragma once
// The job dialog plDialog1: one instance per print job. It prepares itself for the job when it is
// loaded (texts, look, profiles, policy, info label, proposed file name), then either hands the job
// to an automatic action or waits for the user, and it deals with every way of ending: an action
// unloading it, the user closing it, Escape. What the buttons do lives behind JobActions.

#include "dialog/actions.h"
#include "dialog/appearance.h"
#include "forms/context.h"

#include <string>
#include <string_view>

namespace pl::dialog {

// Why a form is being unloaded, as the form system reports it to Form_QueryUnload.
namespace unload_mode {
inline constexpr int ControlMenu = 0; // the user closed the window (close button, system menu)
inline constexpr int Code = 1;        // the program unloaded it
inline constexpr int AppWindows = 2;  // the session is ending
inline constexpr int TaskManager = 3;
} // namespace unload_mode

inline constexpr int KeyEscape = 27;
inline constexpr int KeyEnter = 13;
inline constexpr int KeyPaste = 22; // Ctrl+V as a typed character

class JobDialog {
public:
    // The actions are made by `makeActions` for this instance.
    JobDialog(forms::Context& context, const DialogActionsFactory& makeActions);
    JobDialog(const JobDialog&) = delete;
    JobDialog& operator=(const JobDialog&) = delete;

    forms::Form& form() { return form_; }
    const forms::Form& form() const { return form_; }
    forms::Context& context() { return context_; }
    JobActions& actions() { return *actions_.job; }
    DefaultActions& defaults() { return *actions_.defaults; }
    const Background& background() const { return background_; }

    // --- Life of the form -------------------------------------------------------------------
    // Loads the form and runs its load sequence.
    void Load();
    // Unloads the form, asking Form_QueryUnload and Form_Unload first; false when one of them
    // cancelled. Actions end with Unload(); a view reports the close button as ControlMenu.
    bool Unload(int unloadMode = unload_mode::Code);

    // --- Load sequence (load_sequence.cpp) ------------------------------------------------------
    void Form_Load();
    // Pulls the dialog in front of every window without keeping it there; not when the program
    // was started with exactly "/v".
    void BringToFront();

    // --- Profiles (profiles.cpp) ----------------------------------------------------------------
    // Refills plProfile when the profile files changed and selects the default profile; 0 when
    // it refilled, non-zero when nothing changed.
    int LoadProfiles();
    // The timer's refresh: LoadProfiles, keeping the profile the user had chosen.
    void refreshProfiles();
    // Selects entry `index` of plProfile (-1: none) and raises plProfile_Click when that changes
    // the selection.
    void selectProfile(int index);

    // --- Policy (policy.cpp) --------------------------------------------------------------------
    void LoadPolicy();

    // --- Info label (info_label.cpp) ------------------------------------------------------------
    // The text of lbInfo; shows or hides cmdSort and widens or narrows the dialog for it.
    std::string GetInfos();
    // The user's MultiDoc queue as converter arguments: each file quoted, followed by a blank.
    std::string GetMultiDocFiles();

    // --- Texts and looks (appearance.cpp) -------------------------------------------------------
    void TexteAnzeigen();
    void Graumodus();
    void Farbverlauf(forms::Rgb start, forms::Rgb end);

    // --- Ending (cancel.cpp) --------------------------------------------------------------------
    void Form_QueryUnload(int& cancel, int unloadMode);
    // The form sees every key before its controls do (key preview): a view hands each key press
    // here first, so Escape works wherever the focus is.
    void Form_KeyDown(int& keyCode, int& shift);
    void Form_Unload(int& cancel);
    void Form_Terminate();

    // --- Name box (name_box.cpp) ----------------------------------------------------------------
    void pdfName_KeyPress(int& keyAscii);
    void pdfName_GotFocus();

    // --- Timer ----------------------------------------------------------------------------------
    void Timer1_Timer();

    // --- For the actions ------------------------------------------------------------------------
    // Writes one line to the debug log while logging is on.
    void log(std::string_view line);
    // The cleaned user name that every job and queue file of this user carries.
    std::string userName();
    forms::Control& control(std::string_view name) { return form_.control(name); }
    const forms::Control& control(std::string_view name) const { return form_.control(name); }

private:
    Services& services() { return context_.services; }
    forms::AppState& state() { return context_.state; }
    forms::View& view() { return context_.view; }
    ErrorSink& errors() { return context_.services.errors; }

    std::string selectProfileNamedByJob();
    void proposeFileName(std::string& step);
    void deleteJob(std::string& step);
    std::string confirmationText();

    forms::Context& context_;
    forms::Form form_{"plDialog1"};
    Background background_;
    // The profile list as last filled into plProfile: names, each followed by "|".
    std::string ProfileList;
    DialogActions actions_;
};

} // namespace pl::dialog
