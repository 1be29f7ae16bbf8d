// The job dialog as a person sees it, in each look and under a restrictive policy. Each picture is
// written to the build tree's test-artifacts folder so that it can be looked at after the run; the
// tests check the colours the looks promise and that a repaint keeps them.

#include "dialog/appearance.h"
#include "dialog_scene.h"
#include "ui/qt/colors.h"

#include <QCheckBox>
#include <QDir>
#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <cstdlib>

using namespace pl;
using namespace pl::test;

namespace {

QString artifact(const QString& name) {
    QDir().mkpath(QStringLiteral(PAPERLARK_TEST_ARTIFACTS_DIR));
    return QStringLiteral(PAPERLARK_TEST_ARTIFACTS_DIR) + QChar('/') + name;
}

QColor colorOf(forms::Rgb value) {
    return qtui::toQColor(value, QPalette());
}

bool near(const QColor& a, const QColor& b, int tolerance) {
    return std::abs(a.red() - b.red()) <= tolerance && std::abs(a.green() - b.green()) <= tolerance &&
           std::abs(a.blue() - b.blue()) <= tolerance;
}

QString describe(const QColor& c) {
    return c.name();
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

// The window as it is on screen now.
QImage picture(DialogScene& scene) {
    return scene.window()->grab().toImage();
}

// A point of the background that no control covers: near the right edge, in the given row.
QColor backgroundAt(const QImage& image, int y) {
    return image.pixelColor(image.width() - 3, y);
}

} // namespace

class JobDialogRenderTest : public QObject {
    Q_OBJECT
private slots:
    void the_standard_look_is_a_blue_gradient_that_survives_repainting();
    void the_vista_look_runs_from_black_to_grey();
    void the_grey_look_has_the_button_face_and_a_blue_link();
    void a_restrictive_policy_gives_a_small_dialog();
};

void JobDialogRenderTest::the_standard_look_is_a_blue_gradient_that_survives_repainting() {
    DialogScene scene;
    prepare(scene);
    QVERIFY(scene.open());
    QVERIFY(scene.widget<QPushButton>("cmdSort")->isVisible());
    QVERIFY(scene.widget<QCheckBox>("ckEncodePDF")->isVisible());

    const QImage first = picture(scene);
    QVERIFY(first.save(artifact(QStringLiteral("job_dialog_standard.png"))));
    const QColor top = backgroundAt(first, 1);
    const QColor bottom = backgroundAt(first, first.height() - 2);
    QVERIFY2(near(top, colorOf(dialog::StandardGradientStart), 3), qPrintable(describe(top)));
    QVERIFY2(near(bottom, colorOf(dialog::StandardGradientEnd), 3), qPrintable(describe(bottom)));
    // Evenly in between half way down.
    const QColor middle = backgroundAt(first, first.height() / 2);
    const QColor halfWay = colorOf(dialog::gradientColor(dialog::StandardGradientStart, dialog::StandardGradientEnd,
                                                         first.height() / 2, first.height()));
    QVERIFY2(near(middle, halfWay, 3), qPrintable(describe(middle)));

    // Every repaint paints the whole gradient again, with no controls on it too.
    scene.window()->repaint();
    QCOMPARE(picture(scene), first);
    QPixmap bare(scene.window()->size());
    scene.window()->render(&bare, QPoint(), QRegion(), QWidget::DrawWindowBackground);
    const QImage background = bare.toImage();
    QCOMPARE(background.pixelColor(20, 150), first.pixelColor(5, 150)); // under the name box
    QVERIFY(near(background.pixelColor(20, background.height() - 2), colorOf(dialog::StandardGradientEnd), 3));
}

void JobDialogRenderTest::the_vista_look_runs_from_black_to_grey() {
    DialogScene scene;
    prepare(scene);
    scene.world.setMachine("Style", "VISTA");
    QVERIFY(scene.open());

    const QImage image = picture(scene);
    QVERIFY(image.save(artifact(QStringLiteral("job_dialog_vista.png"))));
    QVERIFY2(near(backgroundAt(image, 1), QColor(0, 0, 0), 3), qPrintable(describe(backgroundAt(image, 1))));
    const QColor bottom = backgroundAt(image, image.height() - 2);
    QVERIFY2(near(bottom, QColor(0x78, 0x78, 0x78), 3), qPrintable(describe(bottom)));
}

void JobDialogRenderTest::the_grey_look_has_the_button_face_and_a_blue_link() {
    DialogScene scene;
    prepare(scene);
    scene.world.setMachine("Style", "grey");
    QVERIFY(scene.open());

    const QImage image = picture(scene);
    QVERIFY(image.save(artifact(QStringLiteral("job_dialog_grey.png"))));
    const QColor face = QApplication::palette(scene.window()).color(QPalette::Button);
    QCOMPARE(backgroundAt(image, 1), face);
    QCOMPARE(backgroundAt(image, image.height() - 2), face);

    auto* config = scene.widget<QLabel>("lbConfig");
    QCOMPARE(config->palette().color(QPalette::WindowText), QColor(0, 0, 255));
    QVERIFY(config->font().underline());
    QCOMPARE(config->cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(scene.widget<QLabel>("lbPdfName")->palette().color(QPalette::WindowText), QColor(0, 0, 0));
}

void JobDialogRenderTest::a_restrictive_policy_gives_a_small_dialog() {
    DialogScene full;
    prepare(full);
    QVERIFY(full.open());

    DialogScene scene;
    prepare(scene);
    scene.world.setMachine("APol", "disableemail,disablequality,disableopenpdf,disableconfig,disablemultidoc");
    QVERIFY(scene.open());

    const QImage image = picture(scene);
    QVERIFY(image.save(artifact(QStringLiteral("job_dialog_restricted.png"))));
    QVERIFY(image.width() < full.window()->width());
    QVERIFY(image.height() < full.window()->height());
    for (const char* hidden : {"cmdEmail", "cmdMulti", "plProfile", "chkOpenPDF", "lbOpenPDF", "lbConfig"})
        QVERIFY2(!scene.window()->controlWidget(hidden)->isVisible(), hidden);
    // The gradient spans the smaller window from top to bottom all the same.
    QVERIFY(near(backgroundAt(image, image.height() - 2), colorOf(dialog::StandardGradientEnd), 3));
}

QTEST_MAIN(JobDialogRenderTest)
#include "job_dialog_render_test.moc"
