// What the Qt view shares between the forms: message boxes with the classic style and result codes,
// and the save dialog.

#include "base/message_box.h"
#include "modal_answers.h"
#include "support/temp_dir.h"
#include "ui/qt/qt_view.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QTest>

#include <memory>

using namespace pl;
using namespace pl::test;

namespace {

QLineEdit* fileNameEdit(QWidget* dialog) {
    return dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
}

} // namespace

class QtViewTest : public QObject {
    Q_OBJECT
private slots:
    void message_boxes_show_the_classic_buttons_icons_and_defaults_and_answer_classic_codes_data();
    void message_boxes_show_the_classic_buttons_icons_and_defaults_and_answer_classic_codes();
    void the_save_dialog_gets_filter_extension_folder_and_name_and_asks_before_overwriting();
};

using Buttons = QMessageBox::StandardButtons;
using Button = QMessageBox::StandardButton;

void QtViewTest::message_boxes_show_the_classic_buttons_icons_and_defaults_and_answer_classic_codes_data() {
    QTest::addColumn<int>("style");
    QTest::addColumn<Buttons>("buttons");
    QTest::addColumn<int>("icon");
    QTest::addColumn<int>("defaultButton");
    QTest::addColumn<int>("click"); // NoButton: Escape is pressed
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
    // Escape answers Cancel where there is one, and closes a box that only informs.
    QTest::newRow("escape in ok cancel") << (mb::OkCancel | mb::Question) << (B::Ok | B::Cancel) << int(B::Question)
                                         << int(B::Ok) << int(B::NoButton) << mb::Cancel;
    QTest::newRow("escape in yes no cancel") << mb::YesNoCancel << (B::Yes | B::No | B::Cancel) << int(B::NoIcon)
                                             << int(B::Yes) << int(B::NoButton) << mb::Cancel;
    QTest::newRow("escape in ok") << mb::OkOnly << Buttons(B::Ok) << int(B::NoIcon) << int(B::Ok) << int(B::NoButton)
                                  << mb::Ok;
}

void QtViewTest::message_boxes_show_the_classic_buttons_icons_and_defaults_and_answer_classic_codes() {
    QFETCH(int, style);
    QFETCH(Buttons, buttons);
    QFETCH(int, icon);
    QFETCH(int, defaultButton);
    QFETCH(int, click);
    QFETCH(int, result);
    qtui::QtView view(QStringLiteral("plAssist"));
    auto seen = std::make_shared<SeenMessageBox>();
    auto answer = answerMessageBox(Button(click), seen);

    // Without a title of its own the box shows the program's name; the prompt is plain lines.
    const int answered = view.msgBox("Report 50% <final>\r\n\r\nWeiter?", style);

    QVERIFY(seen->shown);
    QCOMPARE(seen->title, QStringLiteral("plAssist"));
    QCOMPARE(seen->text, QStringLiteral("Report 50% <final>\n\nWeiter?"));
    QCOMPARE(seen->buttons, buttons);
    QCOMPARE(int(seen->icon), icon);
    QCOMPARE(int(seen->defaultButton), defaultButton);
    QCOMPARE(answered, result);
}

void QtViewTest::the_save_dialog_gets_filter_extension_folder_and_name_and_asks_before_overwriting() {
    TempDir folder;
    folder.write("Quarterly Report.pdf", "%PDF-1.4\n");
    qtui::QtView view;
    forms::SaveDialogRequest request;
    request.filter = std::string("Paperlark File     (.pdf)") + '\0' + "*.pdf";
    request.defaultExt = "pdf";
    request.initDir = folder.path().string();
    request.fileName = "Quarterly Report";
    // What the dialog shows: folder, filters, the filter chosen, extension, options and the name.
    QStringList shown;
    // The name typed comes back with the extension, and names a file that is there: asked and
    // answered No, the dialog stays, and is then cancelled.
    auto seen = std::make_shared<SeenMessageBox>();
    std::unique_ptr<ModalAnswer> overwrite;
    ModalAnswer refuse([&](QWidget* modal) {
        auto* dialog = qobject_cast<QFileDialog*>(modal);
        shown << dialog->directory().absolutePath() << dialog->nameFilters() << dialog->selectedNameFilter()
              << dialog->defaultSuffix()
              << (dialog->testOption(QFileDialog::HideNameFilterDetails) ? "hides details" : "shows details")
              << (dialog->acceptMode() == QFileDialog::AcceptSave ? "saves" : "opens") << fileNameEdit(dialog)->text();
        overwrite = answerMessageBox(QMessageBox::No, seen);
        QTest::keyClick(fileNameEdit(dialog), Qt::Key_Return);
        dialog->reject();
    });

    QVERIFY(!view.askSaveFileName(request).has_value());

    // The pattern goes where the dialog reads it; the description is shown without it (and Qt
    // folds its run of blanks).
    QCOMPARE(shown, (QStringList{
                        QString::fromStdString(folder.path().string()), QStringLiteral("Paperlark File (.pdf) (*.pdf)"),
                        QStringLiteral("Paperlark File (.pdf)"), QStringLiteral("pdf"), QStringLiteral("hides details"),
                        QStringLiteral("saves"), QStringLiteral("Quarterly Report")}));
    QVERIFY(seen->shown);
    QVERIFY(seen->text.contains(QStringLiteral("Quarterly Report.pdf")));

    // Not to be asked: the name comes back at once.
    request.overwritePrompt = false;
    ModalAnswer accept([](QWidget* modal) { QTest::keyClick(fileNameEdit(modal), Qt::Key_Return); });
    const auto chosen = view.askSaveFileName(request);
    QVERIFY(chosen.has_value());
    QCOMPARE(QString::fromStdString(*chosen), QString::fromStdString(folder.folder() + "Quarterly Report.pdf"));
}

QTEST_MAIN(QtViewTest)
#include "qt_view_test.moc"
