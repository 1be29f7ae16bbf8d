#pragma once
// A complete, real environment for one resident assistant: its own folders below a fresh temporary
// folder, a registry store of its own, the native platform services, the error report, and a
// scripted view. Environment variables point everything (temp, Local AppData, the desktop, the
// session lock) into the temporary folder, so nothing of the real user is touched.

#include "assistant/error_report.h"

#include "assistant/resident_form.h"
#include "forms/context.h"
#include "platform/folder_changes.h"
#include "platform/platform.h"
#include "platform/registry.h"
#include "support/scoped_env.h"
#include "support/scripted_view.h"
#include "support/temp_dir.h"
#include "support/test_registry.h"
#include <optional>

#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace pl::test {

inline constexpr const char* MachineKeyPath = "HKLM\\Software\\tobrin\\PaperlarkXP";
inline constexpr const char* UserKeyPath = "HKCU\\Software\\tobrin\\PaperlarkXP";
inline constexpr const char* ShellFoldersPath =
    "HKCU\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";

// Plays the job dialog's part of the hand-over: loading it takes the job as the dialog's buttons
// do (moves it out of the spool folders, here into `takenFolder`) and records where it was found.
// Unless `stayOpen`, the job is done during the load and the dialog unloads itself again, which
// clears DialogActive.
class TakingDialogHost : public forms::JobDialogHost {
public:
    TakingDialogHost(forms::AppState& state, platform::FileSystem& files, std::string takenFolder,
                     std::atomic<int>* takenCount = nullptr);
    forms::Form& loadJobDialog() override;

    std::vector<std::string> taken; // PsFolder + PsFile of every job taken, in order
    bool stayOpen = false;
    int windowState = forms::Normal;
    forms::Form dialog{"plDialog1"};

private:
    forms::AppState& state_;
    platform::FileSystem& files_;
    std::string takenFolder_;
    std::atomic<int>* takenCount_;
};

class AssistantWorld {
public:
    // `user`: the value of the environment variable `username`.
    explicit AssistantWorld(const std::string& user = "alice");

    TempDir root;
    TestRegistry testRegistry; // the hives of this world, also for stores made from the environment
    platform::Registry& registry;
    ScopedEnv env;
    std::unique_ptr<platform::Platform> os;
    ScriptedView view;
    forms::AppState state;
    std::unique_ptr<assistant::ErrorReport> report;
    // The exit code the error report ended the assistant with; the test process itself goes on.
    std::optional<int> endedWith;
    std::unique_ptr<Services> services;
    texts::Texts texts;
    naming::NamingState naming;
    std::unique_ptr<forms::Context> context;

    // Folders, each ending in the separator.
    std::string machineFolder, userFolder, tsFolder, tempFolder, localAppData, desktopFolder, takenFolder;

    void setMachine(const std::string& name, const std::string& value);
    void setUser(const std::string& name, const std::string& value);
    std::string user(const std::string& name) const;

    // A file with the given modification time.
    std::string fileAt(const std::string& path, std::chrono::system_clock::time_point when) const;
    // The debug log's lines.
    std::vector<std::string> logLines() const;
    std::string logFile() const { return desktopFolder + "plAssist.log"; }
};

// Local midnight at the start of the day `daysBack` days before today, worked out independently of
// the program's own calendar code.
std::chrono::system_clock::time_point startOfDayDaysAgo(int daysBack);

// A job file (any content) at `path`.
void writeJob(const std::string& path);

} // namespace pl::test
