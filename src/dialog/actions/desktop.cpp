// Desktop: the job becomes a file on the user's desktop, under a name that is free there.

#include "assistant/suite_keys.h"
#include "base/text.h"
#include "dialog/actions/converter_call.h"
#include "dialog/actions/job_actions.h"
#include "dialog/actions/output_names.h"
#include "dialog/job_dialog.h"
#include "dialog/settings.h"
#include "naming/name_numbering.h"
#include "platform/environment_expand.h"
#include "platform/paths.h"

namespace pl::dialog {

namespace {

constexpr int DesktopCaptionText = 9;

// Desktop's debug line names a fixed action list, whatever the real one is.
constexpr std::string_view LoggedDesktopActions = "delps,save";

} // namespace

std::string DialogJobActions::desktopFolder() {
    auto& registry = services().registry;
    const auto& env = services().os.environment();
    const std::pair<std::string_view, std::string_view> places[] = {
        {UserKey, "Desktop"}, {MachineKey, "Desktop"}, {assistant::ShellFoldersKey, "Desktop"}};
    std::string folder;
    for (const auto& [key, value] : places) {
        std::string candidate = registry.GetRegValue(key, value);
        if (candidate == NotFoundMarker)
            continue;
        platform::ReplaceEnviron(candidate, env);
        if (!candidate.empty()) {
            folder = std::move(candidate);
            break;
        }
    }
    // Where none of the three places names one, the system's own desktop folder is taken, so that
    // the file does not land in whatever the working folder happens to be.
    if (folder.empty())
        folder = services().os.folders().desktop();
    if (folder.empty())
        return folder;
    // A value read into a fixed-size buffer may keep its terminating zero.
    if (folder.back() == '\0')
        folder.pop_back();
    if (folder.empty() || folder.back() != platform::PathSep)
        folder.push_back(platform::PathSep);
    return folder;
}

std::string DialogJobActions::desktopCaption() {
    const std::string caption = userThenMachine(services().registry, "DesktopCaption");
    return caption.empty() ? context().texts.text(DesktopCaptionText) : caption;
}

void DialogJobActions::cmdDesktop_Click() {
    finishJob("plDialog1.cmdDesktop_Click", [&](std::string& step) {
        const std::string oldPath = hideAndTakeJob("Auf Desktop...");
        if (state().PsFile.empty())
            return false;

        // Without profiles the converter gets an empty profile.
        const bool profilesListed = !control("plProfile").items.empty();
        state().MultiDocArgs = dialog_.GetMultiDocFiles();

        step = "plDesktop ermitteln";
        const std::string desktop = desktopFolder();
        // An account without a desktop folder gets one: the job is not to fail on a folder that
        // merely was never made.
        if (!desktop.empty() && !services().os.files().isFolder(desktop))
            services().os.files().createFolder(desktop);

        step = "plDesktop Caption";
        control("cmdDesktop").caption = desktopCaption();

        step = "Leeren Dateinamen füllen... " + oldPath;
        auto& name = fillNameBox();

        const auto& naming = context().naming;
        step = naming.OutputSuffix + " an Dateinamen anfuegen";
        name = repairNameBoxSuffix(name, naming.OutputSuffix, naming.PageNumberPattern);

        step = "Existiert Outputfile schon?";
        name = naming::CheckpdfName(desktop, name, naming, services().os.files(), errors());

        const std::string folder = converterFolder(services());
        step = "Optionen sammeln";
        const std::string actions = saveActionList(control("chkOpenPDF").value, control("ckEncodePDF").value);

        step = "PDF Erstellen";
        ConverterCall call = conversion(folder, actions, desktop + name);
        if (!profilesListed)
            call.profile.clear();
        step = "PDF Erstellen - " + call.commandLine();
        startConverter(call,
                       std::string(ConverterProgram) + " " + std::string(ConversionSwitch) + " " +
                           std::string(LoggedDesktopActions) + call.afterActions(),
                       Route::Direct);
        return true;
    });
}

void DialogJobActions::CheckSuffix(std::string& name) {
    const auto& suffix = context().naming.OutputSuffix;
    const std::string data = "Suffix = " + suffix + "\r\n" + "Filename = " + name;
    try {
        dialog::CheckSuffix(name, suffix);
    } catch (...) {
        errors().report("plDialog1.CheckSuffix", "", currentError(), data);
    }
}

} // namespace pl::dialog
