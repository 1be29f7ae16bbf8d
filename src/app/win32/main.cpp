// plAssist.exe: the assistant's program on Windows. It starts the resident form, watches the spool
// folders once a second and shows a job dialog for each job, until the end marker appears, the
// companion program ends, the session ends or the error report ends it.
//
//     plAssist.exe                     watch the spool folders until told to stop
//     plAssist.exe PROGRAM [ARG ...]   also start PROGRAM (maximised) and end when it ends
//
// The whole command line after the program's own name is the companion's, as it was typed.

#include "assistant/error_report.h"
#include "assistant/resident_form.h"
#include "dialog/actions/job_actions.h"
#include "dialog/job_dialog_host.h"
#include "forms/context.h"
#include "platform/folder_changes.h"
#include "platform/platform.h"
#include "platform/registry.h"
#include "ui/win32/win32_view.h"
#include "ui/win32/window.h"

#include "ui/win32/win32_api.h"
#include <commctrl.h>

#include <string>

namespace {

constexpr UINT WatchInterval = 1000; // milliseconds between two looks into the spool folders
constexpr int IconResource = 1;

// What follows the program's own name (quoted or not) and the blanks after it.
std::string companionCommandLine(const char* line) {
    std::string_view rest = line != nullptr ? line : "";
    if (!rest.empty() && rest.front() == '"') {
        const auto end = rest.find('"', 1);
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    } else {
        const auto end = rest.find_first_of(" \t");
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end);
    }
    while (!rest.empty() && (rest.front() == ' ' || rest.front() == '\t'))
        rest.remove_prefix(1);
    return std::string(rest);
}

} // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int) {
    const std::string commandLine = companionCommandLine(GetCommandLineA());

    // The form's initialisation: the common controls library, before any window is made.
    INITCOMMONCONTROLSEX controls{sizeof controls, ICC_STANDARD_CLASSES | ICC_WIN95_CLASSES};
    InitCommonControlsEx(&controls);

    // The tray wants the small icon; windows take it for their title bars as well.
    auto icon = static_cast<HICON>(LoadImageA(instance, MAKEINTRESOURCEA(IconResource), IMAGE_ICON,
                                              GetSystemMetrics(SM_CXSMICON), GetSystemMetrics(SM_CYSMICON), 0));
    if (icon == nullptr)
        icon = LoadIconA(nullptr, reinterpret_cast<LPCSTR>(IDI_APPLICATION));

    auto os = pl::platform::makeNativePlatform();
    pl::platform::Registry registry(os->registry());
    pl::forms::AppState state;
    state.CommandLine = commandLine;
    pl::winui::Win32View view(icon, "plAssist");
    // After a fatal error the report ends the process at once: the failing procedure must not go on.
    pl::assistant::ErrorReport report(*os, registry, view, state,
                                      [&os](int exitCode) { os->processes().exitCurrent(exitCode); });
    pl::Services services{*os, registry, report, view};
    pl::texts::Texts texts;
    pl::naming::NamingState naming;
    pl::forms::Context context{services, state, texts, naming, view};
    // Starting the configuration program pauses the watch timer, so that no job dialog opens on top
    // of it while it comes up.
    pl::assistant::ResidentForm* watcher = nullptr;
    pl::dialog::ActionHooks hooks{[&watcher](bool enabled) {
        if (watcher != nullptr)
            watcher->control("Timer1").enabled = enabled;
    }};
    pl::dialog::JobDialogSlot dialogs(context, pl::dialog::jobActionsWith(hooks));
    auto changes = pl::platform::makeFolderChanges();
    pl::assistant::ResidentForm resident(context, dialogs, changes.get());
    watcher = &resident;

    view.bindResident(resident, [&state] {
        state.quitRequested = true;
        PostQuitMessage(state.exitCode);
    });
    view.bindJobDialogs(dialogs);

    resident.Form_Initialize();
    resident.Form_Load();
    if (state.quitRequested)
        return state.exitCode;

    // The watch timer lives on a message-only window. A tick that comes while the previous one is
    // still running (a job dialog yielding to the message loop) is left out.
    bool ticking = false;
    pl::winui::WindowArgs timerArgs;
    timerArgs.className = "PaperlarkWatch";
    timerArgs.owner = HWND_MESSAGE;
    timerArgs.style = 0;
    pl::winui::Window watch(timerArgs, [&](HWND, UINT message, WPARAM, LPARAM) -> std::optional<LRESULT> {
        if (message != WM_TIMER)
            return std::nullopt;
        if (!ticking) {
            ticking = true;
            if (!state.quitRequested && resident.timerEnabled())
                resident.Timer1_Timer();
            ticking = false;
        }
        if (state.quitRequested)
            PostQuitMessage(state.exitCode);
        return 0;
    });
    SetTimer(watch.handle(), 1, WatchInterval, nullptr);
    const int code = view.loop().run();
    return state.quitRequested ? state.exitCode : code;
}
