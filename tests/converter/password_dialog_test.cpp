// The converter's desktop dialogs, driven as a person would, on Qt's offscreen platform.

#include "converter/desktop_interface.h"
#include "ui/qt_converter/password_dialog.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <memory>

using pl::converter::PasswordDialog;

namespace {

// One application object for the whole test program, gone again before the program's own statics
// are: Qt must not outlive the parts of itself it relies on.
class QtApplication : public ::testing::Environment {
public:
    void SetUp() override {
        ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
        app_ = std::make_unique<QApplication>(argc_, argv_);
    }
    void TearDown() override { app_.reset(); }
    QApplication& get() { return *app_; }

private:
    char name_[19] = "converter_qt_tests";
    char* argv_[2] = {name_, nullptr};
    int argc_ = 1;
    std::unique_ptr<QApplication> app_;
};

QtApplication* const qtApplication =
    static_cast<QtApplication*>(::testing::AddGlobalTestEnvironment(new QtApplication));

QApplication& application() {
    return qtApplication->get();
}

// Runs `answer` on the modal dialog once it is shown.
void whenShown(std::function<void(QWidget*)> answer) {
    auto* poll = new QTimer(&application());
    QObject::connect(poll, &QTimer::timeout, [poll, answer] {
        if (QWidget* modal = QApplication::activeModalWidget()) {
            poll->stop();
            poll->deleteLater();
            answer(modal);
        }
    });
    poll->start(20);
}

QPushButton* okButton(PasswordDialog& dialog) {
    return dialog.buttons()->button(QDialogButtonBox::Ok);
}

} // namespace

TEST(converter_password_dialog, ok_needs_the_same_password_twice) {
    application();
    PasswordDialog dialog(QStringLiteral("Report.pdf"));
    EXPECT_FALSE(okButton(dialog)->isEnabled());
    QTest::keyClicks(dialog.passwordField(), QStringLiteral("s3cret"));
    EXPECT_FALSE(okButton(dialog)->isEnabled());
    QTest::keyClicks(dialog.repeatField(), QStringLiteral("s3cre"));
    EXPECT_FALSE(okButton(dialog)->isEnabled());
    QTest::keyClicks(dialog.repeatField(), QStringLiteral("t"));
    EXPECT_TRUE(okButton(dialog)->isEnabled());
    EXPECT_EQ(dialog.password(), QStringLiteral("s3cret"));
    EXPECT_EQ(dialog.passwordField()->echoMode(), QLineEdit::Password);
}

TEST(converter_password_dialog, the_desktop_interface_returns_what_was_typed_or_nothing_on_cancel) {
    application();
    auto ui = pl::converter::makeDesktopInterface();
    ASSERT_TRUE(ui);
    EXPECT_TRUE(ui->canAsk());

    whenShown([](QWidget* modal) {
        auto* dialog = dynamic_cast<PasswordDialog*>(modal);
        ASSERT_TRUE(dialog);
        // QTest types ASCII only; an input method would deliver the umlauts like this.
        dialog->passwordField()->insert(QString::fromUtf8("Gr\xC3\xBC\xC3\x9F"
                                                          "e 1"));
        dialog->repeatField()->insert(QString::fromUtf8("Gr\xC3\xBC\xC3\x9F"
                                                        "e 1"));
        QTest::mouseClick(okButton(*dialog), Qt::LeftButton);
    });
    EXPECT_EQ(ui->askPassword("Report.pdf"), std::optional<std::string>("Gr\xC3\xBC\xC3\x9F"
                                                                        "e 1"));

    whenShown([](QWidget* modal) {
        auto* dialog = dynamic_cast<PasswordDialog*>(modal);
        ASSERT_TRUE(dialog);
        QTest::keyClicks(dialog->passwordField(), QStringLiteral("typed"));
        dialog->buttons()->button(QDialogButtonBox::Cancel)->click();
    });
    EXPECT_EQ(ui->askPassword("Report.pdf"), std::nullopt);
}

TEST(converter_password_dialog, a_failure_is_shown_in_a_message_box) {
    application();
    auto ui = pl::converter::makeDesktopInterface();
    QString shown;
    whenShown([&shown](QWidget* modal) {
        auto* box = dynamic_cast<QMessageBox*>(modal);
        ASSERT_TRUE(box);
        shown = box->text();
        box->accept();
    });
    ui->showError("Ghostscript could not convert the job.");
    EXPECT_EQ(shown, QStringLiteral("Ghostscript could not convert the job."));
}
