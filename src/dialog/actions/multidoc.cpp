// MultiDoc: the job is not converted but queued in the user's spool folder, to be joined with the
// next job that is; and the Sort button that puts the queue in another order.

#include "base/text.h"
#include "dialog/actions/job_actions.h"
#include "dialog/job_dialog.h"
#include "dialog/multidoc_queue.h"
#include "dialog/sort/sort_form.h"
#include "naming/title_extraction.h"

namespace pl::dialog {

void DialogJobActions::cmdMulti_Click() {
    finishJob("plDialog1.cmdMulti_Click", [&](std::string& step) {
        hideAndTakeJob("MultiDoc...");
        if (state().PsFile.empty())
            return false;
        control("pdfName").text = naming::GetPsFileTitle(state().PsFile, context().naming, errors());

        // The numbered step texts below tell the error report how far the move came.
        const std::string user = dialog_.userName();
        const std::string base = "Datei " + state().PsFile + " ablegen als psdir" + "\\MultiDoc" + user + ".ps";
        step = base;
        auto& files = services().os.files();
        auto& messages = services().messages;
        for (int n = 1; n <= MultiDocLimit; ++n) {
            step = base + "1 - ";
            const std::string candidate = multiDocFilePath(state().PsDirUser, user, n);
            if (files.exists(candidate))
                continue;
            // The lowest free number keeps the queue an unbroken run.
            step = base + "2 - ";
            log("Datei hinterlegen als " + state().PsFolder + "MultiDoc" + user + text::number(n) + ".ps");

            step = base + "3 - ";
            if (!files.exists(state().PsFile)) {
                messages.msgBox("Unexpected Error: File has been removed behind Paperlark.", mb::Exclamation);
                step = base + "10 - ";
                break;
            }
            step = base + "4.1 - ";
            if (!files.exists(state().PsDirUser)) {
                step = base + "4.2 - ";
                files.createFolder(state().PsDirUser);
            }
            step = base + "4 - ";
            step = base + "5 - ";
            // Asked again just before the move: another program may have been quicker.
            if (!files.exists(state().PsFile)) {
                step = base + "6 - ";
                messages.msgBox(state().PsFile + " does not exist!", mb::Exclamation, "Source File Missing");
            } else if (files.exists(candidate)) {
                step = base + "8 - ";
                messages.msgBox(candidate + " already exists!", mb::Exclamation, "Destination File Exists");
            } else {
                step = base + "7 - ";
                if (!files.rename(state().PsFile, candidate))
                    raise(err::PathFileAccessError, "cannot move " + state().PsFile + " to " + candidate);
            }
            step = base + "9 - ";
            step = base + "10 - ";
            break;
        }
        return true;
    });
}

void DialogJobActions::cmdSort_Click() {
    std::string step;
    trapErrors(errors(), "plDialog1.cmdSort_Click", step, [&] {
        step = "frmSort laden";
        sort_ = std::make_unique<SortForm>(context());
        sort_->Load();
    });
}

} // namespace pl::dialog
