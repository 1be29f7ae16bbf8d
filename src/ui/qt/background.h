#pragma once
// A form's background as its model chose it: the gradient's lines, each in the colour the model
// computes, one pixel apart; or the plain back colour. Painted on every paint event, which is what
// keeps it when the window is covered and uncovered.

#include "dialog/appearance.h"
#include "forms/form_model.h"

class QPainter;
class QWidget;

namespace pl::qtui {

// Paints `widget` (whose drawing area is `scaleHeight` twips high) with `painter`.
void paintBackground(QPainter& painter, const QWidget& widget, const dialog::Background& background,
                     forms::Rgb backColor, int scaleHeight, int twipsPerPixel);

} // namespace pl::qtui
