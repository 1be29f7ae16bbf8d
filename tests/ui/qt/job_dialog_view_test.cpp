// The job dialog on the real widgets: keys, focus, closing, the layout the policy leaves, and the
// dialog as a person sees it in each look. Each picture is written to the build tree's
// test-artifacts folder so that it can be looked at after the run.

#include "dialog/appearance.h"
#include "dialog/dialog_layout.h"
#include "dialog_scene.h"
#include "modal_answers.h"
#include "ui/qt/colors.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QCursor>
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QTest>

#include <algorithm>
#include <cstdlib>
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

// Whether anna's job and both documents of her queue are still there.
bool everythingKept(const QtWorld& w) {
    return w.exists(w.userSpool + "anna0001.ps") && w.exists(w.userSpool + "MultiDocanna1.ps") &&
           w.exists(w.userSpool + "MultiDocanna2.ps");
}
bool everythingDeleted(const QtWorld& w) {
    return !w.exists(w.userSpool + "anna0001.ps") && !w.exists(w.userSpool + "MultiDocanna1.ps") &&
           !w.exists(w.userSpool + "MultiDocanna2.ps") && w.exists(w.userSpool + "MultiDocbert1.ps");
}

std::vector<QPushButton*> visibleButtons(const DialogScene& scene) {
    std::vector<QPushButton*> buttons;
    for (const char* name : {"cmdEmail", "cmdSave", "cmdDesktop", "cmdMulti", "cmdSort"})
        if (auto* b = scene.widget<QPushButton>(name); b && b->isVisible())
            buttons.push_back(b);
    std::sort(buttons.begin(), buttons.end(), [](auto* a, auto* b) { return a->x() < b->x(); });
    return buttons;
}

QColor colorOf(forms::Rgb value) {
    return qtui::toQColor(value, QPalette());
}

bool near(const QColor& a, const QColor& b) {
    return std::abs(a.red() - b.red()) <= 3 && std::abs(a.green() - b.green()) <= 3 &&
           std::abs(a.blue() - b.blue()) <= 3;
}

// A job with a title, two documents already queued, a support line, and Ghostscript on the path so
// that the encryption option is offered.
void prepare(DialogScene& scene) {
    auto& w = scene.world;
    w.env.set("PATH", "/usr/bin:/bin");
    w.setMachine("Support", "Support: helpdesk@example.com, extension 4711");
    w.root.write("suite/High Quality.plp", "-sDEVICE=pdfwrite\r\n");
    w.root.write("suite/Fax.plp", "-sDEVICE=pdfwrite\r\n");
    w.writeJob(w.userSpool, "MultiDocanna1.ps", "Quarterly Report 2024");
    w.writeJob(w.userSpool, "MultiDocanna2.ps", "Appendix");
    w.writeJob(w.userSpool, "anna0001.ps", "Appendix B");
    w.offerJob(w.userSpool, "anna0001.ps");
}

} // namespace

class JobDialogViewTest : public QObject {
    Q_OBJECT
private slots:
    void escape_asks_and_deletes_the_job_and_the_queue_but_the_dialog_stays();
    void close_button_answered_no_keeps_everything_and_yes_deletes_and_the_window_goes();
    void the_name_box_swallows_forbidden_characters_cleans_pastes_and_selects_all_on_focus();
    void policy_hidden_buttons_and_rows_leave_no_gap();
    void opens_as_a_fixed_size_dialog_in_the_middle_of_the_screen_with_the_mouse();
    void each_look_paints_its_background_and_keeps_it_on_repainting_data();
    void each_look_paints_its_background_and_keeps_it_on_repainting();
};

void JobDialogViewTest::escape_asks_and_deletes_the_job_and_the_queue_but_the_dialog_stays() {
    DialogScene scene;
    offerQueuedJob(scene.world);
    QVERIFY(scene.open());

    auto seen = std::make_shared<SeenMessageBox>();
    auto answer = answerMessageBox(QMessageBox::Ok, seen);

    // Escape works wherever the focus is, not only in the name box.
    scene.widget<QComboBox>("plProfile")->setFocus();
    QTest::keyClick(scene.widget<QComboBox>("plProfile"), Qt::Key_Escape);

    QVERIFY(seen->shown);
    QCOMPARE(seen->buttons, QMessageBox::Ok | QMessageBox::Cancel);
    QCOMPARE(seen->icon, QMessageBox::Question);
    QCOMPARE(seen->title, QString::fromStdString(scene.world.texts.text(1)));
    QCOMPARE(seen->text,
             QString::fromStdString(scene.world.texts.text(5) + ": Angebot\n\n" + scene.world.texts.text(11)));
    QVERIFY(everythingDeleted(scene.world));
    QVERIFY(!scene.world.state.DialogActive);
    QVERIFY(scene.window() != nullptr && scene.window()->isVisible());
    QVERIFY(scene.dialog->form().loaded);
    QCOMPARE(QString::fromStdString(scene.world.errorList()), QString());
}

void JobDialogViewTest::close_button_answered_no_keeps_everything_and_yes_deletes_and_the_window_goes() {
    DialogScene scene;
    offerQueuedJob(scene.world);
    QVERIFY(scene.open());
    QPointer<QWidget> window = scene.window();
    auto seen = std::make_shared<SeenMessageBox>();
    auto no = answerMessageBox(QMessageBox::No, seen);

    QVERIFY(!window->close());

    QVERIFY(seen->shown);
    QCOMPARE(seen->buttons, QMessageBox::Yes | QMessageBox::No);
    QCOMPARE(seen->icon, QMessageBox::Question);
    QVERIFY(everythingKept(scene.world));
    QVERIFY(scene.dialog->form().loaded);
    QVERIFY(scene.world.state.DialogActive);
    QVERIFY(scene.window() != nullptr && scene.window()->isVisible());

    auto yes = answerMessageBox(QMessageBox::Yes);
    window->close();

    QVERIFY(yes->answered());
    QVERIFY(everythingDeleted(scene.world));
    QVERIFY(!scene.dialog->form().loaded);
    QVERIFY(!scene.world.state.DialogActive);
    QVERIFY(scene.window() == nullptr);
    QTRY_VERIFY(window.isNull()); // gone once the event loop has left it
}

void JobDialogViewTest::the_name_box_swallows_forbidden_characters_cleans_pastes_and_selects_all_on_focus() {
    DialogScene scene;
    QVERIFY(scene.openJob("Quarterly Report"));
    auto* name = scene.widget<QLineEdit>("pdfName");
    auto* profiles = scene.widget<QComboBox>("plProfile");

    // The dialog opens with the cursor in the name box and the whole name selected.
    QTRY_VERIFY(name->hasFocus());
    QCOMPARE(name->selectedText(), QStringLiteral("Quarterly Report"));

    QTest::keyClick(name, Qt::Key_End);
    QTest::keyClicks(name, " a:b*c?\"<x>|/\\ 50%!");
    QCOMPARE(name->text(), QStringLiteral("Quarterly Report abcx 50%"));
    QCOMPARE(scene.control("pdfName").text, std::string("Quarterly Report abcx 50%"));

    // Tabbing into the box from the profile list selects all again.
    profiles->setFocus(Qt::MouseFocusReason);
    QTRY_VERIFY(profiles->hasFocus());
    name->deselect();
    QTest::keyClick(profiles, Qt::Key_Tab);
    QTRY_VERIFY(name->hasFocus());
    QCOMPARE(name->selectedText(), QStringLiteral("Quarterly Report abcx 50%"));

    // A pasted title arrives cleaned, in the box and on the clipboard.
    QGuiApplication::clipboard()->setText(QStringLiteral("Microsoft Word - Letter.doc"));
    QTest::keyClick(name, Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(name->text(), QStringLiteral("Letter.doc"));
    QCOMPARE(scene.control("pdfName").text, std::string("Letter.doc"));
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("Letter.doc"));
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

    // The name row takes the place of the profile row, and everything below moves up with it.
    QVERIFY(!restricted.widget<QComboBox>("plProfile")->isVisible());
    auto* fullName = full.widget<QLineEdit>("pdfName");
    auto* name = restricted.widget<QLineEdit>("pdfName");
    QCOMPARE(name->y(), full.widget<QComboBox>("plProfile")->y());
    QCOMPARE(restricted.widget<QCheckBox>("chkOpenPDF")->y() - name->y(),
             full.widget<QCheckBox>("chkOpenPDF")->y() - fullName->y());
    auto* fullEmail = full.widget<QPushButton>("cmdEmail");
    QCOMPARE(buttons[0]->y() - name->y(), fullEmail->y() - fullName->y());
    QCOMPARE(full.window()->height() - restricted.window()->height(), RowPitch / tpp);
    // Nothing is left hanging below the buttons.
    QCOMPARE(restricted.window()->height() - (buttons[0]->y() + buttons[0]->height()),
             full.window()->height() - (fullEmail->y() + fullEmail->height()));
}

void JobDialogViewTest::each_look_paints_its_background_and_keeps_it_on_repainting_data() {
    QTest::addColumn<QString>("style");
    QTest::addColumn<QString>("policy");
    QTest::addColumn<uint>("top");
    QTest::addColumn<uint>("bottom");
    QTest::addColumn<QStringList>("hidden");
    using namespace pl::dialog;
    QTest::newRow("standard") << ""
                              << "" << StandardGradientStart << StandardGradientEnd << QStringList{};
    QTest::newRow("vista") << "VISTA"
                           << "" << VistaGradientStart << VistaGradientEnd << QStringList{};
    QTest::newRow("grey") << "grey"
                          << "" << SystemButtonFace << SystemButtonFace << QStringList{};
    // The gradient spans the smaller window from top to bottom all the same.
    QTest::newRow("restricted") << ""
                                << "disableemail,disablequality,disableopenpdf,disableconfig,disablemultidoc"
                                << StandardGradientStart << StandardGradientEnd
                                << QStringList{"cmdEmail",   "cmdMulti",  "plProfile",
                                               "chkOpenPDF", "lbOpenPDF", "lbConfig"};
}

void JobDialogViewTest::each_look_paints_its_background_and_keeps_it_on_repainting() {
    QFETCH(QString, style);
    QFETCH(QString, policy);
    QFETCH(uint, top);
    QFETCH(uint, bottom);
    QFETCH(QStringList, hidden);
    DialogScene scene;
    prepare(scene);
    if (!style.isEmpty())
        scene.world.setMachine("Style", style.toStdString());
    if (!policy.isEmpty())
        scene.world.setMachine("APol", policy.toStdString());
    QVERIFY(scene.open());
    for (const auto& name : hidden)
        QVERIFY2(!scene.window()->controlWidget(name.toStdString())->isVisible(), qPrintable(name));

    const QImage image = scene.window()->grab().toImage();
    QDir().mkpath(QStringLiteral(PAPERLARK_TEST_ARTIFACTS_DIR));
    QVERIFY(image.save(QStringLiteral(PAPERLARK_TEST_ARTIFACTS_DIR "/job_dialog_") + QTest::currentDataTag() +
                       QStringLiteral(".png")));
    // Points of the background near the right edge, where no control covers it: the first and last
    // rows, and half way down evenly in between.
    const int x = image.width() - 3, h = image.height();
    const QColor middle = top == bottom ? colorOf(top) : colorOf(dialog::gradientColor(top, bottom, h / 2, h));
    QVERIFY2(near(image.pixelColor(x, 1), colorOf(top)), qPrintable(image.pixelColor(x, 1).name()));
    QVERIFY2(near(image.pixelColor(x, h / 2), middle), qPrintable(image.pixelColor(x, h / 2).name()));
    QVERIFY2(near(image.pixelColor(x, h - 2), colorOf(bottom)), qPrintable(image.pixelColor(x, h - 2).name()));

    // Every repaint paints the whole background again.
    scene.window()->repaint();
    QCOMPARE(scene.window()->grab().toImage(), image);
}

void JobDialogViewTest::opens_as_a_fixed_size_dialog_in_the_middle_of_the_screen_with_the_mouse() {
    DialogScene scene;
    QVERIFY(scene.openJob("Report"));
    QWidget* window = scene.window();
    QVERIFY(window->isVisible());
    QVERIFY(!(window->windowFlags() & Qt::WindowMaximizeButtonHint));
    QVERIFY(!(window->windowFlags() & Qt::WindowMinimizeButtonHint));
    QCOMPARE(window->minimumSize(), window->size());
    QCOMPARE(window->maximumSize(), window->size());
    const QRect screen = QGuiApplication::screenAt(QCursor::pos())->availableGeometry();
    const QPoint off = window->frameGeometry().center() - screen.center();
    QVERIFY2(off.manhattanLength() <= 2, qPrintable(QStringLiteral("%1,%2 off centre").arg(off.x()).arg(off.y())));
}

QTEST_MAIN(JobDialogViewTest)
#include "job_dialog_view_test.moc"
