// The converter's announcements through the desktop's notification service, against a stand-in
// service on a private session bus (the test runs under dbus-run-session): what it is asked to
// show, and that the action the person picks in the notification is carried out.

#include "desktop_session.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QProcess>
#include <QThread>

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

using pl::test::DesktopSession;

TEST(converter_notifications, a_finished_file_is_announced_by_the_desktop_and_the_chosen_action_is_done) {
    const char* bus = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    if (!bus || !*bus)
        GTEST_SKIP() << "no session bus: run under dbus-run-session";
    DesktopSession session(bus);
    auto& sandbox = session.sandbox();
    const std::string record = sandbox.home() + "notifications";

    // The person clicks "Show folder" on the first, "Open" on the second and lets the third go.
    QProcess service;
    service.start(QStringLiteral(NOTIFICATION_STANDIN),
                  {QString::fromStdString(record), QStringLiteral("folder,open,-")});
    ASSERT_TRUE(service.waitForStarted());
    QDBusConnectionInterface* names = QDBusConnection::sessionBus().interface();
    ASSERT_TRUE(names);
    for (int i = 0; i < 250 && !names->isServiceRegistered(QStringLiteral("org.freedesktop.Notifications")); ++i)
        QThread::msleep(20);
    ASSERT_TRUE(names->isServiceRegistered(QStringLiteral("org.freedesktop.Notifications")));

    const std::string out = sandbox.out().substr(0, sandbox.out().size() - 1);
    struct Case {
        std::string language;
        std::string output;
        std::string notified;
        std::string handedOver; // what xdg-open was given; empty for nothing
    } const cases[] = {
        {"en", session.desktop() + "Quarterly Report.pdf",
         "Paperlark|0|paperlark|Quarterly Report.pdf is on your desktop||default,Open,open,Open,folder,Show "
         "folder|-1",
         "xdg-open " + sandbox.home() + "Desktop"},
        {"de", sandbox.out() + "Rechnung.pdf",
         "Paperlark|0|paperlark|Rechnung.pdf liegt im Ordner " + out +
             "||default,\xC3\x96"
             "ffnen,open,\xC3\x96"
             "ffnen,folder,Ordner anzeigen|-1",
         "xdg-open " + sandbox.out() + "Rechnung.pdf"},
        {"en", sandbox.out() + "Memo.pdf",
         "Paperlark|0|paperlark|Memo.pdf is in the folder " + out + "||default,Open,open,Open,folder,Show folder|-1",
         ""},
    };
    std::vector<std::string> notified, handedOver;
    for (const Case& c : cases) {
        sandbox.setUserValue("language", c.language);
        const std::string job = sandbox.writeJob("job.ps", {"Page"});
        EXPECT_EQ(session.convert({"/3", "delps,save", "", c.output, job}, {}), 0) << c.output;
        EXPECT_EQ(pl::test::pdfPages(c.output), 1);
        notified.push_back(c.notified);
        if (!c.handedOver.empty())
            handedOver.push_back(c.handedOver);
    }
    service.kill();
    service.waitForFinished();

    std::vector<std::string> lines;
    std::istringstream in(pl::test::readFile(record));
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    EXPECT_EQ(lines, notified);
    EXPECT_EQ(session.handedOver(), handedOver);
}
