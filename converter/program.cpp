#include "converter/program.h"

#include "assistant/runtime_helpers.h"
#include "base/errors.h"
#include "base/message_box.h"
#include "converter/conversion.h"
#include "converter/desktop.h"
#include "converter/file_ops.h"
#include "converter/installed_ghostscript.h"
#include "converter/reporter.h"
#include "converter/settings.h"
#include "converter/user_interface.h"
#include "platform/paths.h"
#include "platform/platform.h"
#include "platform/registry.h"
#include "platform/services.h"
#include "platform/stop_signals.h"
#include "texts/language_selection.h"

#include <iostream>
#include <memory>

namespace pl::converter {

namespace {

// The converter has no error report of its own: whatever reaches this sink goes to standard error.
class StandardErrorSink final : public ErrorSink {
public:
    void report(std::string_view tag, std::string_view step, const RuntimeError& error,
                std::string_view data) override {
        std::cerr << "paperlark: " << tag << " (" << step << "): " << error.number() << " " << error.description();
        if (!data.empty())
            std::cerr << " [" << data << "]";
        std::cerr << std::endl;
    }
};

// Message boxes of the shared helpers, shown through the converter's own interface.
class InterfaceMessageBoxes final : public MessageBoxes {
public:
    explicit InterfaceMessageBoxes(UserInterface& ui) : ui_(ui) {}
    int msgBox(std::string_view prompt, int, std::string_view) override {
        ui_.showError(prompt);
        return mb::Ok;
    }

private:
    UserInterface& ui_;
};

} // namespace

int converterMain(const std::vector<std::string>& args) {
    const ParsedArguments parsed = parseArguments(args);
    if (!parsed.request) {
        std::cerr << "paperlark: " << parsed.error << "\n" << usageText();
        return 2;
    }

    std::unique_ptr<platform::Platform> os;
    try {
        os = platform::makeNativePlatform();
    } catch (const std::exception& error) {
        std::cerr << "paperlark: the operating system's services are not available: " << error.what()
                  << "\nEvery input file was kept.\n";
        return 1;
    }
    // Whether the output exists decides between replacing it (the person chose that) and keeping
    // a file that another job writes meanwhile; so it is taken before anything else takes time.
    const bool outputExisted = os->files().exists(absolutePath(parsed.request->output));
    platform::Registry registry(os->registry());
    const Settings settings = readSettings(&registry, os->environment(), os->files(),
                                           installedGhostscript(os->environment(), os->files()));

    const auto ui = makeUserInterface(os->environment());
    StandardErrorSink errorSink;
    InterfaceMessageBoxes messageBoxes(*ui);
    Services services{*os, registry, errorSink, messageBoxes};
    // The converter's steps go into the assistant's log, so that one file tells the whole story of
    // a job.
    Reporter::LogWriter log;
    if (settings.debug)
        log = [&services](std::string_view line) { assistant::DebugWrite(line, services); };
    Reporter reporter(*ui, log, std::cerr);
    // A setting that cannot be used is said, but never stops a job.
    for (const auto& problem : settings.problems) {
        std::cerr << "paperlark: " << problem << std::endl;
        reporter.log(problem);
    }
    const auto desktop = makeDesktop(*os);
    // The person is told in the assistant's language: the stored choice, else the locale.
    int language = texts::SetSpr(services);
    if (language == 0)
        language = texts::LanguageFromLocale(services);
    reporter.setAudience(language, os->folders().desktop(), desktop.get());
    std::vector<std::string> jobFiles;
    for (const auto& input : parsed.request->inputs)
        jobFiles.push_back(absolutePath(input));
    reporter.setJobFiles(std::move(jobFiles));

    const std::string userProfile = os->environment().get("userprofile");
    std::string userFolder;
    if (!userProfile.empty())
        userFolder = platform::withTrailingSep(userProfile) + "Paperlark" + platform::PathSep;

    ConversionContext context{settings,
                              reporter,
                              *ui,
                              *desktop,
                              os->files(),
                              outputExisted,
                              userFolder,
                              platform::withTrailingSep(os->folders().programFolder())};
    const int exitCode = carryOut(*parsed.request, context);
    // Stopped by a signal: everything is cleaned up, now end as the signal says.
    if (exitCode != 0)
        platform::endIfStopRequested();
    return exitCode;
}

} // namespace pl::converter
