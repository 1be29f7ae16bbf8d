#include "ui/qt_converter/desktop_notifications.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QEventLoop>
#include <QTimer>
#include <QVariantMap>

namespace pl::converter {

namespace {

const QString kService = QStringLiteral("org.freedesktop.Notifications");
const QString kPath = QStringLiteral("/org/freedesktop/Notifications");
const QString kInterface = QStringLiteral("org.freedesktop.Notifications");

QString fromUtf8(const std::string& text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// A service that is not running yet may still be started by the bus when it is first called.
bool serviceThere(QDBusConnection& bus) {
    QDBusConnectionInterface* names = bus.interface();
    if (!names)
        return false;
    if (names->isServiceRegistered(kService))
        return true;
    const QDBusReply<QStringList> activatable = bus.call(
        QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                                       QStringLiteral("org.freedesktop.DBus"), QStringLiteral("ListActivatableNames")));
    return activatable.isValid() && activatable.value().contains(kService);
}

} // namespace

std::unique_ptr<DesktopNotifications> DesktopNotifications::connectToSession() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected() || !serviceThere(bus))
        return nullptr;
    std::unique_ptr<DesktopNotifications> notifications(new DesktopNotifications);
    bus.connect(kService, kPath, kInterface, QStringLiteral("ActionInvoked"), notifications.get(),
                SLOT(actionInvoked(uint, QString)));
    bus.connect(kService, kPath, kInterface, QStringLiteral("NotificationClosed"), notifications.get(),
                SLOT(notificationClosed(uint, uint)));
    return notifications;
}

std::optional<uint> DesktopNotifications::notify(const QString& summary, const QString& body,
                                                 const QStringList& actions) {
    QDBusMessage call = QDBusMessage::createMethodCall(kService, kPath, kInterface, QStringLiteral("Notify"));
    QVariantMap hints;
    hints.insert(QStringLiteral("desktop-entry"), QStringLiteral("paperlark-assistant"));
    call << QStringLiteral("Paperlark") << uint(0) << QStringLiteral("paperlark") << summary << body << actions << hints
         << int(-1);
    const QDBusReply<uint> reply = QDBusConnection::sessionBus().call(call);
    if (!reply.isValid())
        return std::nullopt;
    return reply.value();
}

NoticeAnswer DesktopNotifications::announce(const Announcement& announcement, std::chrono::milliseconds wait) {
    answer_ = NoticeAnswer::Nothing;
    ended_ = false;
    // "default" is what a click on the notification itself does: open the file.
    const QStringList actions{QStringLiteral("default"), fromUtf8(announcement.openLabel),
                              QStringLiteral("open"),    fromUtf8(announcement.openLabel),
                              QStringLiteral("folder"),  fromUtf8(announcement.folderLabel)};
    const auto id = notify(fromUtf8(announcement.text), QString(), actions);
    if (!id)
        return NoticeAnswer::Nothing;
    waitingFor_ = *id;
    QEventLoop loop;
    QTimer limit;
    limit.setSingleShot(true);
    connect(&limit, &QTimer::timeout, &loop, &QEventLoop::quit);
    QTimer poll; // the signals arrive through the event loop; this ends it once one has come
    connect(&poll, &QTimer::timeout, &loop, [this, &loop] {
        if (ended_)
            loop.quit();
    });
    limit.start(wait);
    poll.start(20);
    if (!ended_)
        loop.exec();
    waitingFor_ = 0;
    return answer_;
}

bool DesktopNotifications::note(const QString& summary, const QString& body) {
    return notify(summary, body, {}).has_value();
}

void DesktopNotifications::actionInvoked(uint id, const QString& key) {
    if (id != waitingFor_ || ended_)
        return;
    if (key == QLatin1String("open") || key == QLatin1String("default"))
        answer_ = NoticeAnswer::OpenFile;
    else if (key == QLatin1String("folder"))
        answer_ = NoticeAnswer::ShowFolder;
    ended_ = true;
}

void DesktopNotifications::notificationClosed(uint id, uint) {
    if (id == waitingFor_)
        ended_ = true;
}

} // namespace pl::converter
