// The job dialog on the real widgets: keys, focus, closing and the layout the policy leaves.

#include "dialog/dialog_layout.h"
#include "dialog_scene.h"
#include "modal_answers.h"
#include "ui/qt/twips.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QWindow>

#include <algorithm>
#include <vector>

using namespace pl;
using namespace pl::test;

namespace {

// anna's job in her spool folder, her MultiDoc queue of two documents beside it and bert's queue.
void offerQueuedJob(QtWorld& world) {
    world.writeJob(world.userSpool, "anna0001.ps", "Nachtrag");
    world.writeJob(world.userSpool, "MultiDocanna1.ps", "Angebot");
    world.writeJob(world.userSpool, "MultiDocanna2.ps", "Anlage");
    world.writeJob(world.userSpool, "MultiDocbert1.ps", "Bert's");
    world.offerJob(world.userSpool, "anna0001.ps");
}

bool jobKept(const QtWorld& w) {
    return w.exists(w.userSpool + "anna0001.ps");
}
bool queueKept(const QtWorld& w) {
    return w.exists(w.userSpool + "MultiDocanna1.ps") && w.exists(w.userSpool + "MultiDocanna2.ps");
}

std::vector<QPushButton*> visibleButtons(const DialogScene& scene) {
    std::vector<QPushButton*> buttons;
    for (const char* name : {"cmdEmail", "cmdSave", "cmdDesktop", "cmdMulti", "cmdSort"})
        if (auto* b = scene.widget<QPushButton>(name); b && b->isVisible())
            buttons.push_back(b);
    std::sort(buttons.begin(), buttons.end(), [](auto* a, auto* b) { return a->x() < b->x(); });
    return buttons;
}

} // namespace

class JobDialogViewTest : public QObject {
    Q_OBJECT
private slots:
    void escape_asks_and_deletes_the_job_and_the_queue_but_the_dialog_stays();
    void escape_answered_cancel_keeps_everything();
    void close_button_answered_no_keeps_dialog_job_and_queue();
    void close_button_answered_yes_deletes_and_the_window_goes();
    void typing_swallows_forbidden_characters_but_not_per_cent();
    void pasting_puts_the_cleaned_title_into_box_and_clipboard();
    void the_name_box_selects_all_when_it_gets_the_focus();
    void controls_stand_where_the_model_puts_them();
    void policy_hidden_buttons_and_rows_leave_no_gap();
    void choosing_a_profile_reaches_the_model();
    void the_dialog_comes_to_the_front_without_staying_on_top();
};

void JobDialogViewTest::escape_asks_and_deletes_the_job_and_the_queue_but_the_dialog_stays() {
    DialogScene scene;
    offerQueuedJob(scene.world);
    QVERIFY(scene.open());
    auto seen = std::make_shared<SeenMessageBox>();
    auto answer = answerMessageBox(QMessageBox::Ok, seen);

    QTest::keyClick(scene.widget<QLineEdit>("pdfName"), Qt::Key_Escape);

    QVERIFY(seen->shown);
    QCOMPARE(seen->buttons, QMessageBox::Ok | QMessageBox::Cancel);
    QCOMPARE(seen->icon, QMessageBox::Question);
    QCOMPARE(seen->title, QString::fromStdString(scene.world.texts.text(1)));
    QCOMPARE(seen->text,
             QString::fromStdString(scene.world.texts.text(5) + ": Angebot\n\n" + scene.world.texts.text(11)));
    QVERIFY(!jobKept(scene.world));
    QVERIFY(!scene.world.exists(scene.world.userSpool + "MultiDocanna1.ps"));
    QVERIFY(!scene.world.exists(scene.world.userSpool + "MultiDocanna2.ps"));
    QVERIFY(scene.world.exists(scene.world.userSpool + "MultiDocbert1.ps"));
    QVERIFY(!scene.world.state.DialogActive);
    QVERIFY(scene.window() != nullptr && scene.window()->isVisible());
    QVERIFY(scene.dialog->form().loaded);
    QCOMPARE(QString::fromStdString(scene.world.errorList()), QString());
}

void JobDialogViewTest::escape_answered_cancel_keeps_everything() {
    DialogScene scene;
    offerQueuedJob(scene.world);
    QVERIFY(scene.open());
    auto seen = std::make_shared<SeenMessageBox>();
    auto answer = answerMessageBox(QMessageBox::Cancel, seen);

    // Escape works wherever the focus is, not only in the name box.
    scene.widget<QComboBox>("plProfile")->setFocus();
    QTest::keyClick(scene.widget<QComboBox>("plProfile"), Qt::Key_Escape);

    QVERIFY(seen->shown);
    QVERIFY(jobKept(scene.world));
    QVERIFY(queueKept(scene.world));
    QVERIFY(scene.world.state.DialogActive);
    QVERIFY(scene.window()->isVisible());
}

void JobDialogViewTest::close_button_answered_no_keeps_dialog_job_and_queue() {
    DialogScene scene;
    offerQueuedJob(scene.world);
    QVERIFY(scene.open());
    auto seen = std::make_shared<SeenMessageBox>();
    auto answer = answerMessageBox(QMessageBox::No, seen);

    QVERIFY(!scene.window()->close());

    QVERIFY(seen->shown);
    QCOMPARE(seen->buttons, QMessageBox::Yes | QMessageBox::No);
    QCOMPARE(seen->icon, QMessageBox::Question);
    QVERIFY(jobKept(scene.world));
    QVERIFY(queueKept(scene.world));
    QVERIFY(scene.dialog->form().loaded);
    QVERIFY(scene.world.state.DialogActive);
    QVERIFY(scene.window() != nullptr && scene.window()->isVisible());
}

void JobDialogViewTest::close_button_answered_yes_deletes_and_the_window_goes() {
    DialogScene scene;
    offerQueuedJob(scene.world);
    QVERIFY(scene.open());
    QPointer<QWidget> window = scene.window();
    auto answer = answerMessageBox(QMessageBox::Yes);

    window->close();

    QVERIFY(answer->answered());
    QVERIFY(!jobKept(scene.world));
    QVERIFY(!scene.world.exists(scene.world.userSpool + "MultiDocanna1.ps"));
    QVERIFY(!scene.dialog->form().loaded);
    QVERIFY(!scene.world.state.DialogActive);
    QVERIFY(scene.window() == nullptr);
    QTRY_VERIFY(window.isNull()); // gone once the event loop has left it
}

void JobDialogViewTest::typing_swallows_forbidden_characters_but_not_per_cent() {
    DialogScene scene;
    QVERIFY(scene.openJob("Report"));
    auto* name = scene.widget<QLineEdit>("pdfName");
    QTRY_VERIFY(name->hasFocus());

    QTest::keyClick(name, Qt::Key_End);
    QTest::keyClicks(name, " a:b*c?\"<x>|/\\ 50%!");

    QCOMPARE(name->text(), QStringLiteral("Report abcx 50%"));
    QCOMPARE(scene.control("pdfName").text, std::string("Report abcx 50%"));
}

void JobDialogViewTest::pasting_puts_the_cleaned_title_into_box_and_clipboard() {
    DialogScene scene;
    QVERIFY(scene.openJob("Report"));
    auto* name = scene.widget<QLineEdit>("pdfName");
    QTRY_VERIFY(name->hasFocus());
    QGuiApplication::clipboard()->setText(QStringLiteral("Microsoft Word - Letter.doc"));

    name->selectAll();
    QTest::keyClick(name, Qt::Key_V, Qt::ControlModifier);

    QCOMPARE(name->text(), QStringLiteral("Letter.doc"));
    QCOMPARE(scene.control("pdfName").text, std::string("Letter.doc"));
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("Letter.doc"));
}

void JobDialogViewTest::the_name_box_selects_all_when_it_gets_the_focus() {
    DialogScene scene;
    QVERIFY(scene.openJob("Quarterly Report"));
    auto* name = scene.widget<QLineEdit>("pdfName");
    auto* profiles = scene.widget<QComboBox>("plProfile");

    // The dialog opens with the cursor in the name box and the whole name selected.
    QTRY_VERIFY(name->hasFocus());
    QCOMPARE(name->selectedText(), QStringLiteral("Quarterly Report"));

    // Tabbing into the box from the profile list selects all again.
    profiles->setFocus(Qt::MouseFocusReason);
    QTRY_VERIFY(profiles->hasFocus());
    name->deselect();
    QTest::keyClick(profiles, Qt::Key_Tab);
    QTRY_VERIFY(name->hasFocus());
    QCOMPARE(name->selectedText(), QStringLiteral("Quarterly Report"));

    // So does the focus the program gives it, where the toolkit alone would select nothing.
    profiles->setFocus(Qt::MouseFocusReason);
    name->deselect();
    scene.world.view.setFocus(scene.dialog->form(), "pdfName");
    QTRY_VERIFY(name->hasFocus());
    QCOMPARE(name->selectedText(), QStringLiteral("Quarterly Report"));
    QCOMPARE(scene.control("pdfName").selLength, 16);
}

void JobDialogViewTest::controls_stand_where_the_model_puts_them() {
    DialogScene scene;
    QVERIFY(scene.openJob("Report"));
    const int tpp = scene.window()->twipsPerPixel();
    QCOMPARE(tpp, qtui::twipsPerPixel());

    for (const auto& c : scene.dialog->form().controls()) {
        QWidget* w = scene.window()->controlWidget(c.name);
        if (w == nullptr)
            continue;
        QCOMPARE(w->isVisible(), c.visible);
        QCOMPARE(w->geometry(), QRect(c.left / tpp, c.top / tpp, c.width / tpp, c.height / tpp));
    }
    const auto& form = scene.dialog->form();
    QCOMPARE(scene.window()->size(), QSize((form.width - pl::dialog::layout::FrameWidth) / tpp,
                                           (form.height - pl::dialog::layout::FrameHeight) / tpp));
    QCOMPARE(scene.window()->windowTitle(), QString::fromStdString(scene.world.texts.text(1)));
    // Captions keep their access keys.
    QCOMPARE(scene.widget<QPushButton>("cmdSave")->text(), QString::fromStdString(scene.world.texts.text(8)));
}

void JobDialogViewTest::policy_hidden_buttons_and_rows_leave_no_gap() {
    using namespace pl::dialog::layout;
    DialogScene full;
    QVERIFY(full.openJob("Report"));

    DialogScene restricted;
    restricted.world.setMachine("APol", "disablesaveas,disablequality");
    QVERIFY(restricted.openJob("Report"));
    const int tpp = restricted.window()->twipsPerPixel();

    // The remaining buttons close up from the left, one gap apart.
    const auto buttons = visibleButtons(restricted);
    QCOMPARE(buttons.size(), std::size_t(3));
    QCOMPARE(buttons[0]->objectName(), QStringLiteral("cmdEmail"));
    QCOMPARE(buttons[1]->objectName(), QStringLiteral("cmdDesktop"));
    QCOMPARE(buttons[2]->objectName(), QStringLiteral("cmdMulti"));
    QCOMPARE(buttons[0]->x(), Margin / tpp);
    for (std::size_t i = 1; i < buttons.size(); ++i)
        QCOMPARE(buttons[i]->x() - (buttons[i - 1]->x() + buttons[i - 1]->width()), ButtonGap / tpp);
    QVERIFY(!restricted.widget<QPushButton>("cmdSave")->isVisible());

    // The name row takes the place of the profile row, and everything below moves up with it.
    QVERIFY(!restricted.widget<QComboBox>("plProfile")->isVisible());
    auto* fullName = full.widget<QLineEdit>("pdfName");
    auto* name = restricted.widget<QLineEdit>("pdfName");
    QCOMPARE(name->y(), full.widget<QComboBox>("plProfile")->y());
    QCOMPARE(restricted.widget<QCheckBox>("chkOpenPDF")->y() - name->y(),
             full.widget<QCheckBox>("chkOpenPDF")->y() - fullName->y());
    QCOMPARE(buttons[0]->y() - name->y(), full.widget<QPushButton>("cmdEmail")->y() - fullName->y());
    QCOMPARE(full.window()->height() - restricted.window()->height(), RowPitch / tpp);
    // Nothing is left hanging below the buttons.
    QCOMPARE(restricted.window()->height() - (buttons[0]->y() + buttons[0]->height()),
             full.window()->height() -
                 (full.widget<QPushButton>("cmdEmail")->y() + full.widget<QPushButton>("cmdEmail")->height()));
}

void JobDialogViewTest::choosing_a_profile_reaches_the_model() {
    DialogScene scene;
    scene.world.root.write("suite/Fax.plp", "-sDEVICE=pdfwrite\r\n");
    scene.world.root.write("suite/High Quality.plp", "-sDEVICE=pdfwrite\r\n");
    QVERIFY(scene.openJob("Report"));
    auto* profiles = scene.widget<QComboBox>("plProfile");
    QCOMPARE(profiles->count(), 2);
    QCOMPARE(profiles->currentText(), QStringLiteral("High Quality"));
    const int fax = profiles->findText(QStringLiteral("Fax"));

    profiles->setFocus();
    QTest::keyClick(profiles, fax < profiles->currentIndex() ? Qt::Key_Up : Qt::Key_Down);

    QCOMPARE(profiles->currentText(), QStringLiteral("Fax"));
    QCOMPARE(scene.control("plProfile").text, std::string("Fax"));
    QCOMPARE(scene.control("plProfile").value, fax);
}

void JobDialogViewTest::the_dialog_comes_to_the_front_without_staying_on_top() {
    DialogScene scene;
    QVERIFY(scene.openJob("Report"));
    QWindow* native = scene.window()->windowHandle();
    QVERIFY(native->isActive());
    QVERIFY(!(native->flags() & Qt::WindowStaysOnTopHint));

    // Brought forward again later, it is released again too.
    scene.world.view.bringToFront(scene.dialog->form());
    QVERIFY(scene.window()->isActiveWindow());
    QVERIFY(!(native->flags() & Qt::WindowStaysOnTopHint));
    QVERIFY(!(scene.window()->windowFlags() & Qt::WindowStaysOnTopHint));
}

QTEST_MAIN(JobDialogViewTest)
#include "job_dialog_view_test.moc"
