// The actions that run without the user: a profile's automatic-action lines, which the job file
// can ask for by naming the profile, and the administrator's default button ("ADefault").

#include "base/text.h"
#include "dialog/actions/job_actions.h"
#include "dialog/job_dialog.h"
#include "dialog/profiles.h"
#include "dialog/settings.h"
#include "naming/name_numbering.h"
#include "platform/environment_expand.h"
#include "platform/paths.h"

#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>

namespace pl::dialog {

namespace {

constexpr std::string_view Crlf = "\r\n";
constexpr std::string_view ActionKey = "plassist=";
constexpr std::string_view TargetKey = "plassist2=";
constexpr std::string_view ExtraKey = "plassist3=";

// Runs `body`; an error escaping it goes to `sink` with the tag, the step and `data`.
template <class Body>
void trapWithData(ErrorSink& sink, std::string_view tag, const std::string& step, const std::string& data,
                  Body&& body) {
    try {
        body();
    } catch (...) {
        sink.report(tag, step, currentError(), data);
    }
}

// The whole file, every line followed by CR LF whatever ended it on disk.
std::string readLines(const std::string& path) {
    std::ifstream file(platform::fsPath(path), std::ios::binary);
    if (!file)
        raise(err::FileNotFound, path);
    std::stringstream raw;
    raw << file.rdbuf();
    // Profiles written by a Windows editor are 8-bit text, so that a folder such as "Büro" on a
    // plassist2= line names the folder it means.
    return text::crlfLines(text::fromFileBytes(raw.str()));
}

// The text after the first `key` (found in any case) up to the first CR LF after it; nothing when
// the key is not there.
std::optional<std::string> valueAfter(std::string_view autoPar, std::string_view key) {
    const std::size_t at = text::ifind(autoPar, key);
    if (at == std::string_view::npos)
        return std::nullopt;
    const std::size_t from = at + key.size();
    const std::size_t end = autoPar.find(Crlf, from);
    return std::string(autoPar.substr(from, end == std::string_view::npos ? std::string_view::npos : end - from));
}

} // namespace

std::string DialogDefaultActions::LoadDefaultAction(std::string_view profileName) {
    std::string result;
    std::string step;
    trapWithData(dialog_.context().services.errors, "plDialog1.LoadDefaultAction", step,
                 "Profile='" + std::string(profileName) + "'", [&] {
                     auto& services = dialog_.context().services;
                     const auto& env = services.os.environment();
                     auto& files = services.os.files();
                     std::string installation = services.registry.GetRegValue(MachineKey, "pldir");
                     platform::ReplaceEnviron(installation, env);

                     // The user's own profile folder wins over the installation's.
                     const std::string userFolder = userProfileFolder(env);
                     std::string path;
                     if (files.exists(userFolder + std::string(profileName) + ".plp"))
                         path = userFolder + dialog_.control("plProfile").text + ".plp";
                     else
                         path = installation + std::string(profileName) + ".plp";

                     const std::string lines = readLines(files.resolveCase(path));
                     for (std::string_view key : {ActionKey, TargetKey, ExtraKey}) {
                         const std::size_t at = text::ifind(lines, key);
                         if (at == std::string::npos)
                             continue;
                         result.append(lines, at, lines.find(Crlf, at) - at).append(Crlf);
                     }
                 });
    return result;
}

bool DialogDefaultActions::RunProfileDefault(std::string_view autoPar) {
    bool result = true;
    std::string step;
    std::string word;
    const auto value = valueAfter(autoPar, ActionKey);
    if (value)
        word = text::toLower(*value);
    trapWithData(dialog_.context().services.errors, "plDialog1.RunProfileDefault", step,
                 "x = " + word + "; Def = " + std::string(autoPar), [&] {
                     auto& openPdf = dialog_.control("chkOpenPDF");
                     // An automatic action never opens the PDF, unless the action word is "1", which
                     // then matches no action: the test reads the same key.
                     openPdf.value = forms::Unchecked;
                     if (value && *value == "1")
                         openPdf.value = forms::Checked;
                     if (!value)
                         return;

                     result = true;
                     if (word == "email") {
                         buttons_.cmdEmail_Click();
                     } else if (word == "saveas") {
                         buttons_.cmdSave_Click();
                     } else if (word == "desktop") {
                         buttons_.cmdDesktop_Click();
                     } else if (word == "multidoc") {
                         buttons_.cmdMulti_Click();
                     } else if (word == "savedir") {
                         saveIntoFolder(valueAfter(autoPar, TargetKey).value_or(""));
                     } else if (word == "savefile") {
                         // Used as it stands: no numbering, no suffix repair of the name.
                         buttons_.AutoActionSave(valueAfter(autoPar, TargetKey).value_or(""));
                     } else {
                         result = false;
                     }
                 });
    return result;
}

void DialogDefaultActions::saveIntoFolder(std::string folder) {
    if (text::trimBlanks(folder).empty())
        return; // no folder: nothing is saved
    if (folder.back() != platform::PathSep)
        folder.push_back(platform::PathSep);
    auto& services = dialog_.context().services;
    const auto& naming = dialog_.context().naming;
    auto& name = dialog_.control("pdfName").text;
    // The administrator's folder is made when it is not there yet, rather than the job failing.
    if (!services.os.files().isFolder(folder))
        services.os.files().createFolder(folder);
    // A free name, so that nothing in the folder is overwritten.
    name = naming::CheckpdfName(folder, name + naming.OutputSuffix, naming, services.os.files(), services.errors);
    std::string copy = name;
    buttons_.CheckSuffix(copy);
    buttons_.AutoActionSave(folder + name);
}

bool DialogDefaultActions::RunDefault() {
    bool result = true;
    std::string step;
    std::string word;
    auto& services = dialog_.context().services;
    try {
        for (std::string_view key : {UserKey, MachineKey}) {
            word = text::toLower(services.registry.GetRegValue(key, "ADefault"));
            if (isAbsent(word))
                continue;
            // Only these three buttons can be an administrator's default; other words are passed by.
            if (word == "email")
                buttons_.cmdEmail_Click();
            else if (word == "saveas")
                buttons_.cmdSave_Click();
            else if (word == "desktop")
                buttons_.cmdDesktop_Click();
            else
                continue;
            return true;
        }
        result = false;
    } catch (...) {
        services.errors.report("plDialog1.RunDefault", step, currentError(), "x = " + word);
    }
    return result;
}

} // namespace pl::dialog
