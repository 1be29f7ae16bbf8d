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

namespace pl::test {

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
    // A job in the machine spool folder, offered to the dialog.
    void offerMachineJob(const std::string& title = "Report", const std::string& name = "anna0001.ps");
    // A profile file in `folder`.
    void writeProfile(const std::string& folder, const std::string& name) const;
    // The user's MultiDoc queue file number `n`.
    std::string writeQueued(int n, const std::string& title = "Queued") const;

    // A dialog for the offered job, loaded: its load sequence has run.
    dialog::JobDialog& openDialog();

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
    std::unique_ptr<dialog::JobDialog> dialog;
};

} // namespace pl::test
