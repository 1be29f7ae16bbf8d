#pragma once
// The small dialog that asks for the password of a protected PDF. The password is typed twice:
// a typing mistake would otherwise lock the user out of the document for good.

#include <QDialog>

class QDialogButtonBox;
class QLineEdit;

namespace pl::converter {

class PasswordDialog : public QDialog {
public:
    explicit PasswordDialog(const QString& documentName, QWidget* parent = nullptr);

    QString password() const;
    QLineEdit* passwordField() const { return password_; }
    QLineEdit* repeatField() const { return repeat_; }
    QDialogButtonBox* buttons() const { return buttons_; }

private:
    void updateState();

    QLineEdit* password_;
    QLineEdit* repeat_;
    QDialogButtonBox* buttons_;
};

} // namespace pl::converter
