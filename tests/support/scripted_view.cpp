#include "support/scripted_view.h"

namespace pl::test {

int ScriptedView::msgBox(std::string_view prompt, int style, std::string_view title) {
    messages.push_back({std::string(prompt), style, std::string(title)});
    if (!msgBoxAnswers.empty()) {
        const int answer = msgBoxAnswers.front();
        msgBoxAnswers.pop_front();
        return answer;
    }
    switch (style & 0x0F) {
    case mb::AbortRetryIgnore: return mb::Abort;
    case mb::YesNoCancel:
    case mb::YesNo: return mb::Yes;
    case mb::RetryCancel: return mb::Retry;
    default: return mb::Ok;
    }
}

std::optional<std::string> ScriptedView::askSaveFileName(const forms::SaveDialogRequest& request) {
    saveRequests.push_back(request);
    if (saveAnswers.empty())
        return std::nullopt;
    auto answer = saveAnswers.front();
    saveAnswers.pop_front();
    return answer;
}

void ScriptedView::addTrayIcon(std::string_view tip) {
    trayIconShown = true;
    trayTip = std::string(tip);
    events.push_back("tray add " + trayTip);
}

void ScriptedView::removeTrayIcon() {
    trayIconShown = false;
    events.push_back("tray remove");
}

void ScriptedView::showPopupMenu(forms::Form& form, std::string_view menu) {
    events.push_back("popup " + form.name() + " " + std::string(menu));
}

void ScriptedView::show(forms::Form& form) {
    form.visible = true;
    events.push_back("show " + form.name());
}

void ScriptedView::hide(forms::Form& form) {
    form.visible = false;
    events.push_back("hide " + form.name());
}

void ScriptedView::unload(forms::Form& form) {
    form.visible = false;
    events.push_back("unload " + form.name());
}

void ScriptedView::bringToFront(forms::Form& form) { events.push_back("front " + form.name()); }

void ScriptedView::setFocus(forms::Form& form, std::string_view control) {
    form.focused = std::string(control);
    events.push_back("focus " + form.name() + " " + std::string(control));
}

bool ScriptedView::saw(std::string_view prefix) const {
    for (const auto& e : events)
        if (std::string_view(e).starts_with(prefix))
            return true;
    return false;
}

} // namespace pl::test
