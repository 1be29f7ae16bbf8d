#pragma once
// Where the converter's small windows appear: in the middle of the screen that holds the mouse,
// which is where the person is looking when a conversion they just started speaks up.

class QWidget;

namespace pl::converter {

void centreOnMouseScreen(QWidget& window);

} // namespace pl::converter
