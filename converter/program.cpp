#include "converter/program.h"

#include "converter/conversion.h"
#include "converter/desktop.h"
#include "converter/reporter.h"
#include "converter/settings.h"
#include "converter/user_interface.h"
#include "platform/paths.h"
#include "platform/platform.h"
#include "platform/registry.h"

#include <iostream>
#include <memory>

namespace pl::converter {

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
    const Settings settings = readSettings(&registry, os->environment(), os->files(), PAPERLARK_GHOSTSCRIPT);

    const auto ui = makeUserInterface(os->environment());
    Reporter reporter(*ui, {}, std::cerr);
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
