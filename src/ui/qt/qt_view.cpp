#include "ui/qt/qt_view.h"

#include "assistant/resident_form.h"
#include "dialog/job_dialog_host.h"
#include "dialog/sort/sort_form.h"
#include "ui/qt/job_dialog_view.h"
#include "ui/qt/message_boxes.h"
#include "ui/qt/resident_view.h"
#include "ui/qt/save_dialog.h"
#include "ui/qt/sort_view.h"
#include "ui/qt/twips.h"

#include <QApplication>
#include <QClipboard>
#include <QEventLoop>

namespace pl::qtui {

QtView::QtView(QString programName) : programName_(std::move(programName)) {
    addWindowFactory([](forms::Form& f, int tpp) -> QtFormWindow* {
        auto* sort = dynamic_cast<dialog::SortForm*>(&f);
        return sort ? new QtSortView(*sort, tpp) : nullptr;
    });
}

QtView::~QtView() {
    for (auto& [form, window] : windows_)
        delete window.data();
}

void QtView::addWindowFactory(WindowFactory factory) {
    factories_.push_back(std::move(factory));
}

void QtView::bindResident(assistant::ResidentForm& form, std::function<void()> whenUnloaded) {
    resident_ = &form;
    addWindowFactory([&form, whenUnloaded](forms::Form& f, int tpp) -> QtFormWindow* {
        if (&f != &form)
            return nullptr;
        auto* window = new QtResidentView(form, tpp);
        if (whenUnloaded)
            QObject::connect(window, &QtResidentView::unloaded, window, whenUnloaded);
        return window;
    });
}

void QtView::bindJobDialogs(dialog::JobDialogSlot& slot) {
    addWindowFactory([&slot](forms::Form& f, int tpp) -> QtFormWindow* {
        dialog::JobDialog* current = slot.current();
        if (current == nullptr || &current->form() != &f)
            return nullptr;
        return new QtJobDialogView(*current, tpp);
    });
}

void QtView::bindJobDialog(dialog::JobDialog& dialog) {
    addWindowFactory([&dialog](forms::Form& f, int tpp) -> QtFormWindow* {
        return &dialog.form() == &f ? new QtJobDialogView(dialog, tpp) : nullptr;
    });
}

QtFormWindow* QtView::windowOf(const forms::Form& form) const {
    const auto found = windows_.find(&form);
    return found == windows_.end() ? nullptr : found->second.data();
}

QtFormWindow* QtView::window(forms::Form& form, bool make) {
    if (QtFormWindow* existing = windowOf(form))
        return existing;
    if (!make)
        return nullptr;
    const int tpp = twipsPerPixel();
    for (const auto& factory : factories_) {
        if (QtFormWindow* made = factory(form, tpp)) {
            windows_[&form] = made;
            made->redraw();
            return made;
        }
    }
    return nullptr;
}

QtResidentView* QtView::residentWindow() {
    return resident_ ? static_cast<QtResidentView*>(window(*resident_, true)) : nullptr;
}

int QtView::msgBox(std::string_view prompt, int style, std::string_view title) {
    return showMessageBox(QApplication::activeWindow(), prompt, style, title, programName_);
}

std::optional<std::string> QtView::askSaveFileName(const forms::SaveDialogRequest& request) {
    return qtui::askSaveFileName(QApplication::activeWindow(), request);
}

std::string QtView::clipboardText() {
    return QGuiApplication::clipboard()->text().toStdString();
}

void QtView::setClipboardText(std::string_view text) {
    QClipboard* clipboard = QGuiApplication::clipboard();
    if (text.empty())
        clipboard->clear();
    else
        clipboard->setText(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
}

void QtView::addTrayIcon(std::string_view tip) {
    if (QtResidentView* resident = residentWindow())
        resident->tray().add(QString::fromUtf8(tip.data(), static_cast<qsizetype>(tip.size())));
}

void QtView::removeTrayIcon() {
    if (resident_ == nullptr)
        return;
    if (auto* resident = static_cast<QtResidentView*>(windowOf(*resident_)))
        resident->tray().remove();
}

void QtView::showPopupMenu(forms::Form& form, std::string_view menu) {
    if (QtFormWindow* w = window(form, true))
        w->showPopupMenu(menu);
}

void QtView::show(forms::Form& form) {
    form.visible = true;
    QtFormWindow* w = window(form, true);
    if (w == nullptr)
        return;
    w->redraw();
    if (form.windowState == forms::Minimized)
        w->showMinimized();
    else
        w->showNormal();
}

void QtView::hide(forms::Form& form) {
    form.visible = false;
    if (QtFormWindow* w = windowOf(form))
        w->hide();
}

void QtView::unload(forms::Form& form) {
    form.visible = false;
    const auto found = windows_.find(&form);
    if (found == windows_.end())
        return;
    QPointer<QtFormWindow> w = found->second;
    windows_.erase(found);
    if (!w)
        return;
    // The unloading may come from one of the window's own event handlers: the window stops
    // forwarding at once and goes away when the event loop has left it.
    w->detach();
    w->hide();
    w->deleteLater();
}

void QtView::bringToFront(forms::Form& form) {
    if (QtFormWindow* w = windowOf(form))
        w->bringToFront();
}

void QtView::setFocus(forms::Form& form, std::string_view control) {
    form.focused = std::string(control);
    if (QtFormWindow* w = windowOf(form))
        w->focusControl(control);
}

void QtView::refresh(forms::Form& form) {
    if (QtFormWindow* w = windowOf(form))
        w->redraw();
}

void QtView::doEvents() {
    QCoreApplication::processEvents();
}

void QtView::sendKeys(std::string_view) {}

int QtView::twipsPerPixel() const {
    return qtui::twipsPerPixel();
}

void QtView::showModal(forms::Form& form) {
    form.visible = true;
    QPointer<QtFormWindow> w = window(form, true);
    if (w == nullptr)
        return;
    w->setWindowModality(Qt::ApplicationModal);
    w->redraw();
    w->show();
    w->raise();
    w->activateWindow();
    if (!w->isVisible() || !w->attached())
        return;
    QEventLoop wait;
    QObject::connect(w, &QtFormWindow::dismissed, &wait, &QEventLoop::quit);
    QObject::connect(w, &QObject::destroyed, &wait, &QEventLoop::quit);
    wait.exec(QEventLoop::DialogExec);
}

void QtView::hideFromTaskbar(forms::Form& form) {
    form.visible = false;
    if (QtFormWindow* w = window(form, true))
        w->hide();
}

} // namespace pl::qtui
