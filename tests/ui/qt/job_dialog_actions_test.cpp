// The job dialog's keys, options and MultiDoc sort dialog through the real widgets, with the
// program's own actions: a recording converter in the suite folder writes down every call it gets.

#include "dialog/actions/job_actions.h"
#include "dialog_scene.h"
#include "modal_answers.h"

#include <QCheckBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

using namespace pl;
using namespace pl::test;

namespace {

// anna's job in the machine spool folder, the recording converter as the suite's converter.
struct ActionScene : DialogScene {
    ActionScene() : DialogScene(dialog::jobActions) {
        world.installRecordingConverter(RECORDING_CONVERTER);
        world.root.write("suite/High Quality.plp", "-sDEVICE=pdfwrite\r\n");
        world.offerMachineJob("Quarterly Report");
    }
    dialog::DialogJobActions& buttons() { return dynamic_cast<dialog::DialogJobActions&>(dialog->actions()); }
};

template <class W> W* in(qtui::QtFormWindow& window, const char* name) {
    return qobject_cast<W*>(window.controlWidget(name));
}

} // namespace

class JobDialogActionsTest : public QObject {
    Q_OBJECT
private slots:
    void enter_in_the_name_box_puts_the_pdf_on_the_desktop();
    void the_encryption_box_goes_through_three_states_with_a_password_profile();
    void the_sort_button_opens_the_queue_modally_and_ok_applies_the_new_order();
    void the_sort_dialogs_help_names_the_converter_as_called_here_and_escape_cancels_it();
};

void JobDialogActionsTest::enter_in_the_name_box_puts_the_pdf_on_the_desktop() {
    ActionScene scene;
    QVERIFY(scene.open());
    QPointer<QWidget> window = scene.window();
    auto* name = scene.widget<QLineEdit>("pdfName");
    QTRY_VERIFY(name->hasFocus());

    QTest::keyClicks(name, "Brief");
    QTest::keyClick(name, Qt::Key_Return);

    const auto calls = scene.world.waitForCalls(1);
    QCOMPARE(calls.size(), std::size_t(1));
    QCOMPARE(calls[0].args, (std::vector<std::string>{"/3", "delps,save,open,nocode", "High Quality",
                                                      scene.world.desktop + "Brief.pdf", scene.world.state.PsFile}));
    QVERIFY(!scene.world.exists(scene.world.machineSpool + "anna0001.ps")); // taken out of the watcher's sight
    QVERIFY(!scene.dialog->form().loaded);
    QTRY_VERIFY(window.isNull());
    QCOMPARE(QString::fromStdString(scene.world.errorList()), QString());
}

void JobDialogActionsTest::the_encryption_box_goes_through_three_states_with_a_password_profile() {
    ActionScene scene;
    scene.world.env.set("PATH", "/usr/bin:/bin"); // Ghostscript: encryption is offered
    scene.world.root.write("suite/High Quality.plp", "-sDEVICE=pdfwrite\r\nownerpassword=geheim\r\n");
    QVERIFY(scene.open());
    auto* box = scene.widget<QCheckBox>("ckEncodePDF");
    QVERIFY(box->isVisible());
    QVERIFY(scene.buttons().EncodeTriState);
    QCOMPARE(box->checkState(), Qt::PartiallyChecked); // the profile decides

    for (auto expected : {Qt::Checked, Qt::PartiallyChecked}) { // a ticked box goes on to grey
        QTest::mouseClick(box, Qt::LeftButton);
        QCOMPARE(box->checkState(), expected);
    }
    QCOMPARE(scene.control("ckEncodePDF").value, forms::Grayed);
    // Its label goes round all three.
    for (auto expected : {Qt::Unchecked, Qt::Checked, Qt::PartiallyChecked}) {
        QTest::mouseClick(scene.widget<QLabel>("lbEncodePDF"), Qt::LeftButton);
        QCOMPARE(box->checkState(), expected);
    }
}

void JobDialogActionsTest::the_sort_button_opens_the_queue_modally_and_ok_applies_the_new_order() {
    ActionScene scene; // with three documents queued by anna
    int n = 0;
    for (const char* title : {"Anfang", "Mitte", "Ende"})
        scene.world.writeQueued(++n, title);
    QVERIFY(scene.open());
    QStringList shown;
    QString caption;
    bool jobDialogBlocked = false;
    ModalAnswer answer([&](QWidget* modal) {
        auto* sort = qobject_cast<qtui::QtFormWindow*>(modal);
        if (sort == nullptr || sort->objectName() != QStringLiteral("frmSort"))
            return modal->hide();
        caption = sort->windowTitle();
        jobDialogBlocked = sort->isModal() && !scene.window()->isActiveWindow();
        auto* list = in<QListWidget>(*sort, "lstDocuments");
        for (int i = 0; i < list->count(); ++i)
            shown << list->item(i)->text();
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(2)).center());
        QTest::mouseClick(in<QPushButton>(*sort, "cmdUp"), Qt::LeftButton);
        QTest::mouseClick(in<QPushButton>(*sort, "cmdUp"), Qt::LeftButton);
        QDir().mkpath(QStringLiteral(PAPERLARK_TEST_ARTIFACTS_DIR));
        sort->grab().save(QStringLiteral(PAPERLARK_TEST_ARTIFACTS_DIR "/sort_dialog.png"));
        QTest::mouseClick(in<QPushButton>(*sort, "cmdOK"), Qt::LeftButton);
    });

    QTest::mouseClick(scene.widget<QPushButton>("cmdSort"), Qt::LeftButton);

    QVERIFY(answer.answered());
    QCOMPARE(caption, QStringLiteral("MultiDoc Sort"));
    QVERIFY(jobDialogBlocked);
    QCOMPARE(shown, (QStringList{"1: Anfang", "2: Mitte", "3: Ende"}));
    QCOMPARE(scene.world.queueTitles(), (std::vector<std::string>{"Ende", "Anfang", "Mitte"}));
    QVERIFY(scene.window()->isVisible()); // back to the job dialog
    QCOMPARE(QString::fromStdString(scene.world.errorList()), QString());
}

void JobDialogActionsTest::the_sort_dialogs_help_names_the_converter_as_called_here_and_escape_cancels_it() {
    ActionScene scene;
    scene.world.writeJob(scene.world.userSpool, "MultiDocanna1.ps", "Anfang");
    scene.world.writeJob(scene.world.userSpool, "MultiDocanna2.ps", "Ende");
    QVERIFY(scene.open());
    auto help = std::make_shared<SeenMessageBox>();
    bool sortWentAway = false;
    ModalAnswer answer([&](QWidget* modal) {
        auto* sort = qobject_cast<qtui::QtFormWindow*>(modal);
        if (sort == nullptr || sort->objectName() != QStringLiteral("frmSort"))
            return modal->hide();
        auto helpAnswer = answerMessageBox(QMessageBox::Ok, help);
        QTest::mouseClick(in<QPushButton>(*sort, "cmdHelp"), Qt::LeftButton);
        // A new order that Escape must not apply.
        auto* list = in<QListWidget>(*sort, "lstDocuments");
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(1)).center());
        QTest::mouseClick(in<QPushButton>(*sort, "cmdUp"), Qt::LeftButton);
        QPointer<QWidget> window = sort;
        QTest::keyClick(list, Qt::Key_Escape);
        sortWentAway = window.isNull() || !window->isVisible();
    });

    QTest::mouseClick(scene.widget<QPushButton>("cmdSort"), Qt::LeftButton);

    QVERIFY(answer.answered());
    QVERIFY(help->text.contains(QStringLiteral("paperlark /m \"Output.pdf\" \"Input1\"")));
    QVERIFY(!help->text.contains(QStringLiteral(".exe")));
    QVERIFY(sortWentAway);
    QCOMPARE(scene.world.queueTitles(), (std::vector<std::string>{"Anfang", "Ende"}));
    QVERIFY(scene.window()->isVisible());
}

QTEST_MAIN(JobDialogActionsTest)
#include "job_dialog_actions_test.moc"
