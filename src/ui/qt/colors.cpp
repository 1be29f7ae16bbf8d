#include "ui/qt/colors.h"

namespace pl::qtui {

bool isSystemColor(forms::Rgb value) {
    return (value & SystemColorFlag) != 0;
}

QPalette::ColorRole systemColorRole(forms::Rgb value) {
    // The index is the classic system colour number (COLOR_BTNFACE = 15 and so on).
    switch (value & 0xFF) {
    case 5:
        return QPalette::Base; // window background
    case 7:
        return QPalette::Text; // menu text
    case 8:
        return QPalette::Text; // window text
    case 13:
        return QPalette::Highlight; // selected items
    case 14:
        return QPalette::HighlightedText; // text of selected items
    case 15:
        return QPalette::Button; // button face
    case 16:
        return QPalette::Dark; // button shadow
    case 18:
        return QPalette::ButtonText; // button text
    case 20:
        return QPalette::Light; // button highlight
    case 21:
        return QPalette::Shadow; // dark 3-D shadow
    case 22:
        return QPalette::Midlight; // 3-D light
    case 23:
        return QPalette::ToolTipText; // tooltip text
    case 24:
        return QPalette::ToolTipBase; // tooltip background
    default:
        return QPalette::Window;
    }
}

QColor toQColor(forms::Rgb value, const QPalette& palette) {
    if (isSystemColor(value))
        return palette.color(QPalette::Active, systemColorRole(value));
    return QColor(static_cast<int>(value & 0xFF), static_cast<int>((value >> 8) & 0xFF),
                  static_cast<int>((value >> 16) & 0xFF));
}

} // namespace pl::qtui
