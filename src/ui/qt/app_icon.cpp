#include "ui/qt/app_icon.h"

#include <QPainter>
#include <QPainterPath>

namespace pl::qtui {

namespace {

const QColor Ink(0x2b, 0x4a, 0x7a);
const QColor Fold(0xdc, 0xe6, 0xf4);
const QColor Wing(0xc0, 0x39, 0x2b);

} // namespace

QPixmap appIconPixmap(int size) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    p.scale(size / 64.0, size / 64.0);
    const QPen outline(Ink, 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);

    // The page, its top right corner folded.
    QPainterPath page;
    page.moveTo(14, 4);
    page.lineTo(40, 4);
    page.lineTo(52, 16);
    page.lineTo(52, 60);
    page.lineTo(14, 60);
    page.closeSubpath();
    p.setPen(outline);
    p.setBrush(Qt::white);
    p.drawPath(page);

    QPainterPath fold;
    fold.moveTo(40, 4);
    fold.lineTo(40, 16);
    fold.lineTo(52, 16);
    p.setBrush(Fold);
    p.drawPath(fold);

    // The lark's wing.
    QPainterPath wing;
    wing.moveTo(20, 44);
    wing.cubicTo(28, 30, 38, 24, 50, 22);
    wing.cubicTo(44, 28, 40, 34, 38, 42);
    wing.cubicTo(32, 40, 26, 41, 20, 44);
    wing.closeSubpath();
    p.setPen(Qt::NoPen);
    p.setBrush(Wing);
    p.drawPath(wing);

    // The line of text below it.
    p.setBrush(Ink);
    p.drawRoundedRect(QRectF(20, 50, 24, 4), 2, 2);
    return pixmap;
}

QIcon appIcon() {
    QIcon icon;
    for (int size : {16, 22, 24, 32, 48, 64})
        icon.addPixmap(appIconPixmap(size));
    return icon;
}

} // namespace pl::qtui
