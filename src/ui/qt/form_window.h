#pragma once
// The window of one form model. It makes a widget for every control of the model, draws the model
// again after every event it forwards, and runs the form's timers while the model has them
// enabled. Subclasses connect the widgets' events to the model's event procedures; nothing here or
// there decides anything: all behaviour is the model's.

#include "forms/form_model.h"

#include <QPointer>
#include <QWidget>

#include <map>
#include <string>
#include <string_view>

class QTimer;

namespace pl::qtui {

// The part of a form's outer size that the window frame takes (title bar and borders), in twips.
struct FormFrame {
    int width = 0;
    int height = 0;
};

// Whether a window makes widgets for its form's controls. A form that is never seen makes none:
// they would cost memory (fonts above all) for as long as the program runs.
enum class ControlWidgets { Made, None };

class QtFormWindow : public QWidget {
    Q_OBJECT
public:
    QtFormWindow(forms::Form& form, int twipsPerPixel, FormFrame frame, Qt::WindowFlags flags = {},
                 ControlWidgets controls = ControlWidgets::Made);
    ~QtFormWindow() override;

    forms::Form& model() { return form_; }
    int twipsPerPixel() const { return twipsPerPixel_; }

    // Draws the whole model again: the form's caption, size and place, then every control.
    virtual void redraw();
    // The model was unloaded (or is going away): nothing is forwarded to it any more.
    void detach();
    bool attached() const { return attached_; }

    // The widget of a control; null when the control has none (timers, menus) or is unknown.
    QWidget* controlWidget(std::string_view name) const;
    // Gives the keyboard focus to a control, as the model asks.
    void focusControl(std::string_view name);
    // In front of every other window, without staying there.
    void bringToFront();
    // The model asks for one of its pop-up menus.
    virtual void showPopupMenu(std::string_view menu);

signals:
    // The window left the screen by the program's doing (hidden or unloaded): a modal wait for it
    // ends.
    void dismissed();

protected:
    // Runs an event procedure of the model and draws the model again, unless the procedure
    // unloaded it. Does nothing once the window is detached.
    template <class Procedure> void forward(Procedure&& procedure) {
        if (!attached_)
            return;
        procedure();
        if (attached_)
            redraw();
    }

    // Every key press in the window, before the control with the focus sees it (the classic key
    // preview). True swallows the key.
    virtual bool previewKey(QWidget* control, QKeyEvent& event);
    // A timer control of the model fired while the model had it enabled.
    virtual void timerFired(std::string_view name);

    // Where on the screen the model's place `modelPlace` (in pixels) is; the model's own place by
    // default.
    virtual QPoint screenPlace(QPoint modelPlace) const { return modelPlace; }
    // A window the user may resize: drawing the model sizes it without fixing its size.
    void setResizable(bool resizable) { resizable_ = resizable; }
    // True while the model is being drawn: the widgets' own signals then are no user's doing.
    bool redrawing() const { return redrawing_; }

    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void makeControls();
    void renderTimers();

    forms::Form& form_;
    int twipsPerPixel_;
    FormFrame frame_;
    bool attached_ = true;
    bool placed_ = false;
    bool resizable_ = false;
    bool redrawing_ = false;
    std::map<std::string, QPointer<QWidget>, std::less<>> widgets_;
    std::map<std::string, QTimer*, std::less<>> timers_;
};

} // namespace pl::qtui
