#pragma once
// A job dialog in a JobWorld of its own, drawn by a scripted view.

#include "dialog/job_dialog.h"
#include "job_world.h"
#include "support/scripted_view.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace pl::test {

class DialogFixture : public ::testing::Test, public JobWorld<ScriptedView> {
protected:
    // No procedure may have reported an error unless the test cleared it.
    void TearDown() override { EXPECT_EQ(errorList(), ""); }

    // A profile file in `folder`.
    void writeProfile(const std::string& folder, const std::string& name) const {
        root.write(std::filesystem::relative(folder + name, root.path()).string(),
                   "-sDEVICE=pdfwrite -dPDFSETTINGS=/prepress\r\n");
    }
    // A dialog for the offered job, loaded: its load sequence has run.
    dialog::JobDialog& openDialog() {
        dialog = std::make_unique<dialog::JobDialog>(*context, dialog::noActions);
        dialog->Load();
        return *dialog;
    }

    std::unique_ptr<dialog::JobDialog> dialog;
};

} // namespace pl::test
