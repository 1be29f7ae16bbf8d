#pragma once
// The assistant's process-wide state: set at start-up by the resident form, read by the watcher,
// the tray and the job dialog. Everything runs on the one user-interface thread, so nothing here
// needs a lock.

#include <cstdint>
#include <string>

namespace pl::forms {

struct AppState {
    // Start-up
    std::string PsDirMachine; // machine spool folder, ends in the separator
    std::string PsDirUser;    // user spool folder and MultiDoc queue, ends in the separator
    std::string TsPath;       // terminal-server spool folder ("" = none)
    std::string TsName;       // job-name prefix in TsPath ("*" = every user)
    std::string DebugMode;    // "1" log, "2" log paused while idle, else off
    bool DisableFcn = false;
    bool Pm5Support = false;
    bool CitrixUnload = false;
    std::string CommandLine;        // the program's own command line (a companion program)
    std::int32_t TsCommandPid = 0;  // that program's process id, 0 when none
    std::string DesktopName;
    std::string StepName;

    // Job hand-over between the watcher and the job dialog
    std::string PsFile;
    std::string PsFolder;
    bool DialogActive = false;
    int TrayCheck = 0; // 0 = not yet armed, 1 = check the MultiDoc queue each tick, 2 = tray request running

    // The user's MultiDoc queue as converter arguments, each a quoted full path and a blank.
    std::string MultiDocArgs;

    // Set when something asked the process to end (end marker, companion gone, a refusal).
    bool quitRequested = false;
    int exitCode = 0;
};

} // namespace pl::forms
