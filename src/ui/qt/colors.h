#pragma once
// Colour values of the form models (0x00BBGGRR, as the classic RGB() packs them) as Qt colours. A
// value with the high bit set names a system colour (0x8000000F: the face of buttons); those are
// taken from the widget's palette, so the dialog follows the desktop's theme as it would on Windows.

#include "forms/form_model.h"

#include <QColor>
#include <QPalette>

namespace pl::qtui {

inline constexpr forms::Rgb SystemColorFlag = 0x80000000;

bool isSystemColor(forms::Rgb value);
// The palette role that stands for the system colour `value` names.
QPalette::ColorRole systemColorRole(forms::Rgb value);
QColor toQColor(forms::Rgb value, const QPalette& palette);

} // namespace pl::qtui
