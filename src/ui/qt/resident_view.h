#pragma once
// The view of the resident form frmPlAssist1: a window that is never shown, the tray icon whose
// clicks reach the form as the mouse messages of its hidden text box, and the form's pop-up menu.

#include "assistant/resident_form.h"
#include "ui/qt/form_window.h"
#include "ui/qt/tray.h"

#include <QMenu>

#include <memory>
#include <string_view>

namespace pl::qtui {

class QtResidentView final : public QtFormWindow {
    Q_OBJECT
public:
    QtResidentView(assistant::ResidentForm& form, int twipsPerPixel);
    ~QtResidentView() override;

    QtTray& tray() { return tray_; }
    // The model asks for the menu `menu`: its items as the model has them, at the mouse.
    void showPopupMenu(std::string_view menu) override;
    // The menu shown last; null before the first.
    QMenu* popupMenu() const { return menu_.get(); }

signals:
    // The form let itself be closed: the program ends with it.
    void unloaded();

protected:
    bool previewKey(QWidget* control, QKeyEvent& event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void trayMessage(int message);
    void menuItemChosen(const std::string& name);

    assistant::ResidentForm& resident_;
    QtTray tray_;
    std::unique_ptr<QMenu> menu_;
};

} // namespace pl::qtui
