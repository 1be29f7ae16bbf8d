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

#include "app/common/assistant_program.h"
#include "platform/command_line.h"
#include "ui/qt/qt_view.h"

#include <QApplication>
#include <QTimer>

#include <cstdio>
#include <cstring>
#include <string>

namespace {

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

    pl::qtui::QtView view(QStringLiteral("plAssist"));
    pl::app::AssistantProgram program(view, commandLine);
    view.bindResident(program.resident(), [] { QCoreApplication::quit(); });
    view.bindJobDialogs(program.dialogs());
    if (!program.start())
        return program.state().exitCode;

    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&] {
        if (!program.tick())
            QCoreApplication::exit(program.state().exitCode);
    });
    watch.start(pl::app::AssistantProgram::WatchInterval);
    const int code = QApplication::exec();
    return program.state().quitRequested ? program.state().exitCode : code;
}
