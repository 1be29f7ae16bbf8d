#include "ui/qt_converter/window_placement.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace pl::converter {

void centreOnMouseScreen(QWidget& window) {
    QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (!screen)
        return;
    window.adjustSize();
    QRect frame = window.frameGeometry();
    frame.moveCenter(screen->availableGeometry().center());
    window.move(frame.topLeft());
}

} // namespace pl::converter
