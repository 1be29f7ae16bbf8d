#include "ui/win32/win32_view.h"

#include "assistant/resident_form.h"
#include "dialog/job_dialog_host.h"
#include "dialog/sort/sort_form.h"
#include "ui/win32/common_dialogs.h"
#include "ui/win32/job_dialog_window.h"
#include "ui/win32/resident_window.h"
#include "ui/win32/sort_window.h"

#include <algorithm>

namespace pl::winui {

Win32View::Win32View(HICON icon, std::string programName) : icon_(icon), programName_(std::move(programName)) {
    loop_.setFilter([this](MSG& msg) { return filter(msg); });
    loop_.setBetweenMessages([this] { releaseRetired(); });
    addWindowFactory([this](forms::Form& f) -> std::unique_ptr<FormWindow> {
        auto* sort = dynamic_cast<dialog::SortForm*>(&f);
        if (sort == nullptr)
            return nullptr;
        return std::make_unique<SortWindow>(*sort, icon_, activeOwner());
    });
}

Win32View::~Win32View() {
    for (auto& [form, w] : windows_)
        w->detach();
    windows_.clear();
    retired_.clear();
}

void Win32View::addWindowFactory(WindowFactory factory) {
    factories_.push_back(std::move(factory));
}

void Win32View::bindResident(assistant::ResidentForm& form, std::function<void()> whenUnloaded) {
    resident_ = &form;
    addWindowFactory([this, &form, whenUnloaded](forms::Form& f) -> std::unique_ptr<FormWindow> {
        if (&f != &form)
            return nullptr;
        return std::make_unique<ResidentWindow>(form, icon_, whenUnloaded);
    });
}

void Win32View::bindJobDialogs(dialog::JobDialogSlot& slot) {
    addWindowFactory([this, &slot](forms::Form& f) -> std::unique_ptr<FormWindow> {
        dialog::JobDialog* current = slot.current();
        if (current == nullptr || &current->form() != &f)
            return nullptr;
        return std::make_unique<JobDialogWindow>(*current, icon_);
    });
}

FormWindow* Win32View::windowOf(const forms::Form& form) const {
    const auto found = windows_.find(&form);
    return found == windows_.end() ? nullptr : found->second.get();
}

FormWindow* Win32View::window(forms::Form& form, bool make) {
    if (FormWindow* existing = windowOf(form))
        return existing;
    if (!make)
        return nullptr;
    for (const auto& factory : factories_) {
        if (auto made = factory(form)) {
            FormWindow* w = made.get();
            windows_[&form] = std::move(made);
            w->redraw();
            return w;
        }
    }
    return nullptr;
}

ResidentWindow* Win32View::residentWindow() {
    return resident_ ? static_cast<ResidentWindow*>(window(*resident_, true)) : nullptr;
}

HWND Win32View::activeOwner() const {
    HWND active = GetActiveWindow();
    for (const auto& [form, w] : windows_)
        if (w->handle() == active && IsWindowVisible(active))
            return active;
    return nullptr;
}

bool Win32View::filter(MSG& msg) {
    if (msg.hwnd == nullptr || msg.message < WM_KEYFIRST || msg.message > WM_KEYLAST)
        return false;
    HWND root = GetAncestor(msg.hwnd, GA_ROOT);
    FormWindow* target = nullptr;
    for (const auto& [form, w] : windows_)
        if (w->handle() == root)
            target = w.get();
    if (target == nullptr || !target->attached())
        return false;
    if (msg.message == WM_KEYDOWN || msg.message == WM_SYSKEYDOWN) {
        const bool alt = msg.message == WM_SYSKEYDOWN ? (msg.lParam & (1 << 29)) != 0 : GetKeyState(VK_MENU) < 0;
        const int shift = (GetKeyState(VK_SHIFT) < 0 ? 1 : 0) | (GetKeyState(VK_CONTROL) < 0 ? 2 : 0) | (alt ? 4 : 0);
        if (target->previewKey(static_cast<int>(msg.wParam), shift))
            return true;
        if (!target->attached())
            return true;
        // Enter in a text box is the box's own key (its KeyPress), not the dialog's default button.
        if (msg.wParam == VK_RETURN && className(msg.hwnd) == "Edit")
            return false;
    }
    return IsDialogMessageA(root, &msg) != FALSE;
}

void Win32View::releaseRetired() {
    retired_.erase(std::remove_if(retired_.begin(), retired_.end(), [](const auto& w) { return !w->busy(); }),
                   retired_.end());
}

int Win32View::msgBox(std::string_view prompt, int style, std::string_view title) {
    return showMessageBox(activeOwner(), prompt, style, title.empty() ? std::string_view(programName_) : title);
}

std::optional<std::string> Win32View::askSaveFileName(const forms::SaveDialogRequest& request) {
    return winui::askSaveFileName(activeOwner(), request);
}

std::string Win32View::clipboardText() {
    return winui::clipboardText(nullptr);
}

void Win32View::setClipboardText(std::string_view text) {
    winui::setClipboardText(nullptr, text);
}

void Win32View::addTrayIcon(std::string_view tip) {
    if (ResidentWindow* resident = residentWindow())
        resident->tray().add(tip);
}

void Win32View::removeTrayIcon() {
    if (resident_ == nullptr)
        return;
    if (auto* resident = static_cast<ResidentWindow*>(windowOf(*resident_)))
        resident->tray().remove();
}

void Win32View::showPopupMenu(forms::Form& form, std::string_view menu) {
    if (FormWindow* w = window(form, true))
        w->showPopupMenu(menu);
}

void Win32View::show(forms::Form& form) {
    form.visible = true;
    FormWindow* w = window(form, true);
    if (w == nullptr)
        return;
    w->redraw();
    ShowWindow(w->handle(), form.windowState == forms::Minimized ? SW_SHOWMINIMIZED : SW_SHOWNORMAL);
}

void Win32View::hide(forms::Form& form) {
    form.visible = false;
    if (FormWindow* w = windowOf(form))
        ShowWindow(w->handle(), SW_HIDE);
}

void Win32View::unload(forms::Form& form) {
    form.visible = false;
    const auto found = windows_.find(&form);
    if (found == windows_.end())
        return;
    std::unique_ptr<FormWindow> w = std::move(found->second);
    windows_.erase(found);
    // The unloading may come from one of the window's own procedures: the window stops forwarding
    // at once and goes away when none of them runs any more.
    w->detach();
    ShowWindow(w->handle(), SW_HIDE);
    retired_.push_back(std::move(w));
}

void Win32View::bringToFront(forms::Form& form) {
    FormWindow* w = windowOf(form);
    if (w == nullptr || !IsWindowVisible(w->handle()))
        return;
    // In front of every window for a moment, then released, so that it does not stay on top.
    constexpr UINT flags = SWP_NOMOVE | SWP_NOSIZE;
    SetWindowPos(w->handle(), HWND_TOPMOST, 0, 0, 0, 0, flags);
    doEvents();
    if (windowOf(form) == w)
        SetWindowPos(w->handle(), HWND_NOTOPMOST, 0, 0, 0, 0, flags);
}

void Win32View::setFocus(forms::Form& form, std::string_view control) {
    form.focused = std::string(control);
    if (FormWindow* w = windowOf(form))
        w->focusControl(control);
}

void Win32View::refresh(forms::Form& form) {
    if (FormWindow* w = windowOf(form))
        w->redraw();
}

void Win32View::doEvents() {
    loop_.pumpPending();
}

void Win32View::sendKeys(std::string_view keys) {
    winui::sendKeys(keys);
}

int Win32View::twipsPerPixel() const {
    return twipsPerPixelAt(dpiOf(nullptr));
}

void Win32View::hideFromTaskbar(forms::Form& form) {
    form.visible = false;
    FormWindow* w = window(form, true);
    if (w == nullptr)
        return;
    if (HWND owner = GetWindow(w->handle(), GW_OWNER))
        ShowWindow(owner, SW_HIDE);
    ShowWindow(w->handle(), SW_HIDE);
}

void Win32View::showModal(forms::Form& form) {
    form.visible = true;
    FormWindow* w = window(form, true);
    if (w == nullptr)
        return;
    // The other forms take no input while this one is up.
    std::vector<HWND> disabled;
    for (const auto& [other, ow] : windows_) {
        if (ow.get() != w && IsWindowEnabled(ow->handle()) && IsWindowVisible(ow->handle())) {
            EnableWindow(ow->handle(), FALSE);
            disabled.push_back(ow->handle());
        }
    }
    w->redraw();
    ShowWindow(w->handle(), SW_SHOWNORMAL);
    SetForegroundWindow(w->handle());
    loop_.runUntil([&] { return windowOf(form) != w || !form.visible; });
    for (HWND h : disabled)
        if (IsWindow(h))
            EnableWindow(h, TRUE);
}

} // namespace pl::winui
