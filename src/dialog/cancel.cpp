// Ending a dialog: the user abandons the job (close button, Escape) after a confirmation, which
// deletes the job and the user's MultiDoc queue; every unloading re-arms the watcher.

#include "base/errors.h"
#include "base/message_box.h"
#include "dialog/job_dialog.h"

namespace pl::dialog {

std::string JobDialog::confirmationText() {
    const auto& texts = context_.texts;
    return texts.text(5) + ": " + control("pdfName").text + "\r\n\r\n" + texts.text(11);
}

void JobDialog::Form_QueryUnload(int& cancel, int unloadMode) {
    std::string step;
    trapErrors(errors(), "plDialog1.QueryUnload", step, [&] {
        log("Form QueryUnlod");
        // Only the user's own closing asks; the unloading that the actions do passes silently.
        if (unloadMode != unload_mode::ControlMenu)
            return;
        const int answer = view().msgBox(confirmationText(), mb::YesNo | mb::Question, context_.texts.text(1));
        if (answer == mb::No) {
            cancel = 1;
            return;
        }
        deleteJob(step);
    });
}

void JobDialog::Form_KeyDown(int& keyCode, int& /*shift*/) {
    std::string step;
    trapErrors(errors(), "plDialog1.Form_KeyDown", step, [&] {
        if (keyCode != KeyEscape)
            return;
        log("Form QueryUnlod");
        const int answer = view().msgBox(confirmationText(), mb::OkCancel | mb::Question, context_.texts.text(1));
        // The dialog stays on screen after the deletion; only closing it unloads it.
        if (answer == mb::Ok)
            deleteJob(step);
    });
}

void JobDialog::deleteJob(std::string& step) {
    step = "Multidoc Dateien loeschen";
    // The queue is looked for beside the job: a job from the user spool folder, where the queue
    // lies, takes the whole queue with it; a job from another folder leaves the queue alone.
    auto& files = services().os.files();
    const std::string folder = state().PsFolder;
    std::vector<platform::DirEntry> queued;
    ignoringErrors([&] {
        queued = files.findAllOf(folder, "MultiDoc" + userName() + "*.ps", platform::Entries::OwnRegularFiles);
    });
    for (const auto& entry : queued)
        ignoringErrors([&] { files.remove(folder + entry.name); });

    step = "Aktuelle Datei loeschen";
    log("X geklickt: Loesche Datei " + folder + state().PsFile);
    if (!state().PsFile.empty())
        ignoringErrors([&] { files.remove(folder + state().PsFile); });
    state().DialogActive = false;
}

void JobDialog::Form_Unload(int& cancel) {
    std::string step;
    trapErrors(errors(), "plDialog1.Form_Unload", step, [&] {
        step = "cancel = " + std::to_string(cancel);
        log("Form Unload");
        state().DialogActive = false;
        if (state().TrayCheck == 2)
            state().TrayCheck = 1;
    });
}

void JobDialog::Form_Terminate() {
    std::string step;
    trapErrors(errors(), "plDialog1.Form_Terminate", step, [&] {
        log("Form Terminate");
        state().DialogActive = false;
    });
}

} // namespace pl::dialog
