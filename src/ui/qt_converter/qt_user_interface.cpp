#include "converter/desktop_interface.h"
#include "ui/qt_converter/password_dialog.h"

#include <QApplication>
#include <QMessageBox>

namespace pl::converter {

namespace {

QString fromUtf8(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// The application object is made only when a dialog is really needed: a conversion that goes well
// never connects to the display at all.
class QtInterface final : public UserInterface {
public:
    bool canAsk() const override { return true; }

    void showError(std::string_view message) override {
        ensureApplication();
        QMessageBox box(QMessageBox::Critical, QStringLiteral("Paperlark"), fromUtf8(message), QMessageBox::Ok);
        box.exec();
    }

    std::optional<std::string> askPassword(std::string_view documentName) override {
        ensureApplication();
        PasswordDialog dialog(fromUtf8(documentName));
        if (dialog.exec() != QDialog::Accepted)
            return std::nullopt;
        return dialog.password().toStdString();
    }

private:
    void ensureApplication() {
        if (!QApplication::instance())
            application_ = std::make_unique<QApplication>(argc_, argv_);
    }

    char name_[10] = "paperlark";
    char* argv_[2] = {name_, nullptr};
    int argc_ = 1;
    std::unique_ptr<QApplication> application_;
};

} // namespace

std::unique_ptr<UserInterface> makeDesktopInterface() {
    return std::make_unique<QtInterface>();
}

} // namespace pl::converter
