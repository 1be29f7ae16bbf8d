// What the Qt view shares between the forms: message boxes with the classic style and result
// codes, the save dialog, the clipboard, the screen's twips per pixel, yielding to the event loop.

#include "base/message_box.h"
#include "modal_answers.h"
#include "support/temp_dir.h"
#include "ui/qt/qt_view.h"
#include "ui/qt/twips.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QScreen>
#include <QTest>
#include <QTimer>

#include <filesystem>
#include <memory>

using namespace pl;
using namespace pl::test;

class QtViewTest : public QObject {
    Q_OBJECT
private slots:
    void message_boxes_show_the_classic_buttons_icons_and_defaults_and_answer_classic_codes_data();
    void message_boxes_show_the_classic_buttons_icons_and_defaults_and_answer_classic_codes();
    void escape_answers_cancel_or_closes_a_box_that_only_informs();
    void a_message_box_shows_its_prompt_as_plain_lines_and_the_program_name_without_a_title();
    void the_save_dialog_gets_filter_extension_folder_and_name();
    void the_save_dialog_asks_before_overwriting_unless_told_not_to();
    void a_cancelled_save_dialog_gives_nothing();
    void the_clipboard_keeps_text_and_can_be_emptied();
    void twips_per_pixel_follow_the_screens_resolution();
    void do_events_runs_what_is_pending();
};

using Buttons = QMessageBox::StandardButtons;
using Button = QMessageBox::StandardButton;

void QtViewTest::message_boxes_show_the_classic_buttons_icons_and_defaults_and_answer_classic_codes_data() {
    QTest::addColumn<int>("style");
    QTest::addColumn<Buttons>("buttons");
    QTest::addColumn<int>("icon");
    QTest::addColumn<int>("defaultButton");
    QTest::addColumn<int>("click");
    QTest::addColumn<int>("result");
    using B = QMessageBox;
    QTest::newRow("ok, critical") << (mb::OkOnly | mb::Critical) << Buttons(B::Ok) << int(B::Critical) << int(B::Ok)
                                  << int(B::Ok) << mb::Ok;
    QTest::newRow("ok cancel, question, second default")
        << (mb::OkCancel | mb::Question | mb::DefaultButton2) << (B::Ok | B::Cancel) << int(B::Question)
        << int(B::Cancel) << int(B::Cancel) << mb::Cancel;
    QTest::newRow("abort retry ignore, exclamation, third default")
        << (mb::AbortRetryIgnore | mb::Exclamation | mb::DefaultButton3) << (B::Abort | B::Retry | B::Ignore)
        << int(B::Warning) << int(B::Ignore) << int(B::Ignore) << mb::Ignore;
    QTest::newRow("yes no cancel, information") << (mb::YesNoCancel | mb::Information) << (B::Yes | B::No | B::Cancel)
                                                << int(B::Information) << int(B::Yes) << int(B::No) << mb::No;
    QTest::newRow("yes no, question") << (mb::YesNo | mb::Question) << (B::Yes | B::No) << int(B::Question)
                                      << int(B::Yes) << int(B::Yes) << mb::Yes;
    QTest::newRow("retry cancel, no icon")
        << mb::RetryCancel << (B::Retry | B::Cancel) << int(B::NoIcon) << int(B::Retry) << int(B::Retry) << mb::Retry;
    QTest::newRow("abort of three") << mb::AbortRetryIgnore << (B::Abort | B::Retry | B::Ignore) << int(B::NoIcon)
                                    << int(B::Abort) << int(B::Abort) << mb::Abort;
}

void QtViewTest::message_boxes_show_the_classic_buttons_icons_and_defaults_and_answer_classic_codes() {
    QFETCH(int, style);
    QFETCH(Buttons, buttons);
    QFETCH(int, icon);
    QFETCH(int, defaultButton);
    QFETCH(int, click);
    QFETCH(int, result);
    qtui::QtView view;
    auto seen = std::make_shared<SeenMessageBox>();
    auto answer = answerMessageBox(Button(click), seen);

    const int answered = view.msgBox("Weiter?", style, "Paperlark");

    QVERIFY(seen->shown);
    QCOMPARE(seen->buttons, buttons);
    QCOMPARE(int(seen->icon), icon);
    QCOMPARE(int(seen->defaultButton), defaultButton);
    QCOMPARE(answered, result);
}

void QtViewTest::escape_answers_cancel_or_closes_a_box_that_only_informs() {
    qtui::QtView view;
    {
        auto answer = escapeMessageBox();
        QCOMPARE(view.msgBox("Delete this PDF job?", mb::OkCancel | mb::Question, "Paperlark"), mb::Cancel);
    }
    {
        auto answer = escapeMessageBox();
        QCOMPARE(view.msgBox("Save?", mb::YesNoCancel, "Paperlark"), mb::Cancel);
    }
    {
        auto answer = escapeMessageBox();
        QCOMPARE(view.msgBox("Done.", mb::OkOnly, "Paperlark"), mb::Ok);
    }
}

void QtViewTest::a_message_box_shows_its_prompt_as_plain_lines_and_the_program_name_without_a_title() {
    qtui::QtView view(QStringLiteral("plAssist"));
    auto seen = std::make_shared<SeenMessageBox>();
    auto answer = answerMessageBox(QMessageBox::Ok, seen);

    view.msgBox("PDF File Name: Report 50% <final>\r\n\r\nDelete this PDF job?");

    QCOMPARE(seen->title, QStringLiteral("plAssist"));
    QCOMPARE(seen->text, QStringLiteral("PDF File Name: Report 50% <final>\n\nDelete this PDF job?"));
}

void QtViewTest::the_save_dialog_gets_filter_extension_folder_and_name() {
    TempDir folder;
    qtui::QtView view;
    forms::SaveDialogRequest request;
    request.filter = std::string("Paperlark File     (.pdf)") + '\0' + "*.pdf";
    request.defaultExt = "pdf";
    request.initDir = folder.path().string();
    request.fileName = "Quarterly Report";
    QString directory, nameFilter, suffix, typed;
    QStringList nameFilters;
    bool hidesDetails = false, asksOverwrite = false, saves = false;
    ModalAnswer answer([&](QWidget* modal) {
        auto* dialog = qobject_cast<QFileDialog*>(modal);
        if (dialog == nullptr) {
            modal->close();
            return;
        }
        directory = dialog->directory().absolutePath();
        nameFilters = dialog->nameFilters();
        nameFilter = dialog->selectedNameFilter();
        suffix = dialog->defaultSuffix();
        hidesDetails = dialog->testOption(QFileDialog::HideNameFilterDetails);
        asksOverwrite = !dialog->testOption(QFileDialog::DontConfirmOverwrite);
        saves = dialog->acceptMode() == QFileDialog::AcceptSave;
        auto* name = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        typed = name->text();
        QTest::keyClick(name, Qt::Key_Return);
    });

    const auto chosen = view.askSaveFileName(request);

    QVERIFY(answer.answered());
    QCOMPARE(directory, QString::fromStdString(folder.path().string()));
    // The pattern goes where the dialog reads it; the description is shown without it (and Qt
    // folds its run of blanks).
    QCOMPARE(nameFilters, QStringList{QStringLiteral("Paperlark File (.pdf) (*.pdf)")});
    QCOMPARE(nameFilter, QStringLiteral("Paperlark File (.pdf)"));
    QCOMPARE(suffix, QStringLiteral("pdf"));
    QVERIFY(hidesDetails);
    QVERIFY(asksOverwrite);
    QVERIFY(saves);
    QCOMPARE(typed, QStringLiteral("Quarterly Report"));
    QVERIFY(chosen.has_value());
    QCOMPARE(QString::fromStdString(*chosen), QString::fromStdString(folder.folder() + "Quarterly Report.pdf"));
}

void QtViewTest::the_save_dialog_asks_before_overwriting_unless_told_not_to() {
    TempDir folder;
    folder.write("Old.pdf", "%PDF-1.4\n");
    qtui::QtView view;
    forms::SaveDialogRequest request;
    request.filter = "PDF|*.pdf";
    request.initDir = folder.path().string();
    request.fileName = "Old.pdf";

    // Asked and answered No: the dialog stays, and is then cancelled.
    auto seen = std::make_shared<SeenMessageBox>();
    std::unique_ptr<ModalAnswer> overwrite;
    ModalAnswer refuse([&](QWidget* modal) {
        auto* dialog = qobject_cast<QFileDialog*>(modal);
        overwrite = answerMessageBox(QMessageBox::No, seen);
        QTest::keyClick(dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit")), Qt::Key_Return);
        dialog->reject();
    });
    QVERIFY(!view.askSaveFileName(request).has_value());
    QVERIFY(seen->shown);
    QVERIFY(seen->text.contains(QStringLiteral("Old.pdf")));

    // Not to be asked: the name comes back at once.
    request.overwritePrompt = false;
    ModalAnswer accept([](QWidget* modal) {
        QTest::keyClick(modal->findChild<QLineEdit*>(QStringLiteral("fileNameEdit")), Qt::Key_Return);
    });
    const auto chosen = view.askSaveFileName(request);
    QVERIFY(chosen.has_value());
    QCOMPARE(QString::fromStdString(*chosen), QString::fromStdString(folder.folder() + "Old.pdf"));
}

void QtViewTest::a_cancelled_save_dialog_gives_nothing() {
    qtui::QtView view;
    ModalAnswer cancel([](QWidget* modal) { QTest::keyClick(modal, Qt::Key_Escape); });
    QVERIFY(!view.askSaveFileName(forms::SaveDialogRequest{}).has_value());
    QVERIFY(cancel.answered());
}

void QtViewTest::the_clipboard_keeps_text_and_can_be_emptied() {
    qtui::QtView view;
    view.setClipboardText("Grüße an Zoë");
    QCOMPARE(view.clipboardText(), std::string("Grüße an Zoë"));
    view.setClipboardText("");
    QCOMPARE(view.clipboardText(), std::string());
}

void QtViewTest::twips_per_pixel_follow_the_screens_resolution() {
    QCOMPARE(qtui::twipsPerPixelAt(96), 15);
    QCOMPARE(qtui::twipsPerPixelAt(120), 12);
    QCOMPARE(qtui::twipsPerPixelAt(144), 10);
    qtui::QtView view;
    const double dpi = QGuiApplication::primaryScreen()->logicalDotsPerInch();
    QCOMPARE(view.twipsPerPixel(), qRound(1440 / dpi));
}

void QtViewTest::do_events_runs_what_is_pending() {
    qtui::QtView view;
    bool ran = false;
    QTimer::singleShot(0, [&] { ran = true; });
    view.doEvents();
    QVERIFY(ran);
}

QTEST_MAIN(QtViewTest)
#include "qt_view_test.moc"
