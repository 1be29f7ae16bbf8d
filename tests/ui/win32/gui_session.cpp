#include "gui_session.h"

#include <shlobj.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

namespace pl::test::gui {

namespace {

constexpr const char* SuiteKey = "Software\\tobrin\\PaperlarkXP";

// The build names its programs by their host paths; inside Wine the host's root is drive Z.
std::string wine(std::string path) {
    std::replace(path.begin(), path.end(), '/', '\\');
    return "Z:" + path;
}

std::string lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text;
}

std::string env(const char* name) {
    char value[1024] = {};
    const DWORD n = GetEnvironmentVariableA(name, value, sizeof value);
    return n > 0 && n < sizeof value ? std::string(value, n) : std::string();
}

void regWrite(HKEY root, const char* key, const char* name, const std::string& value) {
    HKEY k = nullptr;
    if (RegCreateKeyExA(root, key, 0, nullptr, 0, KEY_SET_VALUE, nullptr, &k, nullptr) != ERROR_SUCCESS)
        return;
    RegSetValueExA(k, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                   static_cast<DWORD>(value.size() + 1));
    RegCloseKey(k);
}

std::string jobText(const std::string& title) {
    return "%!PS-Adobe-3.0\n%%Title: " + title + "\n%%Pages: 1\n%%EndComments\nshowpage\n%%EOF\n";
}

struct Found {
    DWORD pid;
    std::string className;
    HWND hwnd = nullptr;
};


BOOL CALLBACK findTopLevel(HWND hwnd, LPARAM data) {
    auto* found = reinterpret_cast<Found*>(data);
    DWORD pid = 0;
    GetWindowThreadProcessId(hwnd, &pid);
    if (pid == found->pid && IsWindowVisible(hwnd) && windowClass(hwnd) == found->className) {
        found->hwnd = hwnd;
        return FALSE;
    }
    return TRUE;
}

} // namespace

bool waitFor(const std::function<bool()>& done, std::chrono::milliseconds timeout) {
    const auto until = std::chrono::steady_clock::now() + timeout;
    while (!done()) {
        if (std::chrono::steady_clock::now() > until)
            return false;
        std::this_thread::sleep_for(50ms);
    }
    return true;
}

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

bool fileExists(const std::string& path) {
    return GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

void writeFile(const std::string& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

std::string windowText(HWND hwnd) {
    char text[4096] = {};
    SendMessageA(hwnd, WM_GETTEXT, sizeof text, reinterpret_cast<LPARAM>(text));
    return text;
}

std::string windowClass(HWND hwnd) {
    char name[256] = {};
    GetClassNameA(hwnd, name, sizeof name);
    return name;
}

HWND findChild(HWND parent, const std::string& className, const std::string& text) {
    for (HWND child = FindWindowExA(parent, nullptr, nullptr, nullptr); child != nullptr;
         child = FindWindowExA(parent, child, nullptr, nullptr)) {
        if (lower(windowClass(child)) == lower(className) &&
            lower(windowText(child)).find(lower(text)) != std::string::npos)
            return child;
    }
    return nullptr;
}

HWND findVisibleDescendant(HWND parent, const std::string& className) {
    struct Search {
        std::string className;
        HWND found = nullptr;
    } search{lower(className)};
    EnumChildWindows(
        parent,
        [](HWND child, LPARAM data) -> BOOL {
            auto* s = reinterpret_cast<Search*>(data);
            if (IsWindowVisible(child) && lower(windowClass(child)) == s->className) {
                s->found = child;
                return FALSE;
            }
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.found;
}

RECT clientRect(HWND parent, HWND control) {
    RECT r{};
    GetWindowRect(control, &r);
    MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&r), 2);
    return r;
}

bool saveScreenshot(HWND window, const std::string& path) {
    RECT r{};
    if (!GetWindowRect(window, &r))
        return false;
    const int w = r.right - r.left, h = r.bottom - r.top;
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = w;
    info.bmiHeader.biHeight = h; // bottom-up, as a BMP file keeps it
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 24;
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    HDC screen = GetDC(nullptr);
    HDC memory = CreateCompatibleDC(screen);
    HBITMAP bitmap = CreateDIBSection(screen, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    HGDIOBJ old = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, w, h, screen, r.left, r.top, SRCCOPY);
    GdiFlush();
    const DWORD stride = static_cast<DWORD>((w * 3 + 3) & ~3);
    BITMAPFILEHEADER file{};
    file.bfType = 0x4D42;
    file.bfOffBits = sizeof file + sizeof info.bmiHeader;
    file.bfSize = file.bfOffBits + stride * static_cast<DWORD>(h);
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(&file), sizeof file);
    out.write(reinterpret_cast<const char*>(&info.bmiHeader), sizeof info.bmiHeader);
    out.write(static_cast<const char*>(bits), static_cast<std::streamsize>(stride * static_cast<DWORD>(h)));
    SelectObject(memory, old);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
    return out.good();
}

COLORREF clientPixel(HWND window, int x, int y) {
    POINT at{x, y};
    ClientToScreen(window, &at);
    HDC screen = GetDC(nullptr);
    const COLORREF color = GetPixel(screen, at.x, at.y);
    ReleaseDC(nullptr, screen);
    return color;
}

std::string artifactFolder() {
    std::string folder = env("PAPERLARK_GUI_ARTIFACTS");
    if (folder.empty())
        folder = wine(PAPERLARK_GUI_ARTIFACTS);
    CreateDirectoryA(folder.c_str(), nullptr);
    return folder + "\\";
}

Session::Session() {
    char temp[MAX_PATH] = {};
    GetTempPathA(MAX_PATH, temp);
    root_ = std::string(temp) + "plgui-" + std::to_string(GetCurrentProcessId()) + "-" +
            std::to_string(GetTickCount64()) + "\\";
    suite_ = root_ + "suite\\";
    spool_ = root_ + "spool\\";
    userSpool_ = root_ + "user\\";
    char desktop[MAX_PATH] = {};
    SHGetFolderPathA(nullptr, CSIDL_DESKTOPDIRECTORY, nullptr, 0, desktop);
    desktop_ = desktop;
    for (const auto& folder : {root_, suite_, spool_, userSpool_})
        CreateDirectoryA(folder.c_str(), nullptr);
    CopyFileA(wine(RECORDING_CONVERTER).c_str(), (suite_ + "Paperlark.exe").c_str(), FALSE);
    writeFile(suite_ + "Standard.plp", "-sDEVICE=pdfwrite\r\n");
    user_ = env("username");

    // Every session starts from no suite settings at all.
    RegDeleteTreeA(HKEY_CURRENT_USER, SuiteKey);
    RegDeleteTreeA(HKEY_LOCAL_MACHINE, SuiteKey);
    setValue(true, "psdir", spool_);
    setValue(true, "plDir", suite_);
    setValue(false, "psdir", userSpool_);
    setValue(false, "OpenPdf", "0");
    setValue(false, "Debug", "1"); // the log on the desktop tells what happened
}

Session::~Session() {
    stop();
    RegDeleteTreeA(HKEY_CURRENT_USER, SuiteKey);
    RegDeleteTreeA(HKEY_LOCAL_MACHINE, SuiteKey);
    std::error_code ignored;
    std::filesystem::remove_all(root_, ignored);
}

void Session::setValue(bool machine, const std::string& name, const std::string& value) {
    regWrite(machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER, SuiteKey, name.c_str(), value);
}

bool Session::start() {
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    std::string command = "\"" + wine(PLASSIST) + "\"";
    if (!CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, root_.c_str(), &startup,
                        &process_))
        return false;
    // Ready once its hidden window is made.
    return waitFor([&] { return trayWindow() != nullptr || !running(); }) && running();
}

HWND Session::trayWindow() const {
    struct Search {
        DWORD pid;
        HWND tip = nullptr;
    } search{process_.dwProcessId};
    EnumWindows(
        [](HWND hwnd, LPARAM data) -> BOOL {
            auto* s = reinterpret_cast<Search*>(data);
            DWORD pid = 0;
            GetWindowThreadProcessId(hwnd, &pid);
            if (pid == s->pid)
                s->tip = FindWindowExA(hwnd, nullptr, "PaperlarkTip", nullptr);
            return s->tip == nullptr;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.tip;
}

std::optional<DWORD> Session::waitForExit(std::chrono::milliseconds timeout) {
    if (process_.hProcess == nullptr ||
        WaitForSingleObject(process_.hProcess, static_cast<DWORD>(timeout.count())) != WAIT_OBJECT_0)
        return std::nullopt;
    DWORD code = 0;
    GetExitCodeProcess(process_.hProcess, &code);
    return code;
}

bool Session::running() const {
    return process_.hProcess != nullptr && WaitForSingleObject(process_.hProcess, 0) == WAIT_TIMEOUT;
}

void Session::stop() {
    if (process_.hProcess == nullptr)
        return;
    writeFile(spool_ + "plassistende.cmd", "");
    if (WaitForSingleObject(process_.hProcess, 10000) != WAIT_OBJECT_0)
        TerminateProcess(process_.hProcess, 99);
    WaitForSingleObject(process_.hProcess, 5000);
    CloseHandle(process_.hProcess);
    CloseHandle(process_.hThread);
    process_ = {};
    DeleteFileA((spool_ + "plassistende.cmd").c_str());
}

std::string Session::dropJob(const std::string& title, int number) {
    char digits[16];
    snprintf(digits, sizeof digits, "%06d", number);
    const std::string path = spool_ + user_ + digits + ".ps";
    // Written under a "~" name and renamed, as the printer does, so no tick sees half a job.
    const std::string partial = spool_ + "~" + user_ + digits + ".ps";
    writeFile(partial, jobText(title));
    MoveFileA(partial.c_str(), path.c_str());
    return path;
}

std::string Session::queueMultiDoc(const std::string& title, int number) {
    const std::string path = userSpool_ + "MultiDoc" + user_ + std::to_string(number) + ".ps";
    writeFile(path, jobText(title));
    return path;
}

HWND Session::findWindow(const std::string& className) const {
    Found found{process_.dwProcessId, className};
    EnumWindows(findTopLevel, reinterpret_cast<LPARAM>(&found));
    return found.hwnd;
}

HWND Session::waitForWindow(const std::string& className, std::chrono::milliseconds timeout) const {
    HWND hwnd = nullptr;
    waitFor([&] { return (hwnd = findWindow(className)) != nullptr; }, timeout);
    return hwnd;
}

bool Session::answerMessageBox(int buttonId, std::string* prompt) {
    HWND box = waitForWindow("#32770");
    if (box == nullptr)
        return false;
    if (prompt != nullptr) {
        // The prompt is the box's longest static text.
        prompt->clear();
        for (HWND child = FindWindowExA(box, nullptr, "Static", nullptr); child != nullptr;
             child = FindWindowExA(box, child, "Static", nullptr))
            if (windowText(child).size() > prompt->size())
                *prompt = windowText(child);
    }
    HWND button = GetDlgItem(box, buttonId);
    if (button == nullptr)
        return false;
    PostMessageA(button, BM_CLICK, 0, 0);
    return waitFor([&] { return !IsWindow(box) || !IsWindowVisible(box); });
}

std::vector<std::string> Session::converterCalls() const {
    std::vector<std::string> calls;
    std::istringstream lines(readFile(suite_ + "calls.txt"));
    for (std::string line; std::getline(lines, line);) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (!line.empty())
            calls.push_back(line);
    }
    return calls;
}

} // namespace pl::test::gui
