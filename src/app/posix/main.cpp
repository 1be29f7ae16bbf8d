// plassist: the assistant's program on POSIX desktops. It starts the resident form, watches the
// spool folders once a second and shows a job dialog for each job, until the end marker appears,
// the companion program ends, or the error report ends it.
//
//     plassist                     watch the spool folders until told to stop
//     plassist PROGRAM [ARG ...]   also start PROGRAM (maximised) and end when it ends
//     plassist --help | --version
//
// Everything after the program's own name is the companion's command line; Qt reads no options
// from it (QT_QPA_PLATFORM and the other QT_* variables choose the display).

#include "assistant/error_report.h"
#include "assistant/resident_form.h"
#include "dialog/actions/job_actions.h"
#include "dialog/job_dialog_host.h"
#include "forms/context.h"
#include "platform/command_line.h"
#include "platform/folder_changes.h"
#include "platform/platform.h"
#include "platform/registry.h"
#include "ui/qt/qt_view.h"

#include <QApplication>
#include <QTimer>

#include <cstdio>
#include <cstring>
#include <string>

namespace {

constexpr int WatchInterval = 1000; // milliseconds between two looks into the spool folders

// The companion program's command line, quoted so that it splits back into the same words.
std::string companionCommandLine(int argc, char** argv) {
    std::string line;
    for (int i = 1; i < argc; ++i) {
        if (!line.empty())
            line += ' ';
        line += pl::platform::quoteArgument(argv[i]);
    }
    return line;
}

bool answeredOnItsOwn(int argc, char** argv) {
    if (argc != 2)
        return false;
    if (std::strcmp(argv[1], "--version") == 0) {
        std::printf("plassist %s\n", PAPERLARK_VERSION);
        return true;
    }
    if (std::strcmp(argv[1], "--help") == 0) {
        std::printf("Usage: plassist [PROGRAM [ARGUMENT ...]]\n"
                    "\n"
                    "The Paperlark assistant: watches the spool folders for print jobs and opens a\n"
                    "dialog for each. Given a PROGRAM, it starts that program maximised and ends\n"
                    "when it ends. A file \"plassistende.cmd\" in the machine spool folder ends it.\n"
                    "\n"
                    "Environment: PAPERLARK_REGISTRY_DIR (folder of the registry hive files),\n"
                    "QT_QPA_PLATFORM (the Qt display platform, e.g. offscreen).\n"
                    "\n"
                    "  --help     show this text\n"
                    "  --version  show the version\n");
        return true;
    }
    return false;
}

} // namespace

int main(int argc, char** argv) {
    if (answeredOnItsOwn(argc, argv))
        return 0;
    const std::string commandLine = companionCommandLine(argc, argv);

    // Qt gets only the program's name: every other word belongs to the companion program.
    int qtArgc = 1;
    char* qtArgv[] = {argv[0], nullptr};
    QApplication app(qtArgc, qtArgv);
    QApplication::setApplicationName(QStringLiteral("plassist"));
    // Dialogs come and go; the assistant lives on without any window.
    QApplication::setQuitOnLastWindowClosed(false);

    auto os = pl::platform::makeNativePlatform();
    pl::platform::Registry registry(os->registry());
    pl::forms::AppState state;
    state.CommandLine = commandLine;
    pl::qtui::QtView view(QStringLiteral("plAssist"));
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

    view.bindResident(resident, [] { QCoreApplication::quit(); });
    view.bindJobDialogs(dialogs);

    resident.Form_Initialize();
    resident.Form_Load();
    if (state.quitRequested)
        return state.exitCode;

    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&] {
        // Finished converters are collected here, whether or not anybody asks about them.
        os->processes().collectEnded();
        // The end may have been asked for since the last tick.
        if (!state.quitRequested && resident.timerEnabled())
            resident.Timer1_Timer();
        if (state.quitRequested)
            QCoreApplication::exit(state.exitCode);
    });
    watch.start(WatchInterval);
    const int code = QApplication::exec();
    return state.quitRequested ? state.exitCode : code;
}
