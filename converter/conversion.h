#pragma once
// One run of the converter: check the inputs and the output folder, settle the profile and the
// encryption, run Ghostscript once, put the result in place, then do the actions that need a
// finished result. A job is never lost: whatever fails, every input stays where it was and nothing
// half-written is left behind.

#include "converter/arguments.h"
#include "converter/desktop.h"
#include "converter/reporter.h"
#include "converter/settings.h"
#include "converter/user_interface.h"
#include "platform/file_system.h"

#include <string>

namespace pl::converter {

struct ConversionContext {
    const Settings& settings;
    Reporter& report;
    UserInterface& ui;
    Desktop& desktop;
    const platform::FileSystem& files;
    bool outputExisted;            // the output existed when the converter started
    std::string userProfileFolder; // the user's own profiles; ends in the separator; may be empty
    std::string suiteFolder;       // the installation's profiles; ends in the separator
};

// Returns the exit code: 0 when everything asked for was done, 1 otherwise.
int carryOut(const Request& request, ConversionContext& context);

} // namespace pl::converter
