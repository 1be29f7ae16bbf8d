#include "ui/qt/key_codes.h"

#include <QKeyEvent>

namespace pl::qtui {

int classicKeyCode(int key) {
    if (key >= Qt::Key_A && key <= Qt::Key_Z)
        return key; // Qt's letters are the upper-case characters, as the virtual keys are
    if (key >= Qt::Key_0 && key <= Qt::Key_9)
        return key;
    if (key >= Qt::Key_F1 && key <= Qt::Key_F24)
        return 112 + (key - Qt::Key_F1);
    switch (key) {
    case Qt::Key_Backspace:
        return 8;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return 9;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return 13;
    case Qt::Key_Shift:
        return 16;
    case Qt::Key_Control:
        return 17;
    case Qt::Key_Alt:
        return 18;
    case Qt::Key_Pause:
        return 19;
    case Qt::Key_CapsLock:
        return 20;
    case Qt::Key_Escape:
        return 27;
    case Qt::Key_Space:
        return 32;
    case Qt::Key_PageUp:
        return 33;
    case Qt::Key_PageDown:
        return 34;
    case Qt::Key_End:
        return 35;
    case Qt::Key_Home:
        return 36;
    case Qt::Key_Left:
        return 37;
    case Qt::Key_Up:
        return 38;
    case Qt::Key_Right:
        return 39;
    case Qt::Key_Down:
        return 40;
    case Qt::Key_Insert:
        return 45;
    case Qt::Key_Delete:
        return 46;
    default:
        return 0;
    }
}

int classicKeyCode(const QKeyEvent& event) {
    return classicKeyCode(event.key());
}

int classicShift(Qt::KeyboardModifiers modifiers) {
    int shift = 0;
    if (modifiers & Qt::ShiftModifier)
        shift |= ShiftMask;
    if (modifiers & Qt::ControlModifier)
        shift |= CtrlMask;
    if (modifiers & Qt::AltModifier)
        shift |= AltMask;
    return shift;
}

int classicKeyAscii(const QKeyEvent& event) {
    const Qt::KeyboardModifiers mods = event.modifiers();
    if (mods & Qt::AltModifier)
        return 0; // Alt combinations are access keys, they type nothing
    const int key = event.key();
    // Control with a letter types the control character (Ctrl+V is 22), whatever text the
    // platform attached to the event.
    if ((mods & Qt::ControlModifier) && key >= Qt::Key_A && key <= Qt::Key_Z)
        return key - Qt::Key_A + 1;
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return 13;
    case Qt::Key_Escape:
        return 27;
    case Qt::Key_Backspace:
        return 8;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return 0; // moves the focus, types nothing
    default:
        break;
    }
    const QString text = event.text();
    if (text.isEmpty())
        return 0;
    return static_cast<int>(text.toUcs4().value(0));
}

int classicButton(Qt::MouseButton button) {
    switch (button) {
    case Qt::LeftButton:
        return 1;
    case Qt::RightButton:
        return 2;
    case Qt::MiddleButton:
        return 4;
    default:
        return 0;
    }
}

} // namespace pl::qtui
