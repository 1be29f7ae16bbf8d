#pragma once
// A desktop for the converter run in the test's own process: Qt's offscreen platform behind a
// display name, the sandbox of ConverterHarness, and the desktop helpers xdg-open and xdg-email
// replaced by scripts that write down what they were asked to open and answer with the exit code
// the test sets (0 found a program, 3 found none).

#include "converter_harness.h"

#include <QApplication>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace pl::test {

class DesktopSession {
public:
    // `sessionBus`: the address of the session bus the converter may use; empty for none.
    explicit DesktopSession(const std::string& sessionBus = "unix:path=/nonexistent/bus");

    ConverterHarness& sandbox() { return sandbox_; }
    // What xdg-open and xdg-email were called with, one call a line.
    std::vector<std::string> handedOver() const;
    void setHelperExitCode(int code) const;
    // The user's desktop folder, created.
    std::string desktop() const { return sandbox_.home() + "Desktop/"; }

    // Runs the converter in this process, with `steps` run one after the other whenever a window
    // of the converter is waiting: each gets the window and says whether it was for it.
    int convert(const std::vector<std::string>& args, std::vector<std::function<bool(QWidget*)>> steps);

private:
    ConverterHarness sandbox_;
    ScopedEnv env_;
    std::string helpers_;
    std::unique_ptr<QApplication> application_;
};

} // namespace pl::test
