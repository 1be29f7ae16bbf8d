#pragma once
// A complete, real environment for resident assistants: their own folders below a fresh temporary
// folder, a registry store of their own, the native platform services, the error report, and a
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

#include <atomic>
#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pl::test {

inline constexpr const char* MachineKeyPath = "HKLM\\Software\\tobrin\\PaperlarkXP";
inline constexpr const char* UserKeyPath = "HKCU\\Software\\tobrin\\PaperlarkXP";

// Plays the job dialog's part of the hand-over: loading it takes the job as the dialog's buttons
// do (moves it out of the spool folders, here into `takenFolder`) and records where it was found.
// Unless `stayOpen`, the job is done during the load and the dialog unloads itself again, which
// clears DialogActive.
class TakingDialogHost : public forms::JobDialogHost {
public:
    TakingDialogHost(forms::AppState& state, platform::FileSystem& files, std::string takenFolder,
                     std::atomic<int>* takenCount = nullptr)
        : state_(state), files_(files), takenFolder_(std::move(takenFolder)), takenCount_(takenCount) {}
    forms::Form& loadJobDialog() override;

    std::vector<std::string> taken; // PsFolder + PsFile of every job taken, in order
    bool stayOpen = false;
    forms::Form dialog{"plDialog1"};

private:
    forms::AppState& state_;
    platform::FileSystem& files_;
    std::string takenFolder_;
    std::atomic<int>* takenCount_;
};

// What one user's session holds of its own: the platform services, a view, the form state, the
// error report and the context the forms run in.
struct Session {
    // Without `shared`, the registry is the platform's own store, found through the environment.
    explicit Session(platform::Registry* shared = nullptr);

    std::unique_ptr<platform::Platform> os;
    platform::Registry ownRegistry;
    platform::Registry& registry;
    ScriptedView view;
    forms::AppState state;
    // The exit code the error report ended the assistant with; the test process itself goes on.
    std::optional<int> endedWith;
    assistant::ErrorReport report;
    Services services;
    texts::Texts texts;
    naming::NamingState naming;
    forms::Context context;
};

// A session's resident form, its job dialog played by a TakingDialogHost.
struct Resident {
    Resident(Session& s, const std::string& takenFolder, platform::FolderChanges* changes = nullptr,
             assistant::UserNameSource user = {}, std::atomic<int>* takenCount = nullptr)
        : host(s.state, s.os->files(), takenFolder, takenCount), form(s.context, host, changes, std::move(user)) {}
    void ticks(int n) {
        for (int i = 0; i < n; ++i)
            form.Timer1_Timer();
    }
    TakingDialogHost host;
    assistant::ResidentForm form;
};

// The folders and environment of one user's world; built before the session that lives in it.
struct WorldFolders {
    explicit WorldFolders(const std::string& user);
    TempDir root;
    TestRegistry testRegistry; // the hives of this world, also for stores made from the environment
    ScopedEnv env;
    // A folder below the root, made when asked for, ending in the separator.
    std::string folder(const char* name) const;
    std::string machineFolder = folder("machine"), userFolder = folder("user"), tsFolder = folder("ts"),
                tempFolder = folder("temp"), localAppData = folder("local"), desktopFolder = folder("desktop"),
                takenFolder = folder("taken");
};

class AssistantWorld : public WorldFolders, public Session {
public:
    // `user`: the value of the environment variable `username`.
    explicit AssistantWorld(const std::string& user = "alice");

    void setMachine(const std::string& name, const std::string& value) {
        registry.SetRegValue(MachineKeyPath, name, value);
    }
    void setUser(const std::string& name, const std::string& value) { registry.SetRegValue(UserKeyPath, name, value); }
    std::string user(const std::string& name) const { return registry.GetRegValue(UserKeyPath, name); }

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
