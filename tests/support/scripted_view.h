#pragma once
// A View for tests: answers message boxes and save dialogs from queues the test fills, and records
// everything the behaviour code asked it to show.

#include "forms/view.h"

#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace pl::test {

class ScriptedView : public forms::View {
public:
    struct ShownMessage {
        std::string prompt;
        int style;
        std::string title;
    };

    // Answers, consumed in order. A message box with no scripted answer answers its first button
    // (Ok, or Yes for Yes/No questions); a save dialog with none is cancelled.
    std::deque<int> msgBoxAnswers;
    std::deque<std::optional<std::string>> saveAnswers;

    // What was shown.
    std::vector<ShownMessage> messages;
    std::vector<forms::SaveDialogRequest> saveRequests;
    std::vector<std::string> events; // "show plDialog1", "unload plDialog1", "tray add <tip>", ...
    bool trayIconShown = false;
    std::string trayTip;
    std::string clipboard;
    int twips = 15;

    int msgBox(std::string_view prompt, int style, std::string_view title) override;
    std::optional<std::string> askSaveFileName(const forms::SaveDialogRequest& request) override;
    std::string clipboardText() override { return clipboard; }
    void setClipboardText(std::string_view text) override { clipboard = std::string(text); }
    void addTrayIcon(std::string_view tip) override;
    void removeTrayIcon() override;
    void showPopupMenu(forms::Form& form, std::string_view menu) override;
    void show(forms::Form& form) override;
    void hide(forms::Form& form) override;
    void unload(forms::Form& form) override;
    void bringToFront(forms::Form& form) override;
    void setFocus(forms::Form& form, std::string_view control) override;
    void refresh(forms::Form&) override {}
    void doEvents() override { ++doEventsCalls; }
    void sendKeys(std::string_view keys) override { events.push_back("keys " + std::string(keys)); }
    int twipsPerPixel() const override { return twips; }

    int doEventsCalls = 0;
    // Whether an event line starting with `prefix` was recorded.
    bool saw(std::string_view prefix) const;
};

} // namespace pl::test
