#include "ui/qt_converter/notice_window.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace pl::converter {

namespace {

QString fromUtf8(const std::string& text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

NoticeWindow::NoticeWindow(const Announcement& announcement, QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint),
      open_(new QPushButton(fromUtf8(announcement.openLabel), this)),
      folder_(new QPushButton(fromUtf8(announcement.folderLabel), this)),
      close_(new QPushButton(fromUtf8(announcement.closeLabel), this)) {
    setWindowTitle(QStringLiteral("Paperlark"));
    auto* text = new QLabel(fromUtf8(announcement.text), this);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(open_);
    buttons->addWidget(folder_);
    buttons->addWidget(close_);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(text);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    open_->setDefault(true);

    connect(open_, &QPushButton::clicked, this, [this] {
        answer_ = NoticeAnswer::OpenFile;
        accept();
    });
    connect(folder_, &QPushButton::clicked, this, [this] {
        answer_ = NoticeAnswer::ShowFolder;
        accept();
    });
    connect(close_, &QPushButton::clicked, this, &QDialog::reject);
}

} // namespace pl::converter
