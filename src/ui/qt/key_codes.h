#pragma once
// Keys as the form models' event procedures know them: Form_KeyDown gets a classic key code (the
// Windows virtual-key number: 27 Escape, 65 for A, 115 for F4) with a shift state (1 Shift, 2 Ctrl,
// 4 Alt); a text box's KeyPress gets the typed character (13 Enter, 22 Ctrl+V), 0 meaning none.

#include <Qt>

class QKeyEvent;
class QMouseEvent;

namespace pl::qtui {

inline constexpr int ShiftMask = 1;
inline constexpr int CtrlMask = 2;
inline constexpr int AltMask = 4;

// The classic key code of `key`; 0 for keys that have none here.
int classicKeyCode(int key);
int classicKeyCode(const QKeyEvent& event);
int classicShift(Qt::KeyboardModifiers modifiers);
// The character a key press types, as KeyPress receives it; 0 when it types none.
int classicKeyAscii(const QKeyEvent& event);
// The classic mouse button number: 1 left, 2 right, 4 middle.
int classicButton(Qt::MouseButton button);

} // namespace pl::qtui
