#include "app/common/assistant_program.h"

namespace pl::app {

AssistantProgram::AssistantProgram(forms::View& view, std::string commandLine)
    : os_(platform::makeNativePlatform()), registry_(os_->registry()),
      // After a fatal error the report ends the process at once: the failing procedure must not go on.
      report_(*os_, registry_, view, state_, [this](int exitCode) { os_->processes().exitCurrent(exitCode); }),
      services_{*os_, registry_, report_, view}, context_{services_, state_, texts_, naming_, view},
      // Starting the configuration program pauses the watch timer, so that no job dialog opens on
      // top of it while it comes up.
      hooks_{[this](bool enabled) { resident_.control("Timer1").enabled = enabled; }},
      dialogs_(context_, dialog::jobActionsWith(hooks_)), changes_(platform::makeFolderChanges()),
      resident_(context_, dialogs_, changes_.get()) {
    state_.CommandLine = std::move(commandLine);
}

bool AssistantProgram::start() {
    resident_.Form_Initialize();
    resident_.Form_Load();
    return !state_.quitRequested;
}

bool AssistantProgram::tick() {
    // Finished converters are collected here, whether or not anybody asks about them.
    os_->processes().collectEnded();
    // The end may have been asked for since the last tick.
    if (!state_.quitRequested && resident_.timerEnabled())
        resident_.Timer1_Timer();
    return !state_.quitRequested;
}

} // namespace pl::app
