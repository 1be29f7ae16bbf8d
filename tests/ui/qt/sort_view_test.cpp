// The MultiDoc sort dialog through its real widgets: opened modally by the job dialog's Sort
// button, a document moved and the order applied, the close button, and a size kept per user.

#include "dialog/actions/job_actions.h"
#include "dialog/sort/sort_form.h"
#include "dialog_scene.h"
#include "modal_answers.h"

#include <QDir>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

#include <filesystem>
#include <functional>

using namespace pl;
using namespace pl::test;

namespace {

// Three documents queued by anna and a new job in the machine folder.
struct SortScene : DialogScene {
    SortScene() : DialogScene(dialog::jobActions) {
        world.root.write("suite/High Quality.plp", "-sDEVICE=pdfwrite\r\n");
        world.writeJob(world.userSpool, "MultiDocanna1.ps", "Anfang");
        world.writeJob(world.userSpool, "MultiDocanna2.ps", "Mitte");
        world.writeJob(world.userSpool, "MultiDocanna3.ps", "Ende");
        world.writeJob(world.machineSpool, "anna0001.ps", "Neu");
        world.offerJob(world.machineSpool, "anna0001.ps");
    }
    // Clicks Sort and runs `inside` on the sort dialog while it waits for the user.
    bool sortWith(const std::function<void(qtui::QtFormWindow&)>& inside) {
        ModalAnswer answer([&](QWidget* modal) {
            auto* sortWindow = qobject_cast<qtui::QtFormWindow*>(modal);
            if (sortWindow == nullptr || sortWindow->objectName() != QStringLiteral("frmSort")) {
                modal->hide();
                return;
            }
            inside(*sortWindow);
        });
        QTest::mouseClick(widget<QPushButton>("cmdSort"), Qt::LeftButton);
        return answer.answered();
    }
    QStringList queueTitles() const {
        QStringList titles;
        for (int n = 1;; ++n) {
            const std::string path = world.userSpool + "MultiDocanna" + std::to_string(n) + ".ps";
            if (!world.exists(path))
                return titles;
            const std::string content = world.root.read("spool/MultiDocanna" + std::to_string(n) + ".ps");
            const auto at = content.find("%%Title: ") + 9;
            titles << QString::fromStdString(content.substr(at, content.find('\r', at) - at));
        }
    }
};

template <class W> W* in(qtui::QtFormWindow& window, const char* name) {
    return qobject_cast<W*>(window.controlWidget(name));
}

void clickRow(QListWidget* list, int row) {
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(row)).center());
}

} // namespace

class SortViewTest : public QObject {
    Q_OBJECT
private slots:
    void the_sort_button_opens_the_queue_modally_and_ok_applies_the_new_order();
    void the_close_button_leaves_the_order_alone();
    void a_resized_dialog_keeps_its_size_for_the_next_time();
};

void SortViewTest::the_sort_button_opens_the_queue_modally_and_ok_applies_the_new_order() {
    SortScene scene;
    QVERIFY(scene.open());
    QVERIFY(scene.widget<QPushButton>("cmdSort")->isVisible());
    QStringList shown;
    QString caption;
    bool jobDialogBlocked = false;

    QVERIFY(scene.sortWith([&](qtui::QtFormWindow& sort) {
        caption = sort.windowTitle();
        jobDialogBlocked = sort.isModal() && !scene.window()->isActiveWindow();
        auto* list = in<QListWidget>(sort, "lstDocuments");
        for (int i = 0; i < list->count(); ++i)
            shown << list->item(i)->text();
        clickRow(list, 2);
        QTest::mouseClick(in<QPushButton>(sort, "cmdUp"), Qt::LeftButton);
        QTest::mouseClick(in<QPushButton>(sort, "cmdUp"), Qt::LeftButton);
        QDir().mkpath(QStringLiteral(PAPERLARK_TEST_ARTIFACTS_DIR));
        sort.grab().save(QStringLiteral(PAPERLARK_TEST_ARTIFACTS_DIR "/sort_dialog.png"));
        QTest::mouseClick(in<QPushButton>(sort, "cmdOK"), Qt::LeftButton);
    }));

    QCOMPARE(caption, QStringLiteral("MultiDoc Sort"));
    QVERIFY(jobDialogBlocked);
    QCOMPARE(shown, (QStringList{"1: Anfang", "2: Mitte", "3: Ende"}));
    QCOMPARE(scene.queueTitles(), (QStringList{"Ende", "Anfang", "Mitte"}));
    QVERIFY(scene.window()->isVisible()); // back to the job dialog
    QCOMPARE(QString::fromStdString(scene.world.errorList()), QString());
}

void SortViewTest::the_close_button_leaves_the_order_alone() {
    SortScene scene;
    QVERIFY(scene.open());
    QVERIFY(scene.sortWith([&](qtui::QtFormWindow& sort) {
        clickRow(in<QListWidget>(sort, "lstDocuments"), 1);
        QTest::mouseClick(in<QPushButton>(sort, "cmdDown"), Qt::LeftButton);
        QCOMPARE(in<QListWidget>(sort, "lstDocuments")->item(2)->text(), QStringLiteral("3: Mitte"));
        sort.close();
    }));
    QCOMPARE(scene.queueTitles(), (QStringList{"Anfang", "Mitte", "Ende"}));
}

void SortViewTest::a_resized_dialog_keeps_its_size_for_the_next_time() {
    SortScene scene;
    QVERIFY(scene.open());
    int listWidthBefore = 0, listWidthAfter = 0;
    QPoint okBefore, okAfter;
    QVERIFY(scene.sortWith([&](qtui::QtFormWindow& sort) {
        listWidthBefore = in<QListWidget>(sort, "lstDocuments")->width();
        okBefore = in<QPushButton>(sort, "cmdOK")->pos();
        sort.resize(sort.width() + 100, sort.height() + 60);
        listWidthAfter = in<QListWidget>(sort, "lstDocuments")->width();
        okAfter = in<QPushButton>(sort, "cmdOK")->pos();
        QTest::mouseClick(in<QPushButton>(sort, "cmdCancel"), Qt::LeftButton);
    }));
    // The list takes the new width; the buttons keep to the right edge and the bottom.
    QCOMPARE(listWidthAfter, listWidthBefore + 100);
    QCOMPARE(okAfter, okBefore + QPoint(100, 60));
    const int tpp = scene.window()->twipsPerPixel();
    const std::string kept = scene.world.user("PDFJoinSize");
    QCOMPARE(QString::fromStdString(kept),
             QString::fromStdString(std::to_string(dialog::sort_layout::DesignWidth + 100 * tpp) + ";" +
                                    std::to_string(dialog::sort_layout::DesignHeight + 60 * tpp)));

    // Opened again, it has that size.
    QSize reopened;
    QVERIFY(scene.sortWith([&](qtui::QtFormWindow& sort) {
        reopened = sort.size();
        sort.close();
    }));
    QCOMPARE(reopened.width(), (dialog::sort_layout::DesignWidth - dialog::sort_layout::FrameWidth) / tpp + 100);
    QCOMPARE(reopened.height(), (dialog::sort_layout::DesignHeight - dialog::sort_layout::FrameHeight) / tpp + 60);
}

QTEST_MAIN(SortViewTest)
#include "sort_view_test.moc"
