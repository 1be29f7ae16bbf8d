#include "ui/qt/form_window.h"

#include "base/text.h"
#include "ui/qt/control_widgets.h"
#include "ui/qt/twips.h"

#include <QCoreApplication>
#include <QHideEvent>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QTimer>
#include <QWindow>

#include <algorithm>
#include <vector>

namespace pl::qtui {

namespace {

bool takesFocus(forms::ControlKind kind) {
    using K = forms::ControlKind;
    return kind == K::Button || kind == K::TextBox || kind == K::CheckBox || kind == K::ComboBox || kind == K::ListBox;
}

} // namespace

QtFormWindow::QtFormWindow(forms::Form& form, int twipsPerPixel, FormFrame frame, Qt::WindowFlags flags,
                           ControlWidgets controls)
    : QWidget(nullptr, flags), form_(form), twipsPerPixel_(twipsPerPixel), frame_(frame) {
    setObjectName(QString::fromStdString(form.name()));
    if (controls == ControlWidgets::Made)
        makeControls();
}

QtFormWindow::~QtFormWindow() {
    attached_ = false; // children going away report no more events
}

void QtFormWindow::makeControls() {
    std::vector<const forms::Control*> tabOrder;
    for (const auto& control : form_.controls()) {
        if (control.kind == forms::ControlKind::Timer) {
            auto* timer = new QTimer(this);
            const std::string name = control.name;
            connect(timer, &QTimer::timeout, this, [this, name] {
                if (attached_ && form_.control(name).enabled)
                    timerFired(name);
            });
            timers_.emplace(control.name, timer);
            continue;
        }
        QWidget* widget = makeControlWidget(control, this);
        if (widget == nullptr)
            continue;
        widget->installEventFilter(this);
        widgets_.emplace(control.name, widget);
        if (takesFocus(control.kind))
            tabOrder.push_back(&control);
    }
    std::stable_sort(tabOrder.begin(), tabOrder.end(),
                     [](const forms::Control* a, const forms::Control* b) { return a->tabIndex < b->tabIndex; });
    for (std::size_t i = 1; i < tabOrder.size(); ++i)
        setTabOrder(controlWidget(tabOrder[i - 1]->name), controlWidget(tabOrder[i]->name));
}

QWidget* QtFormWindow::controlWidget(std::string_view name) const {
    for (const auto& [controlName, widget] : widgets_)
        if (text::iequals(controlName, name))
            return widget.data();
    return nullptr;
}

void QtFormWindow::redraw() {
    const QScopedValueRollback<bool> drawing(redrawing_, true);
    const QString caption = QString::fromStdString(form_.caption);
    if (windowTitle() != caption)
        setWindowTitle(caption);
    // The model's size includes the window frame; the widget is the inside.
    const QSize inside(toPixels(form_.width - frame_.width, twipsPerPixel_),
                       toPixels(form_.height - frame_.height, twipsPerPixel_));
    if (inside.isValid() && !inside.isEmpty() && size() != inside) {
        if (resizable_)
            resize(inside);
        else
            setFixedSize(inside);
    }
    const QPoint place = screenPlace(QPoint(toPixels(form_.left, twipsPerPixel_), toPixels(form_.top, twipsPerPixel_)));
    if (!placed_ || pos() != place) {
        move(place);
        placed_ = true;
    }
    for (const auto& control : form_.controls())
        if (QWidget* widget = controlWidget(control.name))
            renderControl(*widget, control, twipsPerPixel_);
    renderTimers();
    update(); // the background is painted from the model too
}

void QtFormWindow::renderTimers() {
    for (auto& [name, timer] : timers_) {
        const forms::Control& control = form_.control(name);
        const bool runs = attached_ && form_.loaded && control.enabled && control.interval > 0;
        if (runs && (!timer->isActive() || timer->interval() != control.interval))
            timer->start(control.interval);
        else if (!runs && timer->isActive())
            timer->stop();
    }
}

void QtFormWindow::detach() {
    if (!attached_)
        return;
    attached_ = false;
    for (auto& [name, timer] : timers_)
        timer->stop();
    emit dismissed();
}

void QtFormWindow::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    if (!event->spontaneous()) // not the window manager minimising it
        emit dismissed();
}

void QtFormWindow::focusControl(std::string_view name) {
    QWidget* widget = controlWidget(name);
    if (widget == nullptr)
        return;
    if (isVisible())
        activateWindow();
    widget->setFocus(Qt::OtherFocusReason);
}

void QtFormWindow::bringToFront() {
    // A form that is not shown stays so: raising is only for what the user can see.
    if (!isVisible())
        return;
    // Briefly kept on top, so that the window manager lets it come forward, then released again so
    // that it does not stay above the user's other windows. The hint is changed on the native
    // window itself: changing the widget's flags would re-create the window and lose its focus.
    QWindow* native = windowHandle();
    if (native == nullptr)
        return;
    const Qt::WindowFlags usual = native->flags();
    native->setFlags(usual | Qt::WindowStaysOnTopHint);
    raise();
    activateWindow();
    QCoreApplication::processEvents();
    native->setFlags(usual & ~Qt::WindowStaysOnTopHint);
    raise();
    activateWindow();
}

void QtFormWindow::showPopupMenu(std::string_view) {}

bool QtFormWindow::previewKey(QWidget*, QKeyEvent&) {
    return false;
}

void QtFormWindow::timerFired(std::string_view) {}

bool QtFormWindow::eventFilter(QObject* watched, QEvent* event) {
    auto* widget = qobject_cast<QWidget*>(watched);
    if (widget == nullptr || !attached_)
        return QWidget::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::KeyPress:
        return previewKey(widget, static_cast<QKeyEvent&>(*event));
    case QEvent::FocusIn:
        form_.focused = widget->objectName().toStdString();
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void QtFormWindow::keyPressEvent(QKeyEvent* event) {
    // Keys that reach the window itself because none of its controls has the focus are previewed
    // here; a key that a control passed on to its window was previewed on its way in.
    QWidget* focus = focusWidget();
    const bool passedOn = focus != nullptr && focus != this;
    if (attached_ && !passedOn && previewKey(this, *event))
        return;
    QWidget::keyPressEvent(event);
}

} // namespace pl::qtui
