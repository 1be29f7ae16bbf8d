#include "ui/qt/tray.h"

#include "ui/qt/app_icon.h"

namespace pl::qtui {

int mouseMessageFor(QSystemTrayIcon::ActivationReason reason) {
    switch (reason) {
    case QSystemTrayIcon::Trigger:
        return MessageLeftButtonDown;
    case QSystemTrayIcon::DoubleClick:
        return MessageLeftDoubleClick;
    case QSystemTrayIcon::Context:
        return MessageRightButtonDown;
    default:
        return 0;
    }
}

QtTray::QtTray(QObject* parent) : QObject(parent) {}

QtTray::~QtTray() = default;

void QtTray::add(const QString& tip) {
    if (!icon_) {
        // Made only when first needed: most of the time no MultiDoc documents wait and the
        // assistant shows nothing at all.
        icon_ = std::make_unique<QSystemTrayIcon>(appIcon());
        connect(icon_.get(), &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
            if (const int message = mouseMessageFor(reason))
                emit mouseMessage(message);
        });
    }
    if (icon_->toolTip() != tip)
        icon_->setToolTip(tip);
    if (!icon_->isVisible())
        icon_->show();
}

void QtTray::remove() {
    if (icon_ && icon_->isVisible())
        icon_->hide();
}

bool QtTray::isShown() const {
    return icon_ && icon_->isVisible();
}

QString QtTray::tip() const {
    return icon_ ? icon_->toolTip() : QString();
}

} // namespace pl::qtui
