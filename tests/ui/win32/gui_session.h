#pragma once
// A user's session with plAssist.exe, driven from inside Wine: a sandbox of folders (suite folder
// with a recording converter and one profile, machine and user spool folders, a desktop), the
// suite's registry values pointing there, the program started as a real process, and the means to
// find its windows, read and set their controls, press buttons and take pictures of them.

#include <windows.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace pl::test::gui {

using namespace std::chrono_literals;

// Polls `done` until it holds or `timeout` passes; true when it held.
bool waitFor(const std::function<bool()>& done, std::chrono::milliseconds timeout = 15s);

std::string readFile(const std::string& path);
bool fileExists(const std::string& path);
void writeFile(const std::string& path, const std::string& content);

std::string windowText(HWND hwnd);
std::string windowClass(HWND hwnd);
// The first child of `parent` of that class whose text contains `text` (any case); null when none.
HWND findChild(HWND parent, const std::string& className, const std::string& text = {});
// The first visible descendant of `parent` of that class, at any depth; null when none.
HWND findVisibleDescendant(HWND parent, const std::string& className);
// The control's rectangle in its window's client coordinates.
RECT clientRect(HWND parent, HWND control);

// Writes what the screen shows of `window` as a 24-bit BMP file; false when it could not.
bool saveScreenshot(HWND window, const std::string& path);
// The colour the screen shows at a point of `window`'s client area.
COLORREF clientPixel(HWND window, int x, int y);

class Session {
public:
    Session();
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // A suite value under HKLM (`machine`) or HKCU, removed again when the session ends.
    void setValue(bool machine, const std::string& name, const std::string& value);
    // Starts plAssist.exe; false when it did not start.
    bool start();
    // Ends the program through the end marker, as an administrator would.
    void stop();
    bool running() const;

    // A print job "<user>NNNNNN.ps" with that document title in the machine spool folder; its path.
    std::string dropJob(const std::string& title, int number = 1);
    // A queued MultiDoc document of the user; its path.
    std::string queueMultiDoc(const std::string& title, int number);

    // A visible top-level window of the program of that class; null when there is none.
    HWND findWindow(const std::string& className) const;
    HWND waitForWindow(const std::string& className, std::chrono::milliseconds timeout = 15s) const;
    // The hidden child of the resident form that receives the tray icon's messages; null before
    // the program made it.
    HWND trayWindow() const;
    // Waits up to `timeout` for the program to end; its exit code, or nothing while it runs.
    std::optional<DWORD> waitForExit(std::chrono::milliseconds timeout);
    // Answers the message box that the program shows by pressing the button of that id (IDYES...).
    bool answerMessageBox(int buttonId, std::string* prompt = nullptr);

    const std::string& root() const { return root_; }
    const std::string& suite() const { return suite_; }
    const std::string& spool() const { return spool_; }
    const std::string& userSpool() const { return userSpool_; }
    const std::string& desktop() const { return desktop_; }
    const std::string& user() const { return user_; }
    // The converter's recorded command lines, one per call.
    std::vector<std::string> converterCalls() const;

private:
    std::string root_, suite_, spool_, userSpool_, desktop_, user_; // desktop_: the user's own
    PROCESS_INFORMATION process_{};
};

// The folder where the tests leave their pictures.
std::string artifactFolder();

} // namespace pl::test::gui
