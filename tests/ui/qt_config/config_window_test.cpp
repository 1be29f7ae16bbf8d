// The configuration program's window on the offscreen platform: every page drawn from the model
// (and kept as a picture in the test-artifacts folder), OK writing what was changed in the widgets
// and Cancel writing nothing.

#include "qt_world.h"
#include "ui/qt_config/config_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>

#include <memory>

namespace {

using pl::test::QtWorld;

// The program's window on a world of its own, as main() makes it.
struct ConfigScene {
    QtWorld world;
    std::unique_ptr<pl::qtui::ConfigWindow> window;
    std::unique_ptr<pl::Services> services;
    std::unique_ptr<pl::config::ConfigForm> form;

    void open() {
        window = std::make_unique<pl::qtui::ConfigWindow>();
        services =
            std::make_unique<pl::Services>(pl::Services{*world.os, world.registry, world.errors, *window});
        form = std::make_unique<pl::config::ConfigForm>(*services, *window);
        form->Form_Load();
        window->bind(*form);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    }
    template <class W> W* find(const char* name) const { return window->findChild<W*>(QString::fromLatin1(name)); }
    std::string user(const char* name) { return world.user(name); }
};

} // namespace

class ConfigWindowTest : public QObject {
    Q_OBJECT
private slots:
    void each_page_shows_the_settings_and_what_the_administrator_locked();
    void ok_writes_what_was_changed_and_cancel_nothing();
};

void ConfigWindowTest::each_page_shows_the_settings_and_what_the_administrator_locked() {
    ConfigScene scene;
    scene.world.root.write("suite/High Quality.plp", "-sDEVICE=pdfwrite -dPDFSETTINGS=/prepress\r\n");
    scene.world.root.write("suite/French.lan", "[plAssist.exe]\r\ntext_19: Configurer\r\n");
    scene.world.root.write("home/Paperlark/Scans.plp",
                           "-sDEVICE=png16m -r300\r\nplassist=savedir\r\nplassist2=/srv\r\n");
    scene.world.setMachine("APol", "disableemail|");
    scene.world.setMachine("DefaultProfile", "High Quality");
    scene.world.setUser("APol", "enableemail");
    scene.open();
    auto* tabs = scene.window->tabs();
    QCOMPARE(tabs->count(), 4);
    QDir().mkpath(QStringLiteral(PAPERLARK_TEST_ARTIFACTS_DIR));

    // Language: the built-in languages and the suite's language file; English is chosen.
    auto* languages = scene.find<QListWidget>("languages");
    QCOMPARE(languages->count(), 4);
    QCOMPARE(languages->item(3)->text(), QStringLiteral("Language file French"));
    QCOMPARE(languages->currentRow(), 2);

    // Profiles: the own profile can be edited, the suite's cannot.
    auto* profiles = scene.find<QListWidget>("profiles");
    QCOMPARE(profiles->count(), 2);
    profiles->setCurrentRow(1);
    QCOMPARE(scene.find<QComboBox>("format")->currentText(), QStringLiteral("PNG (png16m)"));
    QVERIFY(scene.find<QComboBox>("format")->isEnabled());
    QCOMPARE(scene.find<QLineEdit>("target")->text(), QStringLiteral("/srv"));
    QCOMPARE(scene.find<QLabel>("switchLine")->text(), QStringLiteral("-sDEVICE=png16m -r300"));

    // Policy: the administrator's bar locks the user's own choice out.
    tabs->setCurrentIndex(3);
    QVERIFY(scene.find<QLabel>("policyLock")->isVisible());
    QVERIFY(!scene.find<QComboBox>("userPolicy0")->isEnabled());
    QCOMPARE(scene.find<QComboBox>("userPolicy0")->currentText(), QStringLiteral("show"));

    const char* pages[] = {"language", "defaults", "profiles", "policy"};
    for (int i = 0; i < 4; ++i) {
        tabs->setCurrentIndex(i);
        QCoreApplication::processEvents();
        QVERIFY(scene.window->grab().toImage().save(QStringLiteral(PAPERLARK_TEST_ARTIFACTS_DIR "/config_") +
                                                    QString::fromLatin1(pages[i]) + QStringLiteral(".png")));
    }
    tabs->setCurrentIndex(2);
    profiles->setCurrentRow(0);
    QVERIFY(!scene.find<QComboBox>("format")->isEnabled());
    QCoreApplication::processEvents(); // the layout settles on the rows the format has
    QVERIFY(
        scene.window->grab().toImage().save(QStringLiteral(PAPERLARK_TEST_ARTIFACTS_DIR "/config_suite_profile.png")));
    QCOMPARE(QString::fromStdString(scene.world.errorList()), QString());
}

void ConfigWindowTest::ok_writes_what_was_changed_and_cancel_nothing() {
    for (const bool ok : {false, true}) {
        ConfigScene scene;
        scene.world.root.write("home/Paperlark/Mine.plp", "-sDEVICE=pdfwrite\r\n");
        scene.open();
        scene.window->tabs()->setCurrentIndex(1);
        // A click on the box itself (its label stretches across the row, where a click misses).
        QTest::mouseClick(scene.find<QCheckBox>("openPdf"), Qt::LeftButton, {}, QPoint(6, 6));
        QTest::keyClicks(scene.find<QLineEdit>("desktopCaption"), QStringLiteral("Ablage"));

        // A switch the converter refuses is said at once, while it is typed.
        scene.window->tabs()->setCurrentIndex(2);
        scene.find<QListWidget>("profiles")->setCurrentRow(0);
        QTest::keyClicks(scene.find<QLineEdit>("switches"), QStringLiteral("-dNOSAFER"));
        QVERIFY(scene.find<QLabel>("refusal")->isVisible());
        for (int i = 0; i < 9; ++i)
            QTest::keyClick(scene.find<QLineEdit>("switches"), Qt::Key_Backspace);
        QTest::keyClicks(scene.find<QLineEdit>("switches"), QStringLiteral("-dFastWebView"));
        QVERIFY(!scene.find<QLabel>("refusal")->isVisible());

        QTest::mouseClick(scene.find<QPushButton>(ok ? "cmdOk" : "cmdCancel"), Qt::LeftButton);
        QVERIFY(!scene.window->isVisible());
        QCOMPARE(scene.user("OpenPdf"), std::string(ok ? "0" : ""));
        QCOMPARE(scene.user("DesktopCaption"), std::string(ok ? "Ablage" : ""));
        QCOMPARE(scene.world.root.read("home/Paperlark/Mine.plp"),
                 std::string(ok ? "-sDEVICE=pdfwrite -dFastWebView\r\n" : "-sDEVICE=pdfwrite\r\n"));
    }
}

QTEST_MAIN(ConfigWindowTest)
#include "config_window_test.moc"
