// The reference of footprint_bench: the smallest Qt program that does what the assistant's idle
// presence needs from the toolkit, a notification-area icon with a one-item menu.

#include <QApplication>
#include <QMenu>
#include <QPainter>
#include <QSystemTrayIcon>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QPixmap picture(32, 32);
    picture.fill(Qt::transparent);
    {
        QPainter p(&picture);
        p.setBrush(Qt::white);
        p.drawRect(6, 2, 20, 28);
    }
    QMenu menu;
    menu.addAction(QStringLiteral("Show"));
    QSystemTrayIcon tray{QIcon(picture)};
    tray.setToolTip(QStringLiteral("Reference"));
    tray.setContextMenu(&menu);
    tray.show();
    return QApplication::exec();
}
