#pragma once
// The resident form frmPlAssist1: the assistant's hidden start-up form. Loading it settles the
// environment (spool folders, terminal-server names, debug log, one instance per session), removes
// stale files and arms the one-second timer from which the spool folders are watched; its hidden
// text box receives the tray icon's mouse messages and its pop-up menu turns the MultiDoc queue into
// a job. The event procedures keep their classic names so that the behaviour can be traced to the
// form's design. "The process ends" means: state.quitRequested is set and the procedure returns; the
// program's main loop ends the process.

#include "assistant/folder_search.h"
#include "forms/context.h"
#include "forms/form_model.h"
#include "platform/folder_changes.h"
#include "platform/processes.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace pl::assistant {

// Where the user name comes from: the environment variable `username` as it stands (it is cleaned
// with PsspecialChar on each use). Several assistants in one process (tests) each get their own.
using UserNameSource = std::function<std::string()>;

// The notification-area record as the platform's (ANSI) layout has it; filled by SetTrayIcon.
struct TrayIconData {
    int size = 88;
    int iconId = 2;
    int flags = 7;             // message, icon and tip are valid
    int callbackMessage = 512; // mouse messages arrive as mouse moves over txtTooltip
    bool hasIcon = false;      // the picture of Image1
    std::string tip;           // at most 63 characters: the field holds 64 with the terminating zero
};

// A file of this name in the machine spool folder ends every user's assistant.
inline constexpr std::string_view EndMarkerName = "plassistende.cmd";
// The session-wide lock that keeps a second assistant out.
inline constexpr std::string_view InstanceLockName = "plAssist";

// Form_QueryUnload's unload modes: the user chose Close from the form's control menu.
inline constexpr int UnloadFromControlMenu = 0;
// Form_KeyDown: F4 and the Alt shift state.
inline constexpr int KeyF4 = 115;
inline constexpr int ShiftAlt = 4;

// The platform's mouse messages that arrive through the tray icon.
inline constexpr int TrayLeftButtonDown = 513;
inline constexpr int TrayLeftDoubleClick = 515;
inline constexpr int TrayRightButtonDown = 516;

// What a tray mouse message asks for, after txtTooltip_MouseMove has decoded it.
enum class TrayAction { None, BringForward, ShowMenu };
// Decodes X (the message number times the screen's twips per pixel) the classic way: as upper-case
// hexadecimal text compared with the values for 15 and 12 twips per pixel. A left button press is
// known only at 15 twips per pixel.
TrayAction trayActionFor(float x);

// Keeps the form and its owner window out of sight and out of the task list.
void HideFromTaskbar(forms::Form& form, forms::View& view);

class ResidentForm : public forms::Form {
public:
    ResidentForm(forms::Context& context, forms::JobDialogHost& dialogs, platform::FolderChanges* changes = nullptr,
                 UserNameSource userName = {});

    // Start-up (resident_form.cpp)
    void Form_Initialize();
    void Form_Load();
    bool timerEnabled() const { return control("Timer1").enabled; }

    // Clean-ups of stale files at start (startup_cleanup.cpp)
    void KillTempDfFiles();
    void KillOldPsdirTempFiles();
    void KillOldLocalTempFiles();
    void CleanVirtualStoreKey();
    void CleanVirtualStoreFolder();

    // The watcher (watcher.cpp)
    void Timer1_Timer();

    // Tray icon, menu and closing (tray.cpp)
    void SetTrayIcon(int mode);
    void txtTooltip_MouseMove(int button, int shift, float x, float y);
    void mnShowPlAssist_Click();
    void Form_QueryUnload(int& cancel, int unloadMode);
    void Form_KeyDown(int& keyCode, int shift);

    const TrayIconData& trayIconData() const { return tray_; }
    const FolderSearch& searches() const { return search_; }
    // The drive the working-drive step chose ("C:"), empty when it changed none. Changing drives is
    // a Windows matter; elsewhere the step only decides.
    const std::string& workingDrive() const { return workingDrive_; }

    // The cleaned user name that prefixes every job file of this user.
    std::string userName() const;

private:
    forms::AppState& state() { return ctx_.state; }
    Services& services() { return ctx_.services; }
    forms::View& view() { return ctx_.view; }

    // Writes a log line while DebugMode is "1".
    void log(std::string_view line);
    void endProcess(int exitCode = 0);

    // Form_Load's larger steps
    void startFreshLog();
    bool startCompanionProgram();
    bool refuseSecondInstance();
    void resolveSpoolFolders();
    void chooseWorkingDrive();
    bool folderIsWritable(const std::string& folder);
    // Deletes the matches of a classic search path; with `onlyOld`, only files dated before the start
    // of the day three days ago.
    void deleteStaleFiles(const std::string& searchPath, bool onlyOld);

    // First match of a classic search path (folder and pattern in one text), through the cache.
    std::string firstMatch(std::string_view searchPath, platform::Entries entries = platform::Entries::Files);
    std::string freshFirstMatch(std::string_view searchPath, platform::Entries entries);

    forms::Context& ctx_;
    forms::JobDialogHost& dialogs_;
    FolderSearch search_;
    UserNameSource rawUserName_;
    std::unique_ptr<platform::InstanceLock> instanceLock_;
    TrayIconData tray_;
    std::string workingDrive_;
};

} // namespace pl::assistant
