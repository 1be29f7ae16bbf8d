#pragma once
// A job dialog on screen: a job of anna in the user spool folder, the dialog loaded for it through
// the real Qt view, and its window at hand.

#include "dialog/job_dialog.h"
#include "qt_world.h"
#include "ui/qt/job_dialog_view.h"

#include <QWidget>

#include <memory>
#include <string>

namespace pl::test {

class DialogScene {
public:
    explicit DialogScene(dialog::DialogActionsFactory actions = dialog::noActions);
    ~DialogScene();

    // Loads the dialog for the offered job (see QtWorld::offerJob) and waits until its window is
    // shown and active.
    bool open();
    // The same for a new job "anna0001.ps" in the user spool folder whose title is `title`.
    bool openJob(const std::string& title);

    forms::Control& control(const std::string& name) { return dialog->control(name); }
    qtui::QtFormWindow* window() const { return world.view.windowOf(dialog->form()); }
    template <class W> W* widget(const std::string& name) const {
        return window() ? qobject_cast<W*>(window()->controlWidget(name)) : nullptr;
    }

    QtWorld world;
    dialog::DialogActionsFactory makeActions;
    std::unique_ptr<dialog::JobDialog> dialog;
};

} // namespace pl::test
