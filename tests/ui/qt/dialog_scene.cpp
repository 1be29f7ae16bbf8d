#include "dialog_scene.h"

#include <QTest>

namespace pl::test {

DialogScene::DialogScene(dialog::DialogActionsFactory actions) : makeActions(std::move(actions)) {}

DialogScene::~DialogScene() {
    if (dialog)
        dialog->Unload(dialog::unload_mode::AppWindows);
}

bool DialogScene::open() {
    dialog = std::make_unique<dialog::JobDialog>(*world.context, makeActions);
    world.view.bindJobDialog(*dialog);
    dialog->Load();
    qtui::QtFormWindow* w = window();
    if (w == nullptr || !QTest::qWaitForWindowExposed(w))
        return false;
    w->activateWindow();
    return QTest::qWaitForWindowActive(w);
}

bool DialogScene::openJob(const std::string& title) {
    world.writeJob(world.userSpool, "anna0001.ps", title);
    world.offerJob(world.userSpool, "anna0001.ps");
    return open();
}

} // namespace pl::test
