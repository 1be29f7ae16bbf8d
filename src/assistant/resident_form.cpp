// The resident form's model and its start-up sequence.

#include "assistant/resident_form.h"

#include "assistant/local_time.h"
#include "assistant/runtime_helpers.h"
#include "assistant/suite_keys.h"
#include "assistant/version.h"
#include "base/text.h"
#include "naming/title_cleanup.h"
#include "platform/environment_expand.h"
#include "platform/paths.h"
#include "platform/working_drive.h"
#include "texts/language_selection.h"

#include <filesystem>
#include <fstream>

namespace pl::assistant {
namespace {

using forms::Control;
using forms::ControlKind;

constexpr std::string_view LoadTag = "frmPlAssist1.Form.Load";

// Runs one statement with errors ignored: a failing statement is skipped and the next one runs;
// `failed` remembers that one did.
template <class Statement> void resumeNext(bool& failed, Statement&& statement) {
    try {
        statement();
    } catch (...) {
        failed = true;
    }
}

std::string currentFolder() {
    std::error_code ec;
    return platform::utf8Path(std::filesystem::current_path(ec));
}

Control makeControl(std::string name, ControlKind kind) {
    Control c;
    c.name = std::move(name);
    c.kind = kind;
    return c;
}

void addControls(forms::Form& form) {
    Control tooltip = makeControl("txtTooltip", ControlKind::TextBox);
    tooltip.text = "Paperlark Assistent"; // replaced by text 13 at start
    form.add(tooltip);

    Control timer = makeControl("Timer1", ControlKind::Timer);
    timer.interval = 1000;
    timer.enabled = false; // armed at the end of Form_Load
    timer.visible = false;
    form.add(timer);

    Control image = makeControl("Image1", ControlKind::Image);
    image.width = 240; // the 16 x 16 tray icon
    image.height = 240;
    form.add(image);

    Control menu = makeControl("taskmenu", ControlKind::Menu);
    menu.caption = "taskmenu";
    menu.visible = false; // a pop-up menu only
    form.add(menu);

    Control item = makeControl("mnShowPlAssist", ControlKind::MenuItem);
    item.caption = "PLDialog anzeigen"; // replaced by text 13 at start
    form.add(item);
}

} // namespace

void HideFromTaskbar(forms::Form& form, forms::View& view) {
    view.hideFromTaskbar(form);
}

ResidentForm::ResidentForm(forms::Context& context, forms::JobDialogHost& dialogs, platform::FolderChanges* changes,
                           UserNameSource userName)
    : forms::Form("frmPlAssist1"), ctx_(context), dialogs_(dialogs), search_(context.services.os.files(), changes),
      rawUserName_(std::move(userName)) {
    if (!rawUserName_) {
        platform::Environment& env = context.services.os.environment();
        rawUserName_ = [&env] { return env.get("username"); };
    }
    caption = "Paperlark Assistant";
    addControls(*this);
    // A language file with a defect text must not keep the watcher from starting.
    context.texts.trapErrorsWith(context.services.errors);
}

std::string ResidentForm::userName() const {
    return naming::PsspecialChar(rawUserName_(), ctx_.services.errors);
}

void ResidentForm::log(std::string_view line) {
    if (state().DebugMode == "1")
        DebugWrite(line, services());
}

void ResidentForm::endProcess(int exitCode) {
    state().quitRequested = true;
    state().exitCode = exitCode;
}

void ResidentForm::Form_Initialize() {
    // The common controls library is the front-end's to initialise; the model has nothing to do.
}

void ResidentForm::Form_Load() {
    forms::AppState& st = state();
    platform::Registry& registry = services().registry;
    bool trapping = true; // errors go to the error report until an ignored stretch has failed
    loaded = true;

    try {
        st.StepName = "0.9 Running TS Command " + st.CommandLine;
        if (!startCompanionProgram())
            return;

        st.StepName = "1: Init";
        HideFromTaskbar(*this, view());
        KillTempDfFiles();
        KillOldPsdirTempFiles();
        KillOldLocalTempFiles();
        CleanVirtualStoreKey();
        CleanVirtualStoreFolder();
        st.DesktopName = LoadDesktop(services());

        st.DebugMode = regText(registry, UserKey, "Debug");
        if (st.DebugMode == "1")
            startFreshLog();

        st.StepName = "2: Init";
        texts::SetxSpr(ctx_.texts, services());
        const std::string tip = ctx_.texts.text(13);
        control("txtTooltip").text = tip;
        control("mnShowPlAssist").caption = tip;

        st.StepName = "3: Init";
        bool stretchFailed = false;
        bool refused = false;
        resumeNext(stretchFailed, [&] { refused = refuseSecondInstance(); });
        if (refused)
            return;
        trapping = trapping && !stretchFailed;

        // Every job file is matched by user name, so a session without one (a service) has nothing to do.
        if (userName().empty()) {
            log("Paperlark Assistant kann nicht als Dienst gestartet werden. Er benoetigt einen Benutzernamen!");
            endProcess();
            return;
        }

        st.DisableFcn =
            regText(registry, UserKey, "DisableFCN") == "1" || regText(registry, MachineKey, "DisableFCN") == "1";

        st.StepName = "4: TS extensions";
        resolveSpoolFolders();

        st.StepName = "5: PM5 Support";
        st.Pm5Support = regText(registry, UserKey, "Pagemaker5") == "1";

        stretchFailed = false;
        resumeNext(stretchFailed, [&] { chooseWorkingDrive(); });
        trapping = trapping && !stretchFailed;

        control("Timer1").enabled = true;
        st.CitrixUnload =
            regText(registry, UserKey, "CitrixUnload") == "1" || regText(registry, MachineKey, "CitrixUnload") == "1";
    } catch (...) {
        const RuntimeError error = currentError();
        if (trapping) {
            services().errors.report(LoadTag, st.StepName, error);
        } else {
            // Nothing traps errors any more: the run-time system's own message, and the end.
            view().msgBox("Run-time error '" + text::number(error.number()) + "':\r\n\r\n" + error.description(),
                          mb::OkOnly | mb::Critical);
            endProcess(1);
        }
    }
}

// Each start with logging on begins a fresh log, which opens with when, which version and where.
void ResidentForm::startFreshLog() {
    platform::Platform& os = services().os;
    std::string logFile = regText(services().registry, ShellFoldersKey, "Desktop") + platform::PathSep + "plAssist.log";
    platform::ReplaceEnviron(logFile, os.environment());
    if (os.files().exists(logFile))
        os.files().remove(logFile);
    const TimePoint now = os.clock().now();
    log("Starte plAssist.exe am " + formatLocalDate(now) + " um " + formatLocalTime(now));
    log("Version " + text::number(VersionMajor) + "." + text::number(VersionMinor) + "." +
        text::number(VersionRevision));
    log("CurDir = " + currentFolder());
}

// Started with a command line, the assistant accompanies that one program (a published application
// on a terminal server) and ends with it.
bool ResidentForm::startCompanionProgram() {
    forms::AppState& st = state();
    if (st.CommandLine.empty())
        return true;
    const auto pid = services().os.processes().start(st.CommandLine, platform::WindowStyle::MaximizedFocus);
    if (!pid || *pid == 0) {
        view().msgBox("You have tried to run " + st.CommandLine +
                      " but this has failed! - plAssist.exe is exiting now.");
        endProcess();
        return false;
    }
    if (*pid > 2147483647) {
        view().msgBox("You have tried to run " + st.CommandLine +
                      " but the returning PID is greater 2147483647! - plAssist.exe is exiting now.");
        endProcess();
        return false;
    }
    st.TsCommandPid = static_cast<std::int32_t>(*pid);
    return true;
}

// One assistant per logon session; a second one leaves silently. The lock lives as long as the form.
bool ResidentForm::refuseSecondInstance() {
    auto lock = services().os.makeInstanceLock();
    if (lock->acquire(InstanceLockName)) {
        instanceLock_ = std::move(lock);
        return false;
    }
    log("Paperlark Assistant bereits gestartet");
    endProcess();
    return true;
}

void ResidentForm::resolveSpoolFolders() {
    forms::AppState& st = state();
    platform::Registry& registry = services().registry;
    const platform::Environment& env = services().os.environment();

    // The machine's value wins unless the user's is "*", which makes every user's jobs in TsPath match.
    st.TsName = regText(registry, UserKey, "TsName");
    if (st.TsName != "*")
        st.TsName = regText(registry, MachineKey, "TsName");
    st.TsPath = regText(registry, UserKey, "TsPath");
    platform::ReplaceEnviron(st.TsPath, env);
    if (st.TsName.empty())
        st.TsName = userName();

    st.PsDirMachine = regText(registry, MachineKey, "psdir");
    platform::ReplaceEnviron(st.PsDirMachine, env);

    st.PsDirUser = regText(registry, UserKey, "psdir");
    if (st.PsDirUser.empty() || !folderIsWritable(st.PsDirUser)) {
        // The virtual printer and later starts must use the same folder, hence the write-back.
        st.PsDirUser = regText(registry, ShellFoldersKey, "Local AppData") + platform::PathSep + "Paperlark_XP" +
                       platform::PathSep;
        if (!st.PsDirUser.empty())
            registry.SetRegValue(UserKey, "psdir", st.PsDirUser);
    }

    if (!st.TsPath.empty() && st.TsPath.back() != platform::PathSep)
        st.TsPath += platform::PathSep;
}

bool ResidentForm::folderIsWritable(const std::string& folder) {
    const std::string probe = platform::withTrailingSep(folder) + "test.txt";
    {
        std::ofstream out(platform::fsPath(probe), std::ios::binary | std::ios::trunc);
        if (!out)
            return false;
        out << "Test\r\n";
        out.close();
        if (!out)
            return false;
    }
    return services().os.files().remove(probe);
}

void ResidentForm::chooseWorkingDrive() {
    forms::AppState& st = state();
    const platform::Environment& env = services().os.environment();
    std::string profile = env.get("userprofile");
    st.StepName = "6: ChDrive " + profile;
    if (profile.size() >= 2 && profile.front() == '%' && profile.back() == '%') {
        // An unexpanded reference: looked up under its name as it stands, percent signs included.
        profile = env.get(profile);
        st.StepName = "6: ChDrive " + env.get("windir") + " --> " + profile;
    }
    workingDrive_.clear();
    if (text::length(profile) > 2 && profile.substr(0, 2) != "\\\\") {
        workingDrive_ = profile.substr(0, 2);
        platform::changeWorkingDrive(workingDrive_);
    }
}

std::string ResidentForm::firstMatch(std::string_view searchPath, platform::Entries entries) {
    const auto [folder, pattern] = splitSearchPath(searchPath);
    return search_.firstMatch(folder, pattern, entries);
}

std::string ResidentForm::freshFirstMatch(std::string_view searchPath, platform::Entries entries) {
    const auto [folder, pattern] = splitSearchPath(searchPath);
    return search_.freshFirstMatch(folder, pattern, entries);
}

} // namespace pl::assistant
