// The resident form's view: the tray icon's clicks decoded by the form's own table, the pop-up menu
// and its item, and the hidden form's refusal to be closed.

#include "assistant/resident_form.h"
#include "dialog/job_dialog_host.h"
#include "qt_world.h"
#include "ui/qt/resident_view.h"

#include <QMenu>
#include <QTest>

using namespace pl;
using namespace pl::test;

namespace {

// The resident form loaded from a real registry store, with real job dialogs behind it.
struct ResidentScene {
    ResidentScene() : dialogs(*world.context), resident(*world.context, dialogs) {
        world.setMachine("psdir", world.machineSpool);
        world.setUser("psdir", world.userSpool);
        world.view.bindResident(resident, [this] { ++unloads; });
        world.view.bindJobDialogs(dialogs);
        resident.Form_Load();
    }
    ~ResidentScene() { world.state.DialogActive = false; }

    qtui::QtResidentView* window() { return world.view.residentWindow(); }
    void click(qtui::QtResidentView& on, QSystemTrayIcon::ActivationReason reason) {
        emit on.tray().icon()->activated(reason);
    }
    // Ticks of the watcher until the tray icon is up for the queued documents.
    bool trayShown() {
        for (int i = 0; i < 3 && !window()->tray().isShown(); ++i)
            resident.Timer1_Timer();
        return window()->tray().isShown();
    }

    QtWorld world;
    dialog::JobDialogSlot dialogs;
    assistant::ResidentForm resident;
    int unloads = 0;
};

QMenu* shownMenu(qtui::QtResidentView& window) {
    QMenu* menu = window.popupMenu();
    return menu != nullptr && menu->isVisible() ? menu : nullptr;
}

} // namespace

class ResidentViewTest : public QObject {
    Q_OBJECT
private slots:
    void tray_clicks_open_the_menu_and_its_item_turns_the_queue_into_a_job();
    void closing_the_hidden_form_is_refused_unless_citrix_unload_is_set();
};

void ResidentViewTest::tray_clicks_open_the_menu_and_its_item_turns_the_queue_into_a_job() {
    ResidentScene scene;
    QCOMPARE(scene.window()->twipsPerPixel(), 15); // the offscreen screen has 96 dots per inch
    scene.world.writeJob(scene.world.userSpool, "MultiDocanna1.ps", "Queued letter");
    QVERIFY(scene.trayShown());
    QCOMPARE(scene.window()->tray().icon()->toolTip(), QString::fromStdString(scene.world.texts.text(13)));

    scene.click(*scene.window(), QSystemTrayIcon::Trigger);
    QVERIFY(shownMenu(*scene.window()) != nullptr); // a left click opens the menu at 15
    scene.window()->popupMenu()->close();
    // A tray drawn on a large-font screen: 12 twips per pixel, where the form knows no left button
    // press. The menu itself is the form's, wherever the click came from.
    qtui::QtResidentView large(scene.resident, 12);
    large.tray().add(QStringLiteral("tip"));
    scene.click(large, QSystemTrayIcon::Trigger);
    QVERIFY(shownMenu(*scene.window()) == nullptr);
    scene.click(large, QSystemTrayIcon::Context);
    QVERIFY(shownMenu(*scene.window()) != nullptr);
    scene.window()->popupMenu()->close();
    QVERIFY(scene.world.exists(scene.world.userSpool + "MultiDocanna1.ps")); // nothing was chosen

    scene.click(*scene.window(), QSystemTrayIcon::Context);
    QMenu* menu = shownMenu(*scene.window());
    QVERIFY(menu != nullptr);
    QCOMPARE(menu->actions().size(), 1);
    QAction* item = menu->actions().first();
    QCOMPARE(item->text(), QString::fromStdString(scene.world.texts.text(13)));
    QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(item).center());

    QVERIFY(!scene.world.exists(scene.world.userSpool + "MultiDocanna1.ps"));
    QVERIFY(scene.world.exists(scene.world.userSpool + "anna000001.ps"));
    QVERIFY(!scene.window()->tray().isShown());
    QCOMPARE(scene.world.state.TrayCheck, 2);

    // The next tick finds the new job and opens the dialog for it.
    scene.resident.Timer1_Timer();
    QVERIFY(scene.dialogs.current() != nullptr);
    QVERIFY(scene.world.state.DialogActive);
    QCOMPARE(scene.world.state.PsFile, std::string("anna000001.ps"));
    qtui::QtFormWindow* dialog = scene.world.view.windowOf(scene.dialogs.current()->form());
    QVERIFY(dialog != nullptr && dialog->isVisible());
    QCOMPARE(QString::fromStdString(scene.world.errorList()), QString());
}

void ResidentViewTest::closing_the_hidden_form_is_refused_unless_citrix_unload_is_set() {
    ResidentScene scene;
    QVERIFY(!scene.window()->close());
    QCOMPARE(scene.unloads, 0);
    QVERIFY(!scene.world.state.quitRequested);

    scene.world.state.CitrixUnload = true;
    QVERIFY(scene.window()->close());
    QCOMPARE(scene.unloads, 1);
}

QTEST_MAIN(ResidentViewTest)
#include "resident_view_test.moc"
