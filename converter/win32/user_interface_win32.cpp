#include "converter/user_interface.h"

#include "converter/win32/password_dialog.h"
#include "converter/win32/wide_text.h"

#include <windows.h>

namespace pl::converter {

namespace {

class Win32Interface final : public UserInterface {
public:
    bool canAsk() const override { return true; }

    void showError(std::string_view message) override {
        MessageBoxW(nullptr, win32::wide(message).c_str(), L"Paperlark",
                    MB_OK | MB_ICONEXCLAMATION | MB_SETFOREGROUND | MB_TOPMOST);
    }

    std::optional<std::string> askPassword(std::string_view documentName) override {
        return win32::askPasswordDialog(documentName);
    }
};

// A converter started by a service or a scheduled task runs in a window station that nobody sees;
// a dialog there would wait for an answer nobody can give.
bool somebodyCanSee() {
    USEROBJECTFLAGS flags{};
    DWORD needed = 0;
    return GetUserObjectInformationW(GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof flags, &needed) &&
           (flags.dwFlags & WSF_VISIBLE) != 0;
}

} // namespace

std::unique_ptr<UserInterface> makeUserInterface(const platform::Environment&) {
    if (somebodyCanSee())
        return std::make_unique<Win32Interface>();
    return makeConsoleInterface();
}

} // namespace pl::converter
