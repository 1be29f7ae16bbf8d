#pragma once
// A job dialog on real folders and a real registry store in a temporary folder: machine and user
// spool folders, the installation's and the user's profile folders, and the user "anna".

#include "dialog/job_dialog.h"
#include "forms/context.h"
#include "platform/platform.h"
#include "support/recording_errors.h"
#include "support/scoped_env.h"
#include "support/scripted_view.h"
#include "support/temp_dir.h"
#include "support/test_registry.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace pl::test {

// What the dialog asked of its actions, and what they answer.
struct ActionLog {
    std::vector<std::string> calls;
    std::string autoPar;        // what LoadDefaultAction answers
    bool defaultAction = false; // what RunDefault answers
    bool called(std::string_view call) const;
};

// Job actions that write down each call.
class RecordingJobActions final : public dialog::JobActions {
public:
    explicit RecordingJobActions(ActionLog& log) : log_(log) {}
    void cmdEmail_Click() override { log_.calls.push_back("cmdEmail_Click"); }
    void cmdSave_Click() override { log_.calls.push_back("cmdSave_Click"); }
    void cmdDesktop_Click() override { log_.calls.push_back("cmdDesktop_Click"); }
    void cmdMulti_Click() override { log_.calls.push_back("cmdMulti_Click"); }
    void cmdSort_Click() override { log_.calls.push_back("cmdSort_Click"); }
    void plProfile_Click() override { log_.calls.push_back("plProfile_Click"); }
    void chkOpenPDF_LostFocus() override { log_.calls.push_back("chkOpenPDF_LostFocus"); }
    void lbOpenPDF_Click() override { log_.calls.push_back("lbOpenPDF_Click"); }
    void ckEncodePDF_MouseUp(int, int, float, float) override { log_.calls.push_back("ckEncodePDF_MouseUp"); }
    void lbEncodePDF_Click() override { log_.calls.push_back("lbEncodePDF_Click"); }
    void lbConfig_Click() override { log_.calls.push_back("lbConfig_Click"); }

private:
    ActionLog& log_;
};

// Default actions that write down each call and answer from the log.
class RecordingDefaultActions final : public dialog::DefaultActions {
public:
    explicit RecordingDefaultActions(ActionLog& log) : log_(log) {}
    std::string LoadDefaultAction(std::string_view profileName) override {
        log_.calls.push_back("LoadDefaultAction " + std::string(profileName));
        return log_.autoPar;
    }
    bool RunProfileDefault(std::string_view autoPar) override {
        log_.calls.push_back("RunProfileDefault " + std::string(autoPar));
        return true;
    }
    bool RunDefault() override {
        log_.calls.push_back("RunDefault");
        return log_.defaultAction;
    }

private:
    ActionLog& log_;
};

class DialogFixture : public ::testing::Test {
protected:
    DialogFixture();
    // No procedure may have reported an error unless the test cleared it.
    void TearDown() override;

    // Registry values of the suite's user and machine keys.
    void setUser(const std::string& name, const std::string& value);
    void setMachine(const std::string& name, const std::string& value);
    std::string user(const std::string& name) const;

    // A PostScript job whose "%%Title:" comment holds `title`; returns its full path.
    std::string writeJob(const std::string& folder, const std::string& name, const std::string& title) const;
    // Hands the job `name` in `folder` to the dialog as the watcher does.
    void offerJob(const std::string& folder, const std::string& name);
    // A profile file in `folder`.
    void writeProfile(const std::string& folder, const std::string& name) const;
    // The user's MultiDoc queue file number `n`.
    std::string writeQueued(int n, const std::string& title = "Queued") const;

    // A dialog for the offered job, loaded: its load sequence has run.
    dialog::JobDialog& openDialog();
    // The same with actions that record what the dialog asked of them.
    dialog::JobDialog& openDialogRecording();

    TestRegistry hives; // first: every store made from the environment uses its hives
    TempDir root;
    ScopedEnv env;
    std::string machineSpool; // PsDirMachine
    std::string userSpool;    // PsDirUser
    std::string suite;        // pldir: the installation's profiles
    std::string home;         // userprofile
    std::string userProfiles; // home/Paperlark/

    std::unique_ptr<platform::Platform> os;
    platform::Registry* registry = nullptr;
    RecordingErrors errors;
    ScriptedView view;
    std::unique_ptr<Services> services;
    forms::AppState state;
    texts::Texts texts;
    naming::NamingState naming;
    std::unique_ptr<forms::Context> context;

    ActionLog actionLog;
    std::unique_ptr<dialog::JobDialog> dialog;
};

} // namespace pl::test
