#pragma once
// Qt widgets that report the events the form models have procedures for and Qt has no signal for:
// a label's click, a check box's mouse-up after its value changed, a text box gaining or losing
// the focus. They decide nothing.

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>

namespace pl::qtui {

class ClickableLabel final : public QLabel {
    Q_OBJECT
public:
    explicit ClickableLabel(QWidget* parent = nullptr);

signals:
    void clicked();

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
};

// A check box that clicks as the classic one does: a ticked box goes off, any other (a greyed one
// too) is ticked. The greyed state comes only from the model.
class ClassicCheckBox final : public QCheckBox {
    Q_OBJECT
public:
    explicit ClassicCheckBox(QWidget* parent = nullptr);

signals:
    // After the click has changed the value: button and shift state as classic numbers, position
    // in pixels.
    void mouseUp(int button, int shift, int x, int y);
    void lostFocus();

protected:
    void nextCheckState() override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
};

class ClassicLineEdit final : public QLineEdit {
    Q_OBJECT
public:
    explicit ClassicLineEdit(QWidget* parent = nullptr);

signals:
    // After Qt's own handling, so that what the model selects is what stays selected.
    void gotFocus();
    void lostFocus();

protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
};

} // namespace pl::qtui
