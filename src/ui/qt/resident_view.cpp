#include "ui/qt/resident_view.h"

#include "base/text.h"
#include "ui/qt/key_codes.h"

#include <QCloseEvent>
#include <QCursor>
#include <QKeyEvent>

namespace pl::qtui {

QtResidentView::QtResidentView(assistant::ResidentForm& form, int twipsPerPixel)
    : QtFormWindow(form, twipsPerPixel, FormFrame{}, Qt::Tool, ControlWidgets::None), resident_(form) {
    connect(&tray_, &QtTray::mouseMessage, this, &QtResidentView::trayMessage);
}

QtResidentView::~QtResidentView() = default;

// The form learns of tray clicks the classic way: the message number, times the screen's twips
// per pixel, in X of its text box's mouse move. Its own table decides what a click means.
void QtResidentView::trayMessage(int message) {
    forward([&] { resident_.txtTooltip_MouseMove(0, 0, static_cast<float>(message * twipsPerPixel()), 0); });
}

void QtResidentView::showPopupMenu(std::string_view menuName) {
    if (!attached())
        return;
    menu_ = std::make_unique<QMenu>();
    menu_->setObjectName(QString::fromUtf8(menuName.data(), static_cast<qsizetype>(menuName.size())));
    // A menu's items follow it in the form, up to the next menu.
    bool inMenu = false;
    for (const auto& control : model().controls()) {
        if (control.kind == forms::ControlKind::Menu) {
            inMenu = text::iequals(control.name, menuName);
            continue;
        }
        if (!inMenu || control.kind != forms::ControlKind::MenuItem || !control.visible)
            continue;
        QAction* item = menu_->addAction(QString::fromStdString(control.caption));
        item->setObjectName(QString::fromStdString(control.name));
        item->setEnabled(control.enabled);
        const std::string name = control.name;
        connect(item, &QAction::triggered, this, [this, name] { menuItemChosen(name); });
    }
    menu_->popup(QCursor::pos());
}

void QtResidentView::menuItemChosen(const std::string& name) {
    if (text::iequals(name, "mnShowPlAssist"))
        forward([&] { resident_.mnShowPlAssist_Click(); });
}

bool QtResidentView::previewKey(QWidget*, QKeyEvent& event) {
    int keyCode = classicKeyCode(event);
    if (keyCode == 0)
        return false;
    forward([&] { resident_.Form_KeyDown(keyCode, classicShift(event.modifiers())); });
    return keyCode == 0;
}

void QtResidentView::closeEvent(QCloseEvent* event) {
    int cancel = 0;
    forward([&] { resident_.Form_QueryUnload(cancel, assistant::UnloadFromControlMenu); });
    if (cancel != 0 || !attached()) {
        event->ignore();
        return;
    }
    event->accept();
    detach();
    emit unloaded();
}

} // namespace pl::qtui
