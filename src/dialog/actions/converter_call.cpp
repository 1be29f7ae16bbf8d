#include "dialog/actions/converter_call.h"

#include "platform/program_names.h"

#include "base/text.h"
#include "dialog/actions/dir_lookup.h"
#include "dialog/settings.h"
#include "platform/environment_expand.h"
#include "platform/program_names.h"

namespace pl::dialog {

namespace {

// A first word that cannot name a program: the direct start of the Save route must fail.
constexpr std::string_view UnstartablePrefix = "ccc";

std::string quoted(std::string_view text) {
    return "\"" + std::string(text) + "\"";
}

} // namespace

std::string ConverterCall::afterActions() const {
    return " \"" + profile + "\" \"" + output + "\" " + multiDoc + quoted(jobFile);
}

std::string ConverterCall::commandLine() const {
    return quoted(folder + std::string(ConverterProgram)) + " " + std::string(ConversionSwitch) + " " + actions +
           afterActions();
}

std::string ConverterCall::logged() const {
    return std::string(ConverterProgram) + " " + std::string(ConversionSwitch) + " " + actions + afterActions();
}

std::string converterFolder(Services& services) {
    std::string folder = services.registry.GetRegValue(MachineKey, "plDir");
    return platform::ReplaceEnviron(folder, services.os.environment());
}

std::string encryptionWord(int encodeValue) {
    // Two separate tests on the box's value, so the greyed state adds no word at all.
    std::string word;
    if (encodeValue == 1)
        word += ",encode";
    if (encodeValue == 0)
        word += ",nocode";
    return word;
}

std::string saveActionList(int openPdfValue, int encodeValue) {
    return std::string(openPdfValue == 1 ? "delps,save,open" : "delps,save") + encryptionWord(encodeValue);
}

std::string emailActionList(int encodeValue) {
    return "delps,email" + encryptionWord(encodeValue);
}

bool suiteProgramPresent(const platform::FileSystem& files, std::string_view folder, std::string_view windowsName) {
    const std::string base(folder);
    return fileFound(files, base + std::string(windowsName)) ||
           fileFound(files, base + platform::programFileName(windowsName));
}

bool converterPresentOrSaid(Services& services, std::string_view folder, std::string_view missingText,
                            std::string_view title) {
    if (suiteProgramPresent(services.os.files(), folder, ConverterProgram))
        return true;
    services.messages.msgBox(missingText, mb::Exclamation, title);
    return false;
}

void startDirect(Services& services, std::string_view commandLine) {
    if (!services.os.processes().start(commandLine, platform::WindowStyle::NormalFocus))
        raise(err::FileNotFound, "cannot start " + std::string(commandLine));
}

void startOnSaveRoute(Services& services, forms::View& view, const ConverterCall& call) {
    bool failed = false;
    try {
        startDirect(services, "\"" + std::string(UnstartablePrefix) + call.folder + std::string(ConverterProgram) +
                                  "\" " + std::string(ConversionSwitch) + " " + call.actions + call.afterActions());
    } catch (...) {
        failed = true;
    }
    if (!failed)
        return;
    try {
        ShellExec(services, view, quoted(call.folder + std::string(ConverterProgram)), 1, "open",
                  std::string(ConversionSwitch) + " " + call.actions + call.afterActions(),
                  services.os.environment().get("temp"));
    } catch (...) {
        // The shell's failure is silent on this route.
    }
}

bool ShellExec(Services& services, forms::View& view, std::string_view file, int showCmd, std::string_view operation,
               std::string_view parameters, std::string_view directory) {
    if (file.size() >= 2 && file.front() == '"' && file.back() == '"')
        file = file.substr(1, file.size() - 2);
    const bool started = services.os.shell().execute(operation, file, parameters, directory,
                                                     static_cast<platform::WindowStyle>(showCmd));
    view.doEvents();
    view.doEvents();
    return started;
}

} // namespace pl::dialog
