#include "ui/qt_converter/password_dialog.h"

#include "texts/notice_texts.h"
#include "ui/qt_converter/window_placement.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace pl::converter {

namespace {

QString text(int language, texts::Notice id, const QString& value = {}) {
    return QString::fromStdString(texts::noticeText(language, id, value.toStdString()));
}

} // namespace

PasswordDialog::PasswordDialog(const QString& documentName, int language, QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint), password_(new QLineEdit(this)),
      repeat_(new QLineEdit(this)), mismatch_(new QLabel(text(language, texts::Notice::PasswordsDiffer), this)),
      buttons_(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this)) {
    setWindowTitle(QStringLiteral("Paperlark"));
    password_->setEchoMode(QLineEdit::Password);
    repeat_->setEchoMode(QLineEdit::Password);
    buttons_->button(QDialogButtonBox::Cancel)->setText(text(language, texts::Notice::Cancel));

    auto* intro = new QLabel(text(language, texts::Notice::PasswordIntro, documentName), this);
    auto* fields = new QFormLayout;
    fields->addRow(text(language, texts::Notice::Password), password_);
    fields->addRow(text(language, texts::Notice::RepeatPassword), repeat_);
    QPalette warning = mismatch_->palette();
    warning.setColor(QPalette::WindowText, Qt::darkRed);
    mismatch_->setPalette(warning);
    // The space stays reserved, so that the dialog does not jump when the hint comes and goes.
    QSizePolicy keepSpace = mismatch_->sizePolicy();
    keepSpace.setRetainSizeWhenHidden(true);
    mismatch_->setSizePolicy(keepSpace);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(intro);
    layout->addLayout(fields);
    layout->addWidget(mismatch_);
    layout->addWidget(buttons_);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    connect(password_, &QLineEdit::textChanged, this, [this] { updateState(); });
    connect(repeat_, &QLineEdit::textChanged, this, [this] { updateState(); });
    connect(buttons_, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
    updateState();
    centreOnMouseScreen(*this);
}

QString PasswordDialog::password() const {
    return password_->text();
}

void PasswordDialog::updateState() {
    const bool same = password_->text() == repeat_->text();
    buttons_->button(QDialogButtonBox::Ok)->setEnabled(same && !password_->text().isEmpty());
    // Only once the second field has something in it: while it is still empty nothing is wrong yet.
    mismatch_->setVisible(!same && !repeat_->text().isEmpty());
}

} // namespace pl::converter
