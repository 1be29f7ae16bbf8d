#pragma once
// The desktop's own notifications (the org.freedesktop.Notifications service on the session bus),
// where the session runs such a service. An announcement with actions keeps the converter waiting
// until the person chooses one or the notification goes away, so that the action can still be done.

#include "converter/user_interface.h"

#include <QObject>
#include <QString>

#include <chrono>
#include <memory>
#include <optional>

namespace pl::converter {

class DesktopNotifications : public QObject {
    Q_OBJECT
public:
    // Nothing when there is no session bus or no notification service on it.
    static std::unique_ptr<DesktopNotifications> connectToSession();

    // Shows the announcement and waits, at most `wait`, for the person's choice.
    NoticeAnswer announce(const Announcement& announcement, std::chrono::milliseconds wait);
    // A notification without actions; false when the service refused it.
    bool note(const QString& summary, const QString& body);

private slots:
    void actionInvoked(uint id, const QString& key);
    void notificationClosed(uint id, uint reason);

private:
    DesktopNotifications() = default;
    std::optional<uint> notify(const QString& summary, const QString& body, const QStringList& actions);

    uint waitingFor_ = 0;
    bool ended_ = false;
    NoticeAnswer answer_ = NoticeAnswer::Nothing;
};

} // namespace pl::converter
