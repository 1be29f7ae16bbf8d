// plAssist.exe: the assistant's program on Windows. It starts the resident form, watches the spool
// folders once a second and shows a job dialog for each job, until the end marker appears, the
// companion program ends, the session ends or the error report ends it.
//
//     plAssist.exe                     watch the spool folders until told to stop
//     plAssist.exe PROGRAM [ARG ...]   also start PROGRAM (maximised) and end when it ends
//
// The whole command line after the program's own name is the companion's, as it was typed.

#include "app/common/assistant_program.h"
#include "ui/win32/win32_view.h"
#include "ui/win32/window.h"

#include "ui/win32/win32_api.h"
#include <commctrl.h>

#include <string>

namespace {

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

    pl::winui::Win32View view(icon, "plAssist");
    pl::app::AssistantProgram program(view, commandLine);
    pl::forms::AppState& state = program.state();
    view.bindResident(program.resident(), [&state] {
        state.quitRequested = true;
        PostQuitMessage(state.exitCode);
    });
    view.bindJobDialogs(program.dialogs());
    if (!program.start())
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
            if (!program.tick())
                PostQuitMessage(state.exitCode);
            ticking = false;
        }
        return 0;
    });
    SetTimer(watch.handle(), 1, pl::app::AssistantProgram::WatchInterval, nullptr);
    const int code = view.loop().run();
    return state.quitRequested ? state.exitCode : code;
}
