#include "ui/qt/control_widgets.h"

#include "ui/qt/classic_widgets.h"
#include "ui/qt/colors.h"
#include "ui/qt/twips.h"

#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QListWidget>
#include <QPushButton>

#include <initializer_list>

namespace pl::qtui {

using forms::ControlKind;

namespace {

// The classic designs name fonts of their own platform; where a family is missing, the desktop's
// font matching picks the nearest one it has.
QFont fontOf(const forms::Control& control, const QFont& base) {
    QFont font(base);
    font.setFamily(QString::fromStdString(control.fontName));
    if (control.fontSize > 0)
        font.setPointSizeF(control.fontSize);
    font.setBold(control.fontBold);
    font.setUnderline(control.fontUnderline);
    return font;
}

// The control's colours on the palette roles its kind paints with. System colours come from the
// desktop's own palette for this kind of widget, not from what an earlier drawing set.
void setColors(QWidget& widget, const forms::Control& control, std::initializer_list<QPalette::ColorRole> foreRoles,
               QPalette::ColorRole backRole) {
    const QPalette system = QApplication::palette(&widget);
    QPalette palette = widget.palette();
    for (auto role : foreRoles)
        palette.setColor(role, toQColor(control.foreColor, system));
    palette.setColor(backRole, toQColor(control.backColor, system));
    if (palette != widget.palette())
        widget.setPalette(palette);
}

void setFilled(QWidget& widget, bool filled) {
    if (widget.autoFillBackground() != filled)
        widget.setAutoFillBackground(filled);
}

Qt::CheckState checkStateOf(int value) {
    switch (value) {
    case forms::Checked:
        return Qt::Checked;
    case forms::Grayed:
        return Qt::PartiallyChecked;
    default:
        return Qt::Unchecked;
    }
}

QStringList itemsOf(const forms::Control& control) {
    QStringList items;
    for (const auto& item : control.items)
        items << QString::fromStdString(item);
    return items;
}

// Refills a list's items only when they changed, so that drawing again keeps an open drop-down.
template <class List, class ItemText> void renderItems(List& list, const forms::Control& control, ItemText itemText) {
    const QStringList items = itemsOf(control);
    QStringList shown;
    for (int i = 0; i < list.count(); ++i)
        shown << itemText(list, i);
    if (shown != items) {
        list.clear();
        list.addItems(items);
    }
}

void renderCombo(QComboBox& combo, const forms::Control& control) {
    renderItems(combo, control, [](const QComboBox& c, int i) { return c.itemText(i); });
    if (combo.currentIndex() != control.value)
        combo.setCurrentIndex(control.value);
}

void renderList(QListWidget& list, const forms::Control& control) {
    renderItems(list, control, [](const QListWidget& l, int i) { return l.item(i)->text(); });
    if (list.currentRow() != control.value)
        list.setCurrentRow(control.value);
}

} // namespace

QString displayText(const std::string& text) {
    QString shown = QString::fromStdString(text);
    shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    return shown;
}

QWidget* makeControlWidget(const forms::Control& control, QWidget* parent) {
    QWidget* widget = nullptr;
    switch (control.kind) {
    case ControlKind::Button:
        widget = new QPushButton(parent);
        break;
    case ControlKind::Label: {
        auto* label = new ClickableLabel(parent);
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true); // a classic label breaks its caption at its own width
        label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
        widget = label;
        break;
    }
    case ControlKind::TextBox:
        widget = new ClassicLineEdit(parent);
        break;
    case ControlKind::CheckBox:
        widget = new ClassicCheckBox(parent);
        break;
    case ControlKind::ComboBox:
        widget = new QComboBox(parent);
        break;
    case ControlKind::ListBox:
        widget = new QListWidget(parent);
        break;
    case ControlKind::Frame:
        widget = new QGroupBox(parent);
        break;
    case ControlKind::Image:
        widget = new QLabel(parent);
        break;
    case ControlKind::Timer:
    case ControlKind::Menu:
    case ControlKind::MenuItem:
        return nullptr;
    }
    widget->setObjectName(QString::fromStdString(control.name));
    return widget;
}

void renderControl(QWidget& widget, const forms::Control& control, int twipsPerPixel) {
    const QRect geometry(toPixels(control.left, twipsPerPixel), toPixels(control.top, twipsPerPixel),
                         toPixels(control.width, twipsPerPixel), toPixels(control.height, twipsPerPixel));
    if (widget.geometry() != geometry)
        widget.setGeometry(geometry);
    const QFont font = fontOf(control, widget.font());
    if (widget.font() != font)
        widget.setFont(font);
    if (widget.isEnabled() != control.enabled)
        widget.setEnabled(control.enabled);
    const QString tip = QString::fromStdString(control.toolTip);
    if (widget.toolTip() != tip)
        widget.setToolTip(tip);

    switch (control.kind) {
    case ControlKind::Button: {
        auto& button = static_cast<QPushButton&>(widget);
        const QString caption = displayText(control.caption);
        if (button.text() != caption)
            button.setText(caption); // "&" marks the access key, as in the classic caption
        if (!isSystemColor(control.backColor))
            setColors(widget, control, {QPalette::ButtonText}, QPalette::Button);
        break;
    }
    case ControlKind::Label: {
        auto& label = static_cast<QLabel&>(widget);
        const QString caption = displayText(control.caption);
        if (label.text() != caption)
            label.setText(caption);
        setColors(widget, control, {QPalette::WindowText}, QPalette::Window);
        setFilled(widget, !control.backStyleTransparent);
        break;
    }
    case ControlKind::TextBox: {
        auto& box = static_cast<QLineEdit&>(widget);
        const QString text = QString::fromStdString(control.text);
        if (box.text() != text)
            box.setText(text);
        setColors(widget, control, {QPalette::Text}, QPalette::Base);
        break;
    }
    case ControlKind::CheckBox: {
        auto& box = static_cast<QCheckBox&>(widget);
        const QString caption = displayText(control.caption);
        if (box.text() != caption)
            box.setText(caption);
        if (box.checkState() != checkStateOf(control.value))
            box.setCheckState(checkStateOf(control.value));
        // A classic check box paints its own rectangle in its back colour.
        setColors(widget, control, {QPalette::WindowText}, QPalette::Window);
        setFilled(widget, true);
        break;
    }
    case ControlKind::ComboBox: {
        auto& combo = static_cast<QComboBox&>(widget);
        renderCombo(combo, control);
        setColors(widget, control, {QPalette::Text, QPalette::ButtonText}, QPalette::Base);
        break;
    }
    case ControlKind::ListBox:
        renderList(static_cast<QListWidget&>(widget), control);
        break;
    case ControlKind::Frame:
        static_cast<QGroupBox&>(widget).setTitle(displayText(control.caption));
        break;
    default:
        break;
    }

    // Last, so that a control appears only once it is drawn.
    if (widget.isVisibleTo(widget.parentWidget()) != control.visible)
        widget.setVisible(control.visible);
}

} // namespace pl::qtui
