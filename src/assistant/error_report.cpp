#include "assistant/error_report.h"

#include "assistant/local_time.h"
#include "assistant/mail_link.h"
#include "assistant/suite_keys.h"
#include "assistant/version.h"
#include "base/text.h"
#include "platform/environment_expand.h"

#include <initializer_list>

namespace pl::assistant {
namespace {

constexpr std::string_view Crlf = "\r\n";
constexpr std::string_view ProgramName = "plAssist";
constexpr std::string_view WindowsVersionKey = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion";
constexpr std::string_view InternationalKey = "HKCU\\Control Panel\\International";
// The suite's setup program, whose file date tells how old the installation is. Programs that carry
// ".exe" on Windows are named in lower case without it on other systems; only one of the two names
// ever exists in a suite folder.
constexpr std::string_view SetupProgramNames[] = {"plsetup.exe", "plsetup"};

std::string joinBlocks(std::initializer_list<std::string> blocks) {
    std::string out;
    for (const auto& block : blocks) {
        if (!out.empty())
            out.append(Crlf).append(Crlf);
        out += block;
    }
    return out;
}

std::string errorLine(int number, std::string_view description) {
    return "Error " + text::number(number) + " (" + std::string(description) + ")";
}

std::string dataBlock(std::string_view dataText) {
    return "Data:" + std::string(Crlf) + std::string(dataText);
}

// "Look for an update" printed with a blank between every letter, so that it stands out of the
// technical lines above it.
std::string spacedOut(std::string_view line) {
    const std::u32string chars = text::decode(line);
    std::string out;
    for (std::size_t i = 0; i < chars.size(); ++i) {
        if (i > 0)
            out.push_back(' ');
        out += text::encode(chars[i]);
    }
    return out;
}

// One system line of the report mail: a label padded to the width of the others, then the value.
std::string systemLine(std::string_view label, std::string_view value) {
    std::string line = "- " + std::string(label) + ":";
    if (line.size() < 23)
        line.append(23 - line.size(), ' ');
    return line + std::string(value) + std::string(Crlf);
}

} // namespace

ErrorReport::ErrorReport(platform::Platform& os, platform::Registry& registry, MessageBoxes& messages,
                         forms::AppState& state, EndProcess endProcess)
    : os_(os), registry_(registry), messages_(messages), state_(state), endProcess_(std::move(endProcess)) {}

std::string ErrorReport::read(std::string_view key, std::string_view name) const {
    try {
        return regText(registry_, key, name);
    } catch (...) {
        return {}; // a value that cannot be read must not stop the report
    }
}

std::string ErrorReport::suiteFolder() const {
    std::string folder = read(MachineKey, "pldir");
    return platform::ReplaceEnviron(folder, os_.environment());
}

void ErrorReport::report(std::string_view tag, std::string_view step, const RuntimeError& error,
                         std::string_view data) {
    std::string dataText(step);
    if (!data.empty()) {
        if (!dataText.empty())
            dataText.append(Crlf);
        dataText.append(data);
    }
    show(error.number(), error.description(), tag, dataText);
}

bool ErrorReport::disabled() const {
    std::string value = read(MachineKey, "DisableErr");
    if (value.empty())
        value = read(UserKey, "DisableErr");
    return !value.empty();
}

bool ErrorReport::installationIsRecent() const {
    const TimePoint today = localDayStart(os_.clock().now());
    TimePoint installed = today; // a setup program whose date cannot be read counts as installed today
    const std::string folder = suiteFolder();
    for (std::string_view name : SetupProgramNames) {
        if (auto date = os_.files().modified(folder + std::string(name))) {
            installed = *date;
            break;
        }
    }
    return addLocalDays(installed, ReportMailDays) > today;
}

std::string ErrorReport::mailOfferText(int number, std::string_view description, std::string_view tag,
                                       std::string_view dataText) const {
    return joinBlocks({"Fatal exeption.", errorLine(number, description), "Error in Module " + std::string(tag),
                       dataBlock(dataText), "Do you want to send an error report to the author by e-mail?"});
}

std::string ErrorReport::updateRequestText(int number, std::string_view description, std::string_view tag,
                                           std::string_view dataText) const {
    return joinBlocks({"Fatal exeption in " + std::string(tag), errorLine(number, description), dataBlock(dataText),
                       spacedOut("Please look for an update on the Paperlark web site.")});
}

std::string ErrorReport::mailSubject(int number, std::string_view description) const {
    return "The following Error rised with " + std::string(ProgramName) + ": " + text::number(number) + " (" +
           std::string(description) + ") - Version " + text::number(VersionMajor) + "." + text::number(VersionMinor);
}

std::string ErrorReport::mailBody(int number, std::string_view description, std::string_view tag,
                                  std::string_view dataText) const {
    std::string body = joinBlocks({"Fatal exeption.", errorLine(number, description),
                                   "Error in Module " + std::string(tag), dataBlock(dataText)});
    body.append(Crlf).append(Crlf);
    body += "---------------------------------";
    body.append(Crlf);
    body += "More information:";
    body.append(Crlf);
    body += systemLine("Windows version", read(WindowsVersionKey, "CurrentVersion") + "." +
                                              read(WindowsVersionKey, "CurrentBuildNumber") + "." +
                                              read(WindowsVersionKey, "CSDVersion"));
    body += systemLine("Windows language", read(InternationalKey, "locale"));
    body += systemLine("Windows setupdir", os_.environment().get("windir"));
    body += systemLine("pldir", read(MachineKey, "pldir"));
    body += systemLine("gswin32c", read(MachineKey, "gswin32c"));
    body += systemLine("psdir", read(MachineKey, "psdir"));
    body += "v" + read(MachineKey, VersionValue) + " / " + read(MachineKey, BuildValue) + std::string(Crlf);
    return body;
}

void ErrorReport::show(int number, std::string_view description, std::string_view tag, std::string_view dataText) {
    try {
        if (disabled())
            return; // switched off: the failing procedure's handler carries on
        if (installationIsRecent()) {
            const std::string prompt = mailOfferText(number, description, tag, dataText);
            if (messages_.msgBox(prompt, mb::YesNo | mb::Exclamation) == mb::Yes)
                SendMailTo(os_.shell(), read(MachineKey, SupportMailValue), mailSubject(number, description), "", "",
                           mailBody(number, description, tag, dataText));
        } else {
            messages_.msgBox(updateRequestText(number, description, tag, dataText), mb::OkOnly | mb::Exclamation);
        }
    } catch (...) {
        // The report must never fail itself; the assistant ends all the same.
    }
    state_.quitRequested = true;
    state_.exitCode = 1;
    endProcess_(1);
}

} // namespace pl::assistant
