#pragma once
// The view of the MultiDoc sort dialog frmSort: the list of queued documents, its buttons, the
// background of the job dialog's look, and a window the user may resize, whose new size the form
// hears of.

#include "dialog/sort/sort_form.h"
#include "ui/qt/form_window.h"

namespace pl::qtui {

class QtSortView final : public QtFormWindow {
    Q_OBJECT
public:
    QtSortView(dialog::SortForm& form, int twipsPerPixel);
    ~QtSortView() override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    // The close button unloads the form, as its Cancel button does.
    void closeEvent(QCloseEvent* event) override;
    bool previewKey(QWidget* control, QKeyEvent& event) override;

private:
    dialog::SortForm& sort_;
};

} // namespace pl::qtui
