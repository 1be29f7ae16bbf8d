// plDialog1's load sequence: everything from the moment the watcher loads the dialog for a job
// until the dialog waits for the user (or an automatic action has taken the job).

#include "assistant/runtime_helpers.h"
#include "base/errors.h"
#include "base/text.h"
#include "dialog/job_dialog.h"
#include "dialog/proposed_name.h"
#include "dialog/settings.h"
#include "naming/title_extraction.h"
#include "texts/language_selection.h"

namespace pl::dialog {

void JobDialog::Form_Load() {
    std::string step;
    std::string autoPar;
    trapErrors(errors(), "plDialog1.load", step, [&] {
        // The watcher must not open a second dialog while this one is loading: it yields to the
        // message loop on the way.
        state().DialogActive = true;
        context_.naming.title.clear();
        view().removeTrayIcon();

        step = "Texte laden";
        texts::SetxSpr(context_.texts, services());
        TexteAnzeigen();

        step = "Hintergrundfarbe setzen:";
        log("Hintergrund erzeugen");
        ignoringErrors([&] { background_.keepsDrawing = true; });
        const std::string style = text::toLower(services().registry.GetRegValue(MachineKey, "Style"));
        if (style == "grey")
            Graumodus();
        else if (style == "vista")
            Farbverlauf(VistaGradientStart, VistaGradientEnd);
        else
            Farbverlauf(StandardGradientStart, StandardGradientEnd);

        step = "Profile laden";
        LoadProfiles();

        step = "Profil auswaehlen";
        autoPar = selectProfileNamedByJob();

        step = "PDF Verschluesseln";
        if (assistant::EncryptionAvailable(services())) {
            control("ckEncodePDF").visible = true;
            control("lbEncodePDF").visible = true;
        }

        step = "Policy auswerten";
        log("Policy auswerten");
        view().show(form_);
        LoadPolicy();

        step = "InfoLabel laden / cmdSort anzeigen";
        control("lbInfo").caption = GetInfos();

        proposeFileName(step);

        step = "plDesktop Caption";
        std::string desktopCaption = userThenMachine(services().registry, "DesktopCaption");
        control("cmdDesktop").caption = desktopCaption.empty() ? context_.texts.text(9) : desktopCaption;

        step = "OpenPDF laden";
        const std::string openPdf = services().registry.GetRegValue(UserKey, "OpenPdf");
        if (openPdf == "1" || openPdf == "0") {
            control("chkOpenPDF").value = openPdf == "1" ? forms::Checked : forms::Unchecked;
        } else {
            control("chkOpenPDF").value = forms::Checked;
            services().registry.SetRegValue(UserKey, "OpenPdf", "1");
        }
        view().refresh(form_);

        step = "Wenn AutoPar belegt ist, sofort beginnen";
        if (!autoPar.empty()) {
            defaults().RunProfileDefault(autoPar);
            Unload();
            return;
        }

        step = "Wenn Default belegt ist, sofort beginnen";
        if (defaults().RunDefault()) {
            log("RunDefault ist belegt");
            return; // the action has closed the dialog
        }

        step = "Fenster in Fordergrund";
        log("Fenster anzeigen");
        view().doEvents();
        ignoringErrors([&] {
            BringToFront();
            view().setFocus(form_, "pdfName");
        });
    });
}

// A job file may name its profile ("Report~profile~Fax.ps"). Selects that profile when the list
// has it and returns its automatic-action lines; an unknown name leaves the default selected.
std::string JobDialog::selectProfileNamedByJob() {
    const auto requested = profileNamedByJob(state().PsFile);
    if (!requested)
        return {};
    std::string autoPar;
    forms::Control& profiles = control("plProfile");
    const int remembered = profiles.value;
    for (int i = 0; i < static_cast<int>(profiles.items.size()); ++i) {
        selectProfile(i);
        if (text::iequals(profiles.text, *requested)) {
            autoPar = defaults().LoadDefaultAction(*requested);
            break;
        }
    }
    if (!text::iequals(profiles.text, *requested))
        selectProfile(remembered);
    return autoPar;
}

// While a MultiDoc collection is open every later job proposes the name of the collection's first
// document; otherwise the job's own title.
void JobDialog::proposeFileName(std::string& step) {
    step = "Dateiname anzeigen";
    log("Dateiname anzeigen...");
    const std::string firstMultiDoc = state().PsDirUser + "MultiDoc" + userName() + "1.ps";
    const std::string jobPath = state().PsFolder + state().PsFile;
    std::string name;
    if (services().os.files().exists(firstMultiDoc)) {
        step = "Dateiname anzeigen (1)";
        name = naming::GetPsFileTitle(firstMultiDoc, context_.naming, errors());
    } else {
        step = "Dateiname anzeigen (2)";
        name = naming::GetPsFileTitle(jobPath, context_.naming, errors());
    }

    step = "Dateiname anzeigen (3)";
    log("Dateiname anzeigen: " + name);
    if (RemoveSpaces(name).empty()) {
        step = "Dateiname anzeigen (4)";
        const auto size = services().os.files().size(jobPath);
        if (size && *size < 10 && *size > 0) {
            // The printer may still be writing the job: give it one moment. The name is not derived
            // again afterwards; one pass is all the dialog waits.
            step = "Dateiname anzeigen (5)";
            view().doEvents();
        }
    }
    control("pdfName").text = cleanProposedName(name);
}

void JobDialog::BringToFront() {
    if (state().CommandLine == "/v")
        return;
    view().bringToFront(form_);
}

} // namespace pl::dialog
