#include "converter/program.h"

#include "assistant/runtime_helpers.h"
#include "base/errors.h"
#include "base/message_box.h"
#include "converter/conversion.h"
#include "converter/desktop.h"
#include "converter/installed_ghostscript.h"
#include "converter/reporter.h"
#include "converter/settings.h"
#include "converter/user_interface.h"
#include "platform/paths.h"
#include "platform/platform.h"
#include "platform/registry.h"
#include "platform/services.h"

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
    const auto desktop = makeDesktop(*os);

    const std::string userProfile = os->environment().get("userprofile");
    std::string userFolder;
    if (!userProfile.empty())
        userFolder = platform::withTrailingSep(userProfile) + "Paperlark" + platform::PathSep;

    ConversionContext context{settings,
                              reporter,
                              *ui,
                              *desktop,
                              os->files(),
                              userFolder,
                              platform::withTrailingSep(os->folders().programFolder())};
    return carryOut(*parsed.request, context);
}

} // namespace pl::converter
