#pragma once
// The system's own boxes and services, as the form models ask for them: message boxes with the
// classic style and result codes (they are the platform's own numbers), the common save dialog,
// the clipboard's text and keystrokes sent to the active window.

#include "forms/view.h"

#include "ui/win32/win32_api.h"

#include <optional>
#include <string>
#include <string_view>

namespace pl::winui {

// The classic style goes to MessageBox as it is; its answer is the classic result code.
int showMessageBox(HWND owner, std::string_view prompt, int style, std::string_view title);

// The classic filter "PDF (*.pdf)|*.pdf" as the common dialog takes it: every "|" a zero
// character, the whole ended by two.
std::string commonDialogFilter(std::string_view classicFilter);
// The flags the request asks for: overwrite prompt 2, path must exist 2048.
DWORD saveDialogFlags(const forms::SaveDialogRequest& request);
std::optional<std::string> askSaveFileName(HWND owner, const forms::SaveDialogRequest& request);

std::string clipboardText(HWND owner);
// Empty text empties the clipboard.
void setClipboardText(HWND owner, std::string_view text);

// Keystrokes in the classic notation ("%{TAB}": Alt+Tab; "+" Shift, "^" Ctrl, "%" Alt before a key).
void sendKeys(std::string_view keys);

} // namespace pl::winui
