#include "ui/qt/sort_view.h"

#include "ui/qt/app_icon.h"
#include "ui/qt/background.h"
#include "ui/qt/key_codes.h"
#include "ui/qt/twips.h"

#include <QCloseEvent>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>

namespace pl::qtui {

namespace {

constexpr Qt::WindowFlags SortFlags =
    Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint;

const FormFrame SortFrame{dialog::sort_layout::FrameWidth, dialog::sort_layout::FrameHeight};

} // namespace

QtSortView::QtSortView(dialog::SortForm& form, int twipsPerPixel)
    : QtFormWindow(form, twipsPerPixel, SortFrame, SortFlags), sort_(form) {
    setWindowIcon(appIcon());
    setResizable(true);
    setMinimumSize(toPixels(dialog::sort_layout::MinimumWidth - SortFrame.width, twipsPerPixel),
                   toPixels(dialog::sort_layout::MinimumHeight - SortFrame.height, twipsPerPixel));

    // Plain calls rather than a table of member-function pointers: the undefined-behaviour
    // sanitizer of our compiler checks such calls against the wrong object.
    const auto onClick = [this](const char* name, auto procedure) {
        if (auto* button = qobject_cast<QPushButton*>(controlWidget(name)))
            connect(button, &QPushButton::clicked, this, [this, procedure] { forward(procedure); });
    };
    onClick("cmdUp", [this] { sort_.cmdUp_Click(); });
    onClick("cmdDown", [this] { sort_.cmdDown_Click(); });
    onClick("cmdOK", [this] { sort_.cmdOK_Click(); });
    onClick("cmdCancel", [this] { sort_.cmdCancel_Click(); });
    onClick("cmdHelp", [this] { sort_.cmdHelp_Click(); });

    if (auto* list = qobject_cast<QListWidget*>(controlWidget("lstDocuments")))
        connect(list, &QListWidget::currentRowChanged, this, [this](int row) {
            if (attached() && !redrawing())
                sort_.control("lstDocuments").value = row;
        });
}

QtSortView::~QtSortView() = default;

void QtSortView::paintEvent(QPaintEvent*) {
    if (!attached())
        return;
    QPainter painter(this);
    paintBackground(painter, *this, sort_.background(), model().backColor, model().height - SortFrame.height,
                    twipsPerPixel());
}

void QtSortView::resizeEvent(QResizeEvent* event) {
    QtFormWindow::resizeEvent(event);
    if (!attached() || redrawing())
        return;
    // Only a size the model does not have yet is news to it (the model's twips need not fall on
    // whole pixels).
    const int tpp = twipsPerPixel();
    auto& form = model();
    const QSize modelled(toPixels(form.width - SortFrame.width, tpp), toPixels(form.height - SortFrame.height, tpp));
    if (size() == modelled)
        return;
    form.width = toTwips(width(), tpp) + SortFrame.width;
    form.height = toTwips(height(), tpp) + SortFrame.height;
    forward([&] { sort_.Form_Resize(); });
}

void QtSortView::closeEvent(QCloseEvent* event) {
    event->ignore(); // the window goes when the form is unloaded
    forward([&] { sort_.Unload(); });
}

bool QtSortView::previewKey(QWidget*, QKeyEvent& event) {
    int keyCode = classicKeyCode(event);
    if (keyCode == 0)
        return false;
    forward([&] { sort_.Form_KeyDown(keyCode, classicShift(event.modifiers())); });
    return !attached() || keyCode == 0;
}

} // namespace pl::qtui
