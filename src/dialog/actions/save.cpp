// Save: the user picks the output file in a Save As dialog; the automatic save takes a ready path.

#include "base/errors.h"
#include "base/text.h"
#include "dialog/actions/converter_call.h"
#include "dialog/actions/job_actions.h"
#include "dialog/actions/open_file_check.h"
#include "dialog/actions/output_names.h"
#include "dialog/job_dialog.h"
#include "dialog/settings.h"
#include "platform/paths.h"

namespace pl::dialog {

namespace {

// The Save As dialog's filter: a description and a pattern, divided by a zero character as the
// classic dialog's filter table divides them (a view takes it like the "|" of the control's
// property). Five blanks stand before the parenthesis.
std::string saveFilter(std::string_view outputSuffix) {
    std::string filter = "Paperlark File     (" + std::string(outputSuffix) + ")";
    filter.push_back('\0');
    return filter + "*" + std::string(outputSuffix);
}

// The folder of `path` without its trailing separator, as "LastDir" keeps it; `previous` when the
// path holds no separator.
std::string folderOf(std::string_view path, std::string previous) {
    for (std::size_t i = path.size(); i > 0; --i)
        if (path[i - 1] == platform::PathSep)
            return std::string(path.substr(0, i - 1));
    return previous;
}

} // namespace

void DialogJobActions::cmdSave_Click() {
    finishJob("plDialog1.cmdSave_Click", [&](std::string& step) {
        log("Speichern...");
        stopTimer();
        const std::string oldPath = takeJob();
        if (state().PsFile.empty())
            return false;
        // The Save As dialog is modal but lets other events run; what they do to PsFile is undone.
        const std::string job = state().PsFile;

        step = "Altes MultiFile vorhanden?";
        state().MultiDocArgs = dialog_.GetMultiDocFiles();

        step = "Speichern";
        const std::string folder = converterFolder(services());
        std::string lastDir = services().registry.GetRegValue(UserKey, "LastDir");
        if (lastDir == NotFoundMarker)
            lastDir.clear();
        const auto& naming = context().naming;
        std::string chosen = GetSaveName(saveFilter(naming.OutputSuffix), "", lastDir, control("pdfName").text, 0);
        state().PsFile = job;

        if (chosen.empty() || chosen.find('?') != std::string::npos) {
            // Given back: the watcher offers the job again under its old name.
            services().os.files().rename(state().PsFile, oldPath);
            return true;
        }
        view().hide(dialog_.form());

        // The open-file test sees the name as the user typed it, before the suffix repair.
        step = "Testen, ob x vorhanden und geoeffnet";
        chosen = CheckOpenFile(chosen);

        step = "LastDir speichern";
        lastDir = folderOf(chosen, lastDir);
        services().registry.SetRegValue(UserKey, "LastDir", lastDir);

        step = "Optionen sammeln";
        const std::string actions = saveActionList(control("chkOpenPDF").value, control("ckEncodePDF").value);

        step = "Suffix richtigstellen (" + naming.PageNumberPattern + naming.OutputSuffix + ") " + chosen;
        chosen = repairSavedPathSuffix(chosen, naming.OutputSuffix, naming.PageNumberPattern);

        const ConverterCall call = conversion(folder, actions, chosen);
        step = "PDF Erstellen: " + folder + call.logged();
        startConverter(call, call.logged(), Route::Save);
        return true;
    });
}

void DialogJobActions::AutoActionSave(std::string path) {
    finishJob("plDialog1.AutoActionSave", [&](std::string& step) {
        log("Speichern als " + path);
        stopTimer();
        const std::string oldPath = takeJob();
        if (state().PsFile.empty()) {
            ignoringErrors([&] { services().os.files().rename(state().PsFile, oldPath); });
            return true;
        }
        step = "Altes MultiFile vorhanden?";
        state().MultiDocArgs = dialog_.GetMultiDocFiles();

        step = "Speichern";
        const std::string folder = converterFolder(services());
        if (path.empty())
            return true; // nothing to write to: nothing is converted
        CheckForPdfExt(path);
        view().hide(dialog_.form());
        // No open-file test here: an existing file is left to the converter.
        step = "Testen, ob x vorhanden und geoeffnet";

        step = "Optionen sammeln";
        const std::string actions = saveActionList(control("chkOpenPDF").value, control("ckEncodePDF").value);
        const ConverterCall call = conversion(folder, actions, path);
        step = "PDF Erstellen: " + folder + call.logged();
        startConverter(call, call.logged(), Route::Direct);
        return true;
    });
}

std::string DialogJobActions::GetSaveName(std::string_view filter, std::string_view defExt, std::string_view initialDir,
                                          std::string_view fileName, std::intptr_t) {
    forms::SaveDialogRequest request;
    request.filter = std::string(filter);
    request.defaultExt = std::string(defExt);
    request.initDir = std::string(initialDir);
    if (!fileName.empty())
        request.fileName = std::string(fileName);
    // Flags 2050: the dialog asks before overwriting, and the chosen folder must exist.
    request.overwritePrompt = true;
    request.pathMustExist = true;
    return view().askSaveFileName(request).value_or(std::string());
}

std::string DialogJobActions::CheckOpenFile(std::string_view outFile) {
    return dialog::CheckOpenFile(outFile, services().os.files(), context().naming, errors());
}

void DialogJobActions::CheckForPdfExt(std::string& name) {
    std::string step;
    trapErrors(errors(), "plDialog1.CheckForPdfExt", step,
               [&] { dialog::CheckForPdfExt(name, context().naming.OutputSuffix); });
}

} // namespace pl::dialog
