#include "ui/win32/common_dialogs.h"

#include "base/text.h"

#include <commdlg.h>

#include <algorithm>
#include <cstring>
#include <vector>

namespace pl::winui {

int showMessageBox(HWND owner, std::string_view prompt, int style, std::string_view title) {
    const std::string text(prompt);
    const std::string caption = title.empty() ? std::string("plAssist") : std::string(title);
    return MessageBoxA(owner, text.c_str(), caption.c_str(), static_cast<UINT>(style));
}

std::string commonDialogFilter(std::string_view classicFilter) {
    std::string filter(classicFilter);
    std::replace(filter.begin(), filter.end(), '|', '\0');
    // A filter that already ends in its divider keeps one zero; the list ends with two.
    if (filter.empty() || filter.back() != '\0')
        filter += '\0';
    filter += '\0';
    return filter;
}

DWORD saveDialogFlags(const forms::SaveDialogRequest& request) {
    DWORD flags = 0;
    if (request.overwritePrompt)
        flags |= OFN_OVERWRITEPROMPT;
    if (request.pathMustExist)
        flags |= OFN_PATHMUSTEXIST;
    return flags;
}

std::optional<std::string> askSaveFileName(HWND owner, const forms::SaveDialogRequest& request) {
    const std::string filter = commonDialogFilter(request.filter);
    std::vector<char> file(32768, '\0');
    std::memcpy(file.data(), request.fileName.data(), std::min(request.fileName.size(), file.size() - 1));
    OPENFILENAMEA ofn{};
    ofn.lStructSize = sizeof ofn;
    ofn.hwndOwner = owner;
    ofn.lpstrFilter = request.filter.empty() ? nullptr : filter.c_str();
    ofn.nFilterIndex = static_cast<DWORD>(request.filterIndex);
    ofn.lpstrFile = file.data();
    ofn.nMaxFile = static_cast<DWORD>(file.size());
    ofn.lpstrInitialDir = request.initDir.empty() ? nullptr : request.initDir.c_str();
    ofn.lpstrTitle = request.title.empty() ? nullptr : request.title.c_str();
    ofn.lpstrDefExt = request.defaultExt.empty() ? nullptr : request.defaultExt.c_str();
    ofn.Flags = saveDialogFlags(request);
    if (!GetSaveFileNameA(&ofn))
        return std::nullopt;
    return std::string(file.data());
}

namespace {

std::wstring wide(std::string_view text) {
    const int n = MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
    std::wstring out(static_cast<std::size_t>(n), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), out.data(), n);
    return out;
}

std::string utf8(const wchar_t* text) {
    const int n = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    if (n <= 1)
        return {};
    std::string out(static_cast<std::size_t>(n), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, out.data(), n, nullptr, nullptr);
    out.resize(static_cast<std::size_t>(n - 1));
    return out;
}

} // namespace

// The clipboard is read and written as Unicode text: the system converts its 8-bit form with the
// user's locale, not with the program's code page.
std::string clipboardText(HWND owner) {
    std::string text;
    if (!OpenClipboard(owner))
        return text;
    if (HANDLE data = GetClipboardData(CF_UNICODETEXT)) {
        if (const auto* chars = static_cast<const wchar_t*>(GlobalLock(data))) {
            text = utf8(chars);
            GlobalUnlock(data);
        }
    }
    CloseClipboard();
    return text;
}

void setClipboardText(HWND owner, std::string_view text) {
    if (!OpenClipboard(owner))
        return;
    EmptyClipboard();
    if (!text.empty()) {
        const std::wstring chars = wide(text);
        const std::size_t bytes = (chars.size() + 1) * sizeof(wchar_t);
        if (HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes)) {
            std::memcpy(GlobalLock(memory), chars.c_str(), bytes);
            GlobalUnlock(memory);
            if (!SetClipboardData(CF_UNICODETEXT, memory))
                GlobalFree(memory);
        }
    }
    CloseClipboard();
}

namespace {

WORD namedKey(std::string_view name) {
    struct Named {
        const char* name;
        WORD key;
    };
    static const Named keys[] = {{"TAB", VK_TAB},   {"ENTER", VK_RETURN}, {"ESC", VK_ESCAPE}, {"ESCAPE", VK_ESCAPE},
                                 {"DOWN", VK_DOWN}, {"UP", VK_UP},        {"LEFT", VK_LEFT},  {"RIGHT", VK_RIGHT},
                                 {"HOME", VK_HOME}, {"END", VK_END},      {"F4", VK_F4},      {"BACKSPACE", VK_BACK}};
    for (const auto& k : keys)
        if (text::iequals(name, k.name))
            return k.key;
    return 0;
}

void press(std::vector<INPUT>& inputs, WORD key, bool up) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.dwFlags = up ? KEYEVENTF_KEYUP : 0;
    inputs.push_back(input);
}

} // namespace

void sendKeys(std::string_view keys) {
    std::vector<INPUT> inputs;
    std::vector<WORD> held;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const char c = keys[i];
        if (c == '%' || c == '^' || c == '+') {
            const WORD modifier = c == '%' ? VK_MENU : c == '^' ? VK_CONTROL : VK_SHIFT;
            press(inputs, modifier, false);
            held.push_back(modifier);
            continue;
        }
        WORD key = 0;
        if (c == '{') {
            const std::size_t end = keys.find('}', i + 1);
            if (end == std::string_view::npos)
                break;
            key = namedKey(keys.substr(i + 1, end - i - 1));
            i = end;
        } else {
            key = LOBYTE(VkKeyScanA(c));
        }
        if (key != 0) {
            press(inputs, key, false);
            press(inputs, key, true);
        }
        // A modifier applies to the one key that follows it.
        for (auto it = held.rbegin(); it != held.rend(); ++it)
            press(inputs, *it, true);
        held.clear();
    }
    if (!inputs.empty())
        SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
}

} // namespace pl::winui
