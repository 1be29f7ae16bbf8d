// E-mail: the job becomes a file in the user's spool folder, which the converter hands to mail.

#include "dialog/actions/converter_call.h"
#include "dialog/actions/job_actions.h"
#include "dialog/actions/output_names.h"
#include "dialog/job_dialog.h"

namespace pl::dialog {

void DialogJobActions::cmdEmail_Click() {
    std::string step;
    bool keepDialog = false;
    trapErrors(errors(), "plDialog1.cmdEmail_Click", step, [&] {
        log("Email Senden...");
        view().hide(dialog_.form());
        stopTimer();
        const std::string oldPath = takeJob();
        if (state().PsFile.empty()) {
            keepDialog = true;
            return;
        }

        step = "Leeren Dateinamen füllen... " + oldPath;
        auto& name = control("pdfName").text;
        const auto& naming = context().naming;
        if (name.empty())
            name = EmptyNameBoxName;
        if (characters(name) < 4)
            name += naming.OutputSuffix;
        // Checked on a copy that is dropped: the name goes on as it is.
        std::string copy = name;
        CheckSuffix(copy);

        // The open-file test sees the name before the suffix repair below.
        step = "Existiert Outputfile schon?";
        name = CheckOpenFile(state().PsDirUser + name);

        step = "Altes MultiFile vorhanden?";
        state().MultiDocArgs = dialog_.GetMultiDocFiles();

        step = "Optionen";
        ConverterCall call;
        call.actions = emailActionList(control("ckEncodePDF").value);
        call.folder = converterFolder(services());

        step = naming.OutputSuffix + " an Dateinamen anfuegen";
        name = repairNameBoxSuffix(name, naming.OutputSuffix, naming.PageNumberPattern);

        call.profile = control("plProfile").text;
        call.output = name;
        call.multiDoc = state().MultiDocArgs;
        call.jobFile = state().PsFile;
        startConverter(call, call.logged(), Route::Direct);
    });
    if (!keepDialog)
        dialog_.Unload();
}

} // namespace pl::dialog
