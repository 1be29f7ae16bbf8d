#include "ui/qt/job_dialog_view.h"

#include "dialog/appearance.h"
#include "dialog/dialog_layout.h"
#include "ui/qt/app_icon.h"
#include "ui/qt/background.h"
#include "ui/qt/classic_widgets.h"
#include "ui/qt/key_codes.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QTimer>

namespace pl::qtui {

namespace {

// A fixed-size dialog: a title, a system menu and a close button, nothing to maximise or minimise.
constexpr Qt::WindowFlags DialogFlags = Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint | Qt::CustomizeWindowHint |
                                        Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint;

int checkValueOf(const QCheckBox& box) {
    switch (box.checkState()) {
    case Qt::Checked:
        return forms::Checked;
    case Qt::PartiallyChecked:
        return forms::Grayed;
    default:
        return forms::Unchecked;
    }
}

} // namespace

QtJobDialogView::QtJobDialogView(dialog::JobDialog& dialog, int twipsPerPixel)
    : QtFormWindow(dialog.form(), twipsPerPixel, FormFrame{dialog::layout::FrameWidth, dialog::layout::FrameHeight},
                   DialogFlags),
      dialog_(dialog) {
    setWindowIcon(appIcon());
    connectButtons();
    connectOptions();
    connectNameAndProfile();
}

QtJobDialogView::~QtJobDialogView() = default;

QPoint QtJobDialogView::screenPlace(QPoint modelPlace) const {
    if (!settled_) {
        QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
        if (!screen)
            screen = QGuiApplication::primaryScreen();
        if (screen)
            offset_ = screen->availableGeometry().center() - frameGeometry().center() + pos() - modelPlace;
    }
    return modelPlace + offset_;
}

void QtJobDialogView::showEvent(QShowEvent* event) {
    if (!settled_) {
        move(screenPlace(pos() - offset_));
        // The load sequence may still change the size after showing; the place follows until it ends.
        QTimer::singleShot(0, this, [this] { settled_ = true; });
    }
    QtFormWindow::showEvent(event);
}

template <class Widget, class Signal>
void QtJobDialogView::forwardSignal(std::string_view name, Signal signal, void (dialog::JobActions::*procedure)()) {
    if (auto* widget = qobject_cast<Widget*>(controlWidget(name)))
        connect(widget, signal, this, [this, procedure] { forward([&] { (dialog_.actions().*procedure)(); }); });
}

void QtJobDialogView::connectButtons() {
    using A = dialog::JobActions;
    forwardSignal<QPushButton>("cmdEmail", &QPushButton::clicked, &A::cmdEmail_Click);
    forwardSignal<QPushButton>("cmdSave", &QPushButton::clicked, &A::cmdSave_Click);
    forwardSignal<QPushButton>("cmdDesktop", &QPushButton::clicked, &A::cmdDesktop_Click);
    forwardSignal<QPushButton>("cmdMulti", &QPushButton::clicked, &A::cmdMulti_Click);
    forwardSignal<QPushButton>("cmdSort", &QPushButton::clicked, &A::cmdSort_Click);
}

void QtJobDialogView::connectOptions() {
    using A = dialog::JobActions;
    forwardSignal<ClickableLabel>("lbOpenPDF", &ClickableLabel::clicked, &A::lbOpenPDF_Click);
    forwardSignal<ClickableLabel>("lbEncodePDF", &ClickableLabel::clicked, &A::lbEncodePDF_Click);
    forwardSignal<ClickableLabel>("lbConfig", &ClickableLabel::clicked, &A::lbConfig_Click);
    forwardSignal<ClassicCheckBox>("chkOpenPDF", &ClassicCheckBox::lostFocus, &A::chkOpenPDF_LostFocus);
    if (QWidget* config = controlWidget("lbConfig"))
        config->setCursor(Qt::PointingHandCursor); // it reads as a link

    // A click changes the box's value as a standard box does; the model hears of it afterwards.
    for (std::string_view name : {"chkOpenPDF", "ckEncodePDF"}) {
        auto* box = qobject_cast<ClassicCheckBox*>(controlWidget(name));
        if (box == nullptr)
            continue;
        const std::string controlName(name);
        connect(box, &QCheckBox::clicked, this, [this, box, controlName] {
            if (attached())
                control(controlName).value = checkValueOf(*box);
        });
    }
    if (auto* encode = qobject_cast<ClassicCheckBox*>(controlWidget("ckEncodePDF")))
        connect(encode, &ClassicCheckBox::mouseUp, this, [this](int button, int shift, int x, int y) {
            const int tpp = twipsPerPixel();
            forward([&] {
                dialog_.actions().ckEncodePDF_MouseUp(button, shift, static_cast<float>(x * tpp),
                                                      static_cast<float>(y * tpp));
            });
        });
}

void QtJobDialogView::connectNameAndProfile() {
    if (auto* profiles = qobject_cast<QComboBox*>(controlWidget("plProfile")))
        connect(profiles, &QComboBox::activated, this,
                [this](int index) { forward([&] { dialog_.selectProfile(index); }); });

    auto* name = qobject_cast<ClassicLineEdit*>(controlWidget("pdfName"));
    if (name == nullptr)
        return;
    connect(name, &QLineEdit::textEdited, this, [this](const QString& text) {
        if (attached())
            control("pdfName").text = text.toStdString();
    });
    connect(name, &ClassicLineEdit::gotFocus, this, [this, name] {
        forward([&] { dialog_.pdfName_GotFocus(); });
        if (!attached())
            return;
        const forms::Control& box = control("pdfName");
        name->setSelection(box.selStart, box.selLength);
    });
}

bool QtJobDialogView::previewKey(QWidget* widget, QKeyEvent& event) {
    // The form sees every key first: Escape asks wherever the focus is.
    int keyCode = classicKeyCode(event);
    if (keyCode != 0) {
        int shift = classicShift(event.modifiers());
        forward([&] { dialog_.Form_KeyDown(keyCode, shift); });
        if (!attached() || keyCode == 0)
            return true;
    }
    // Then the name box's typing rules; a key set to 0 is swallowed, any other goes on to the box
    // (after a paste key the model has cleaned the clipboard, so the box pastes the cleaned text).
    if (widget != controlWidget("pdfName"))
        return false;
    int keyAscii = classicKeyAscii(event);
    if (keyAscii == 0)
        return false;
    forward([&] { dialog_.pdfName_KeyPress(keyAscii); });
    return !attached() || keyAscii == 0;
}

void QtJobDialogView::timerFired(std::string_view name) {
    if (name == "Timer1")
        forward([&] { dialog_.Timer1_Timer(); });
}

void QtJobDialogView::closeEvent(QCloseEvent* event) {
    // The window goes only when the model unloads it (QtView::unload); a refusal keeps it.
    event->ignore();
    forward([&] { dialog_.Unload(dialog::unload_mode::ControlMenu); });
}

void QtJobDialogView::paintEvent(QPaintEvent*) {
    if (!attached())
        return;
    QPainter painter(this);
    paintBackground(painter, *this, dialog_.background(), model().backColor,
                    model().height - dialog::layout::FrameHeight, twipsPerPixel());
}

} // namespace pl::qtui
