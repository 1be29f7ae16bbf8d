#include "ui/qt/classic_widgets.h"

#include "ui/qt/key_codes.h"

#include <QMouseEvent>

namespace pl::qtui {

ClickableLabel::ClickableLabel(QWidget* parent) : QLabel(parent) {}

void ClickableLabel::mouseReleaseEvent(QMouseEvent* event) {
    QLabel::mouseReleaseEvent(event);
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        emit clicked();
}

ClassicCheckBox::ClassicCheckBox(QWidget* parent) : QCheckBox(parent) {}

void ClassicCheckBox::nextCheckState() {
    setCheckState(checkState() == Qt::Checked ? Qt::Unchecked : Qt::Checked);
}

void ClassicCheckBox::mouseReleaseEvent(QMouseEvent* event) {
    QCheckBox::mouseReleaseEvent(event);
    const QPoint at = event->position().toPoint();
    emit mouseUp(classicButton(event->button()), classicShift(event->modifiers()), at.x(), at.y());
}

void ClassicCheckBox::focusOutEvent(QFocusEvent* event) {
    QCheckBox::focusOutEvent(event);
    emit lostFocus();
}

ClassicLineEdit::ClassicLineEdit(QWidget* parent) : QLineEdit(parent) {}

void ClassicLineEdit::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    emit gotFocus();
}

void ClassicLineEdit::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    emit lostFocus();
}

} // namespace pl::qtui
