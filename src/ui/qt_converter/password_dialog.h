#pragma once
// The small dialog that asks for the password of a protected PDF. The password is typed twice:
// a typing mistake would otherwise lock the user out of the document for good, so the dialog says
// when the two differ.

#include <QDialog>

class QDialogButtonBox;
class QLabel;
class QLineEdit;

namespace pl::converter {

class PasswordDialog : public QDialog {
public:
    // `language`: German = 1, else English.
    PasswordDialog(const QString& documentName, int language, QWidget* parent = nullptr);

    QString password() const;
    QLineEdit* passwordField() const { return password_; }
    QLineEdit* repeatField() const { return repeat_; }
    QDialogButtonBox* buttons() const { return buttons_; }
    QLabel* mismatchLabel() const { return mismatch_; }

private:
    void updateState();

    QLineEdit* password_;
    QLineEdit* repeat_;
    QLabel* mismatch_;
    QDialogButtonBox* buttons_;
};

} // namespace pl::converter
