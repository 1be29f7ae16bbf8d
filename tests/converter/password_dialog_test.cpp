// The converter's desktop dialogs, driven as a person would, on Qt's offscreen platform.

#include "converter/desktop_interface.h"
#include "ui/qt_converter/password_dialog.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>

using pl::converter::PasswordDialog;

namespace {

// Runs `answer` on the modal dialog once it is shown.
void whenShown(std::function<void(QWidget*)> answer) {
    auto* poll = new QTimer(QApplication::instance());
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

TEST(converter_password_dialog, asks_twice_for_the_password_returns_it_or_nothing_on_cancel_and_shows_failures) {
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    char name[] = "converter_qt_tests";
    char* argv[] = {name, nullptr};
    int argc = 1;
    QApplication application(argc, argv);
    auto ui = pl::converter::makeDesktopInterface();
    ASSERT_TRUE(ui);
    EXPECT_TRUE(ui->canAsk());

    whenShown([](QWidget* modal) {
        auto* dialog = dynamic_cast<PasswordDialog*>(modal);
        ASSERT_TRUE(dialog);
        EXPECT_EQ(dialog->passwordField()->echoMode(), QLineEdit::Password);
        // OK needs the same password twice. QTest types ASCII only; an input method would deliver
        // the umlauts like this.
        EXPECT_FALSE(okButton(*dialog)->isEnabled());
        dialog->passwordField()->insert(QString::fromUtf8("Gr\xC3\xBC\xC3\x9F"
                                                          "e 1"));
        EXPECT_FALSE(okButton(*dialog)->isEnabled());
        EXPECT_TRUE(dialog->mismatchLabel()->isHidden()); // nothing typed twice yet
        dialog->repeatField()->insert(QString::fromUtf8("Gr\xC3\xBC\xC3\x9F"
                                                        "e "));
        EXPECT_FALSE(okButton(*dialog)->isEnabled());
        // Said in words, not only by the greyed button.
        EXPECT_FALSE(dialog->mismatchLabel()->isHidden());
        EXPECT_EQ(dialog->mismatchLabel()->text(), QStringLiteral("The passwords do not match."));
        QTest::keyClicks(dialog->repeatField(), QStringLiteral("1"));
        EXPECT_TRUE(okButton(*dialog)->isEnabled());
        EXPECT_TRUE(dialog->mismatchLabel()->isHidden());
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

    // A failure is shown in a message box.
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
