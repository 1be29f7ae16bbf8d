// E-mail: the job becomes a file in the user's spool folder, which the converter hands to mail.

#include "dialog/actions/converter_call.h"
#include "dialog/actions/job_actions.h"
#include "dialog/actions/output_names.h"
#include "dialog/job_dialog.h"

namespace pl::dialog {

void DialogJobActions::cmdEmail_Click() {
    finishJob("plDialog1.cmdEmail_Click", [&](std::string& step) {
        const std::string oldPath = hideAndTakeJob("Email Senden...");
        if (state().PsFile.empty())
            return false;

        step = "Leeren Dateinamen füllen... " + oldPath;
        auto& name = fillNameBox();

        // The open-file test sees the name before the suffix repair below.
        step = "Existiert Outputfile schon?";
        name = CheckOpenFile(state().PsDirUser + name);

        step = "Altes MultiFile vorhanden?";
        state().MultiDocArgs = dialog_.GetMultiDocFiles();

        step = "Optionen";
        const std::string actions = emailActionList(control("ckEncodePDF").value);
        const std::string folder = converterFolder(services());

        const auto& naming = context().naming;
        step = naming.OutputSuffix + " an Dateinamen anfuegen";
        name = repairNameBoxSuffix(name, naming.OutputSuffix, naming.PageNumberPattern);

        const ConverterCall call = conversion(folder, actions, name);
        startConverter(call, call.logged(), Route::Direct);
        return true;
    });
}

} // namespace pl::dialog
