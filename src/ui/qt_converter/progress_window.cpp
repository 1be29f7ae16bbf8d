#include "ui/qt_converter/progress_window.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace pl::converter {

ProgressWindow::ProgressWindow(const QString& heading, const QString& cancelLabel, QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint | Qt::WindowTitleHint | Qt::CustomizeWindowHint),
      heading_(new QLabel(heading, this)), status_(new QLabel(this)), cancel_(new QPushButton(cancelLabel, this)) {
    setWindowTitle(QStringLiteral("Paperlark"));
    auto* busy = new QProgressBar(this);
    busy->setRange(0, 0); // the page count is not known in advance
    busy->setTextVisible(false);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cancel_);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(heading_);
    layout->addWidget(busy);
    layout->addWidget(status_);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    status_->setMinimumWidth(fontMetrics().averageCharWidth() * 40);
    connect(cancel_, &QPushButton::clicked, this, [this] { reject(); });
}

void ProgressWindow::setStatus(const QString& status) {
    if (status_->text() != status)
        status_->setText(status);
}

void ProgressWindow::reject() {
    cancelled_ = true;
    cancel_->setEnabled(false);
}

} // namespace pl::converter
