// The name box pdfName: what may be typed into it, what a paste puts into it, and the selection
// that lets the user overwrite the proposed name at once.

#include "dialog/name_box.h"

#include "base/text.h"
#include "dialog/job_dialog.h"
#include "naming/title_cleanup.h"

namespace pl::dialog {

std::string ValidFileName(std::string_view name) {
    // Every forbidden character is ASCII, and ASCII bytes never occur inside a UTF-8 sequence, so
    // the text can be walked byte by byte.
    std::string result;
    result.reserve(name.size());
    for (char c : name)
        if (LoadTimeForbidden.find(c) == std::string_view::npos)
            result += c;
    return result;
}

bool refusedWhileTyping(int keyAscii) {
    return keyAscii > 0 && keyAscii < 128 &&
           TypingForbidden.find(static_cast<char>(keyAscii)) != std::string_view::npos;
}

std::string cleanPastedText(std::string_view text) {
    return naming::RemoveApplicationNames(text);
}

void JobDialog::pdfName_KeyPress(int& keyAscii) {
    if (refusedWhileTyping(keyAscii))
        keyAscii = 0; // silently: no sound, no message
    if (keyAscii == KeyEnter)
        actions().cmdDesktop_Click(); // Enter in the name box saves to the desktop
    if (keyAscii == KeyPaste) {
        // The key goes on afterwards, so the box pastes the cleaned text.
        const std::string cleaned = naming::RemoveApplicationNames(view().clipboardText());
        view().setClipboardText("");
        view().setClipboardText(cleaned);
    }
}

void JobDialog::pdfName_GotFocus() {
    auto& box = control("pdfName");
    box.selStart = 0;
    box.selLength = static_cast<int>(text::length(box.text));
}

} // namespace pl::dialog
