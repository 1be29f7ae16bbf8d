// The options below the buttons: open the PDF afterwards (remembered per user), encrypt it (three
// states: no, yes, as the profile says), and the link that starts the configuration program.

#include "base/text.h"
#include "dialog/actions/converter_call.h"
#include "dialog/actions/job_actions.h"
#include "dialog/job_dialog.h"
#include "dialog/settings.h"
#include "naming/output_suffix.h"
#include "platform/paths.h"
#include "platform/program_names.h"
#include "texts/language_selection.h"

#include <filesystem>
#include <fstream>

namespace pl::dialog {

namespace {

// The configuration program is looked for under one name and started under another; the message
// for a missing one names the one that is started.
constexpr std::string_view ConfigPresenceProgram = "plconfig.exe";
constexpr std::string_view ConfigProgram = "plucnfg.exe";

// Whether the profile file at `path` brings its own password: a "userpassword=" or "ownerpassword="
// line with a value, keys in any case, as the converter reads them.
bool profileHoldsPassword(const std::string& path) {
    std::ifstream file(platform::fsPath(path), std::ios::binary);
    std::string line;
    bool first = true;
    while (std::getline(file, line)) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (first) {
            first = false; // the Ghostscript switches
            continue;
        }
        std::string_view rest = line;
        while (!rest.empty() && (rest.front() == ' ' || rest.front() == '\t'))
            rest.remove_prefix(1);
        for (std::string_view key : {"userpassword=", "ownerpassword="})
            if (text::istartsWith(rest, key) && rest.size() > key.size())
                return true;
    }
    return false;
}

} // namespace

void DialogJobActions::plProfile_Click() {
    std::string step;
    trapErrors(errors(), "plDialog1.plProfile_Click", step, [&] {
        const std::string profile = control("plProfile").text;
        step = "Suffix laden";
        naming::LoadSuffix(profile, context().naming, services());

        step = "Verschluesselung";
        const bool threeStates = profileHoldsPassword(naming::profileFilePath(profile, services()));
        auto& box = control("ckEncodePDF");
        if (threeStates != EncodeTriState) {
            // A profile with a password is left to decide by default; without one there is nothing
            // to leave to it.
            box.value = threeStates ? forms::Grayed : forms::Unchecked;
        }
        EncodeTriState = threeStates;
        EncodeLastValue = box.value;
    });
}

void DialogJobActions::chkOpenPDF_LostFocus() {
    std::string step;
    trapErrors(errors(), "plDialog1.chkOpenPDF_LostFocus", step,
               [&] { services().registry.SetRegValue(UserKey, "OpenPdf", text::number(control("chkOpenPDF").value)); });
}

void DialogJobActions::lbOpenPDF_Click() {
    auto& box = control("chkOpenPDF");
    box.value = box.value == forms::Unchecked ? forms::Checked : forms::Unchecked;
}

void DialogJobActions::ckEncodePDF_MouseUp(int, int, float, float) {
    std::string step;
    trapErrors(errors(), "plDialog1.ckEncodePDF_MouseUp", step, [&] {
        if (!EncodeTriState)
            return;
        auto& box = control("ckEncodePDF");
        // The click has just unticked a ticked box: it goes on to grey instead.
        if (EncodeLastValue == forms::Checked)
            box.value = forms::Grayed;
        EncodeLastValue = box.value;
    });
}

void DialogJobActions::lbEncodePDF_Click() {
    std::string step;
    trapErrors(errors(), "plDialog1.lbEncodePDF_Click", step, [&] {
        auto& box = control("ckEncodePDF");
        if (box.value == forms::Unchecked)
            box.value = forms::Checked;
        else if (box.value == forms::Checked)
            box.value = EncodeTriState ? forms::Grayed : forms::Unchecked;
        else if (box.value == forms::Grayed)
            box.value = forms::Unchecked;
    });
}

void DialogJobActions::lbConfig_Click() {
    std::string step;
    trapErrors(errors(), "plDialog1.lbConfig_Click", step, [&] {
        const std::string folder = converterFolder(services());
        step = "PDF Erstellen";
        // The log names the converter's switch, whatever program is really started.
        log("Aufruf: Paperlark.exe /config");
        auto& texts = context().texts;
        if (!suiteProgramPresent(services().os.files(), folder, ConfigPresenceProgram)) {
            services().messages.msgBox(platform::withLocalProgramNames(text::ireplaceAll(
                                           texts.text(ConverterMissingText), ConverterProgram, ConfigProgram)),
                                       mb::Exclamation, texts.text(ProgramTitleText));
            return;
        }
        auto& timer = control("Timer1");
        timer.enabled = false;
        if (hooks_.residentTimer)
            hooks_.residentTimer(false);
        ShellExec(services(), view(), "\"" + folder + std::string(ConfigProgram) + "\"", 1, "open", "", "");
        timer.enabled = true;
        if (hooks_.residentTimer)
            hooks_.residentTimer(true);

        // A language chosen in the configuration program shows at once; nobody waits for it to end.
        texts::SetxSpr(texts, services());
        dialog_.TexteAnzeigen();
    });
}

} // namespace pl::dialog
