// A stand-in for the desktop's notification service, for tests on a private session bus: it takes
// the name org.freedesktop.Notifications, writes every Notify call as one line into the file named
// by its first argument, and answers each with the next action key of its second argument (a comma
// list; "-" chooses nothing) followed by the notification's closing.
//
//     notification_service_standin RECORD-FILE [KEY,KEY,...]

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QFile>
#include <QObject>
#include <QStringList>
#include <QTextStream>
#include <QTimer>
#include <QVariantMap>

#include <cstdio>

class NotificationService : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")
public:
    NotificationService(QString record, QStringList answers)
        : record_(std::move(record)), answers_(std::move(answers)) {}

public slots:
    uint Notify(const QString& appName, uint replacesId, const QString& appIcon, const QString& summary,
                const QString& body, const QStringList& actions, const QVariantMap&, int expireTimeout) {
        const uint id = ++lastId_;
        QFile file(record_);
        if (file.open(QIODevice::Append | QIODevice::Text)) {
            QTextStream(&file) << appName << '|' << replacesId << '|' << appIcon << '|' << summary << '|'
                               << QString(body).replace('\n', "\\n") << '|' << actions.join(',') << '|' << expireTimeout
                               << '\n';
        }
        const QString key = answers_.isEmpty() ? QStringLiteral("-") : answers_.takeFirst();
        QTimer::singleShot(50, this, [this, id, key] {
            if (key != QLatin1String("-"))
                emit ActionInvoked(id, key);
            emit NotificationClosed(id, key == QLatin1String("-") ? 1 : 2);
        });
        return id;
    }
    QStringList GetCapabilities() { return {QStringLiteral("actions"), QStringLiteral("body")}; }
    void CloseNotification(uint id) { emit NotificationClosed(id, 3); }

signals:
    void ActionInvoked(uint id, const QString& actionKey);
    void NotificationClosed(uint id, uint reason);

private:
    QString record_;
    QStringList answers_;
    uint lastId_ = 0;
};

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const QStringList args = application.arguments();
    if (args.size() < 2) {
        std::fprintf(stderr, "usage: notification_service_standin RECORD-FILE [KEY,KEY,...]\n");
        return 2;
    }
    NotificationService service(args.at(1), args.size() > 2 ? args.at(2).split(',') : QStringList());
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.registerObject(QStringLiteral("/org/freedesktop/Notifications"), &service,
                            QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals) ||
        !bus.registerService(QStringLiteral("org.freedesktop.Notifications"))) {
        std::fprintf(stderr, "notification_service_standin: cannot take the name: %s\n",
                     qPrintable(bus.lastError().message()));
        return 1;
    }
    return application.exec();
}

#include "notification_service_standin.moc"
