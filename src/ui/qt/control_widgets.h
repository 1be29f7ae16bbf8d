#pragma once
// The Qt widget of each kind of control, and how a control of the model is drawn on it: geometry
// from twips, caption or text, value, visibility, colours and font. Nothing here reacts to the user.

#include "forms/form_model.h"

#include <QString>

#include <string>

class QWidget;

namespace pl::qtui {

// A new widget for `control` inside `parent`; null for controls that are never seen (timers,
// menus and their items).
QWidget* makeControlWidget(const forms::Control& control, QWidget* parent);

// Draws `control` on `widget` (made by makeControlWidget for it). Only what differs from what the
// widget shows is set, so that drawing again keeps the caret, the selection and open pop-ups.
void renderControl(QWidget& widget, const forms::Control& control, int twipsPerPixel);

// The control's caption or text as Qt shows it: classic line ends become new lines.
QString displayText(const std::string& text);

} // namespace pl::qtui
