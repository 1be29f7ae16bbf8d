#pragma once
// The notification-area icon. Its clicks are handed on as the platform's mouse message numbers, as
// the resident form expects them: 513 left button down, 515 left double-click, 516 right button
// down (the context click).

#include <QObject>
#include <QString>
#include <QSystemTrayIcon>

#include <memory>

namespace pl::qtui {

inline constexpr int MessageLeftButtonDown = 513;
inline constexpr int MessageLeftDoubleClick = 515;
inline constexpr int MessageRightButtonDown = 516;

// The message number of a tray activation; 0 for one that has none (the middle button).
int mouseMessageFor(QSystemTrayIcon::ActivationReason reason);

class QtTray final : public QObject {
    Q_OBJECT
public:
    explicit QtTray(QObject* parent = nullptr);
    ~QtTray() override;

    // Adds the icon with its tip; adding it again only changes the tip.
    void add(const QString& tip);
    void remove();
    bool isShown() const;
    QString tip() const;
    // The icon itself (made on the first add); null before.
    QSystemTrayIcon* icon() const { return icon_.get(); }

signals:
    void mouseMessage(int message);

private:
    std::unique_ptr<QSystemTrayIcon> icon_;
};

} // namespace pl::qtui
