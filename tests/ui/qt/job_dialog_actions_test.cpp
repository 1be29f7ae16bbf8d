// The job dialog's buttons and options through the real widgets, with the program's own actions: a
// recording converter in the suite folder writes down every call it gets.

#include "dialog/actions/job_actions.h"
#include "dialog_scene.h"
#include "modal_answers.h"

#include <QCheckBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>
#include <vector>

using namespace pl;
using namespace pl::test;

namespace {

// The arguments of the first call the recording converter wrote down, waiting for it a while.
std::vector<std::string> firstCall(const std::string& recordFile) {
    const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (std::chrono::steady_clock::now() < until) {
        std::ifstream in(recordFile);
        std::stringstream text;
        text << in.rdbuf();
        const std::string record = text.str();
        if (record.find("=== end") != std::string::npos) {
            std::vector<std::string> args;
            std::istringstream lines(record);
            for (std::string line; std::getline(lines, line) && line != "=== end";)
                if (line.starts_with("arg="))
                    args.push_back(line.substr(4));
            return args;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return {};
}

bool holds(const std::vector<std::string>& args, const std::string& word) {
    return std::find(args.begin(), args.end(), word) != args.end();
}

// anna's job in the machine spool folder, the recording converter as the suite's converter.
struct ActionScene : DialogScene {
    ActionScene() : DialogScene(dialog::jobActions) {
        recordFile = world.root.folder() + "calls.txt";
        world.env.set("RECORDING_CONVERTER_LOG", recordFile);
        std::filesystem::copy_file(RECORDING_CONVERTER, world.suite + "paperlark");
        world.root.write("suite/High Quality.plp", "-sDEVICE=pdfwrite\r\n");
        world.writeJob(world.machineSpool, "anna0001.ps", "Quarterly Report");
        world.offerJob(world.machineSpool, "anna0001.ps");
    }
    dialog::DialogJobActions& buttons() { return dynamic_cast<dialog::DialogJobActions&>(dialog->actions()); }
    std::string recordFile;
};

Qt::CheckState state(QCheckBox* box) {
    return box->checkState();
}

} // namespace

class JobDialogActionsTest : public QObject {
    Q_OBJECT
private slots:
    void enter_in_the_name_box_puts_the_pdf_on_the_desktop();
    void the_access_key_of_save_opens_the_save_dialog_and_saves_there();
    void the_encryption_box_goes_through_three_states_with_a_password_profile();
    void the_encryption_box_only_toggles_without_one();
    void the_open_option_is_remembered_when_the_box_loses_the_focus();
    void the_configuration_link_warns_when_the_program_is_missing();
};

void JobDialogActionsTest::enter_in_the_name_box_puts_the_pdf_on_the_desktop() {
    ActionScene scene;
    QVERIFY(scene.open());
    QPointer<QWidget> window = scene.window();
    auto* name = scene.widget<QLineEdit>("pdfName");
    QTRY_VERIFY(name->hasFocus());

    QTest::keyClicks(name, "Brief");
    QTest::keyClick(name, Qt::Key_Return);

    const auto args = firstCall(scene.recordFile);
    QVERIFY2(!args.empty(), "the converter was not called");
    QCOMPARE(QString::fromStdString(args[0]), QStringLiteral("/3"));
    QVERIFY(holds(args, scene.world.desktop + "Brief.pdf"));
    QVERIFY(!scene.world.exists(scene.world.machineSpool + "anna0001.ps")); // taken out of the watcher's sight
    QVERIFY(!scene.dialog->form().loaded);
    QTRY_VERIFY(window.isNull());
    QCOMPARE(QString::fromStdString(scene.world.errorList()), QString());
}

void JobDialogActionsTest::the_access_key_of_save_opens_the_save_dialog_and_saves_there() {
    ActionScene scene;
    const std::string out = scene.world.root.folder() + "out";
    std::filesystem::create_directories(out);
    QVERIFY(scene.open());
    QStringList filters;
    ModalAnswer save([&](QWidget* modal) {
        auto* dialog = qobject_cast<QFileDialog*>(modal);
        if (dialog == nullptr)
            return modal->hide();
        filters = dialog->nameFilters();
        auto* edit = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        edit->setText(QString::fromStdString(out + "/Report.PDF"));
        QTest::keyClick(edit, Qt::Key_Return);
    });

    // "Save &As..." answers to Alt+A.
    QTest::keyClick(scene.window(), Qt::Key_A, Qt::AltModifier);

    QTRY_VERIFY(save.answered()); // the button clicks itself a moment later, as it is seen pressed
    QCOMPARE(filters, QStringList{QStringLiteral("Paperlark File (.pdf) (*.pdf)")});
    const auto args = firstCall(scene.recordFile);
    QVERIFY2(holds(args, out + "/Report.pdf"), args.empty() ? "no call" : args.back().c_str());
    QCOMPARE(QString::fromStdString(scene.world.user("LastDir")), QString::fromStdString(out));
}

void JobDialogActionsTest::the_encryption_box_goes_through_three_states_with_a_password_profile() {
    ActionScene scene;
    scene.world.env.set("PATH", "/usr/bin:/bin"); // Ghostscript: encryption is offered
    scene.world.root.write("suite/High Quality.plp", "-sDEVICE=pdfwrite\r\nownerpassword=geheim\r\n");
    QVERIFY(scene.open());
    auto* box = scene.widget<QCheckBox>("ckEncodePDF");
    QVERIFY(box->isVisible());
    QVERIFY(scene.buttons().EncodeTriState);
    QCOMPARE(state(box), Qt::PartiallyChecked); // the profile decides

    QTest::mouseClick(box, Qt::LeftButton);
    QCOMPARE(state(box), Qt::Checked);
    QTest::mouseClick(box, Qt::LeftButton);
    QCOMPARE(state(box), Qt::PartiallyChecked); // a ticked box goes on to grey
    QCOMPARE(scene.control("ckEncodePDF").value, forms::Grayed);

    // Its label goes round all three.
    auto* label = scene.widget<QLabel>("lbEncodePDF");
    QTest::mouseClick(label, Qt::LeftButton);
    QCOMPARE(state(box), Qt::Unchecked);
    QTest::mouseClick(label, Qt::LeftButton);
    QCOMPARE(state(box), Qt::Checked);
    QTest::mouseClick(label, Qt::LeftButton);
    QCOMPARE(state(box), Qt::PartiallyChecked);
}

void JobDialogActionsTest::the_encryption_box_only_toggles_without_one() {
    ActionScene scene;
    scene.world.env.set("PATH", "/usr/bin:/bin");
    QVERIFY(scene.open());
    auto* box = scene.widget<QCheckBox>("ckEncodePDF");
    QVERIFY(!scene.buttons().EncodeTriState);
    QCOMPARE(state(box), Qt::Unchecked);
    for (auto expected : {Qt::Checked, Qt::Unchecked, Qt::Checked}) {
        QTest::mouseClick(box, Qt::LeftButton);
        QCOMPARE(state(box), expected);
    }
    QTest::mouseClick(scene.widget<QLabel>("lbEncodePDF"), Qt::LeftButton);
    QCOMPARE(state(box), Qt::Unchecked);
    QCOMPARE(scene.control("ckEncodePDF").value, forms::Unchecked);
}

void JobDialogActionsTest::the_open_option_is_remembered_when_the_box_loses_the_focus() {
    ActionScene scene;
    scene.world.setUser("OpenPdf", "0");
    QVERIFY(scene.open());
    auto* box = scene.widget<QCheckBox>("chkOpenPDF");
    QCOMPARE(state(box), Qt::Unchecked);

    QTest::mouseClick(box, Qt::LeftButton); // the click gives it the focus too
    QCOMPARE(state(box), Qt::Checked);
    QCOMPARE(QString::fromStdString(scene.world.user("OpenPdf")), QStringLiteral("0"));
    scene.widget<QLineEdit>("pdfName")->setFocus(Qt::TabFocusReason);
    QTRY_COMPARE(QString::fromStdString(scene.world.user("OpenPdf")), QStringLiteral("1"));

    // Its label flips it as well.
    QTest::mouseClick(scene.widget<QLabel>("lbOpenPDF"), Qt::LeftButton);
    QCOMPARE(state(box), Qt::Unchecked);
}

void JobDialogActionsTest::the_configuration_link_warns_when_the_program_is_missing() {
    ActionScene scene;
    QVERIFY(scene.open());
    auto seen = std::make_shared<SeenMessageBox>();
    auto answer = answerMessageBox(QMessageBox::Ok, seen);

    QTest::mouseClick(scene.widget<QLabel>("lbConfig"), Qt::LeftButton);

    QVERIFY(seen->shown);
    QCOMPARE(seen->icon, QMessageBox::Warning);
    QVERIFY2(seen->text.contains(QStringLiteral("plucnfg")), qPrintable(seen->text));
    QVERIFY(scene.window()->isVisible()); // the dialog goes on waiting
}

QTEST_MAIN(JobDialogActionsTest)
#include "job_dialog_actions_test.moc"
