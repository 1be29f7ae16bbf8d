#include "ui/qt/background.h"

#include "ui/qt/colors.h"
#include "ui/qt/twips.h"

#include <QApplication>
#include <QPainter>
#include <QWidget>

namespace pl::qtui {

void paintBackground(QPainter& painter, const QWidget& widget, const dialog::Background& background,
                     forms::Rgb backColor, int scaleHeight, int twipsPerPixel) {
    const QPalette system = QApplication::palette(&widget);
    if (!background.gradient) {
        painter.fillRect(widget.rect(), toQColor(backColor, system));
        return;
    }
    QPen pen;
    pen.setWidth(background.drawWidth);
    const int width = widget.width();
    for (const auto& line :
         dialog::gradientLines(background.gradientStart, background.gradientEnd, scaleHeight, twipsPerPixel)) {
        pen.setColor(toQColor(line.color, system));
        painter.setPen(pen);
        const int y = toPixels(line.y, twipsPerPixel);
        painter.drawLine(0, y, width, y);
    }
}

} // namespace pl::qtui
