#include "ui/qt/twips.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <cmath>

namespace pl::qtui {

int twipsPerPixelAt(double dotsPerInch) {
    if (!(dotsPerInch > 0))
        return NormalTwipsPerPixel;
    return std::max(1, static_cast<int>(std::lround(TwipsPerInch / dotsPerInch)));
}

int twipsPerPixel(const QScreen* screen) {
    if (screen == nullptr)
        screen = QGuiApplication::primaryScreen();
    if (screen == nullptr)
        return NormalTwipsPerPixel;
    return twipsPerPixelAt(screen->logicalDotsPerInch());
}

int toPixels(int twips, int twipsPerPixel) {
    return static_cast<int>(std::lround(static_cast<double>(twips) / twipsPerPixel));
}

int toTwips(int pixels, int twipsPerPixel) {
    return pixels * twipsPerPixel;
}

} // namespace pl::qtui
