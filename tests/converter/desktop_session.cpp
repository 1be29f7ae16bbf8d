#include "desktop_session.h"

#include "converter/program.h"

#include <QTimer>
#include <QWidget>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace pl::test {

namespace {

char gName[] = "converter_desktop_tests";
char* gArgv[] = {gName, nullptr};
int gArgc = 1;

void writeHelper(const std::string& folder, const std::string& name) {
    const std::string path = folder + name;
    std::ofstream(path) << "#!/bin/sh\necho \"" << name << " $*\" >> \"" << folder << "calls\"\n"
                        << "exit $(cat \"" << folder << "exit-code\" 2>/dev/null || echo 0)\n";
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
}

} // namespace

DesktopSession::DesktopSession(const std::string& sessionBus) {
    helpers_ = sandbox_.home() + "helpers/";
    std::filesystem::create_directories(helpers_);
    std::filesystem::create_directories(desktop());
    writeHelper(helpers_, "xdg-open");
    writeHelper(helpers_, "xdg-email");
    const char* path = std::getenv("PATH");
    env_.set("PATH", helpers_ + ":" + (path ? path : "/usr/bin:/bin"));
    env_.set("DISPLAY", ":77");
    env_.set("QT_QPA_PLATFORM", "offscreen");
    env_.set("DBUS_SESSION_BUS_ADDRESS", sessionBus);
    application_ = std::make_unique<QApplication>(gArgc, gArgv);
}

std::vector<std::string> DesktopSession::handedOver() const {
    std::vector<std::string> calls;
    std::istringstream in(readFile(helpers_ + "calls"));
    for (std::string line; std::getline(in, line);)
        calls.push_back(line);
    return calls;
}

void DesktopSession::setHelperExitCode(int code) const {
    std::ofstream(helpers_ + "exit-code") << code << "\n";
}

int DesktopSession::convert(const std::vector<std::string>& args, std::vector<std::function<bool(QWidget*)>> steps) {
    QTimer poll;
    std::size_t next = 0;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        if (next >= steps.size())
            return;
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (window->isVisible() && steps[next](window)) {
                ++next;
                return;
            }
        }
    });
    poll.start(20);
    const int code = converter::converterMain(args);
    EXPECT_EQ(next, steps.size()) << "not every expected window came";
    return code;
}

} // namespace pl::test
