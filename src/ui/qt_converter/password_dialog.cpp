#include "ui/qt_converter/password_dialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace pl::converter {

PasswordDialog::PasswordDialog(const QString& documentName, QWidget* parent)
    : QDialog(parent), password_(new QLineEdit(this)), repeat_(new QLineEdit(this)),
      buttons_(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this)) {
    setWindowTitle(QStringLiteral("Paperlark"));
    password_->setEchoMode(QLineEdit::Password);
    repeat_->setEchoMode(QLineEdit::Password);

    auto* intro = new QLabel(tr("Lock PDF with Password:\n%1").arg(documentName), this);
    auto* fields = new QFormLayout;
    fields->addRow(tr("Password:"), password_);
    fields->addRow(tr("Repeat password:"), repeat_);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(intro);
    layout->addLayout(fields);
    layout->addWidget(buttons_);

    connect(password_, &QLineEdit::textChanged, this, [this] { updateState(); });
    connect(repeat_, &QLineEdit::textChanged, this, [this] { updateState(); });
    connect(buttons_, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
    updateState();
}

QString PasswordDialog::password() const {
    return password_->text();
}

void PasswordDialog::updateState() {
    const bool usable = !password_->text().isEmpty() && password_->text() == repeat_->text();
    buttons_->button(QDialogButtonBox::Ok)->setEnabled(usable);
}

} // namespace pl::converter
