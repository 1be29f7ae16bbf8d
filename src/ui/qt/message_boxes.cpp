#include "ui/qt/message_boxes.h"

#include "base/message_box.h"

#include <QAbstractButton>
#include <QPushButton>

namespace pl::qtui {

MessageBoxLayout messageBoxLayout(int style) {
    using B = QMessageBox;
    MessageBoxLayout layout;
    switch (style & 0x0F) {
    case mb::OkCancel:
        layout.buttons = {B::Ok, B::Cancel};
        break;
    case mb::AbortRetryIgnore:
        layout.buttons = {B::Abort, B::Retry, B::Ignore};
        break;
    case mb::YesNoCancel:
        layout.buttons = {B::Yes, B::No, B::Cancel};
        break;
    case mb::YesNo:
        layout.buttons = {B::Yes, B::No};
        break;
    case mb::RetryCancel:
        layout.buttons = {B::Retry, B::Cancel};
        break;
    default:
        layout.buttons = {B::Ok};
        break;
    }
    // Escape answers Cancel where there is one, and closes a box that only informs.
    if (layout.buttons.contains(B::Cancel))
        layout.escapeButton = B::Cancel;
    else if (layout.buttons.size() == 1)
        layout.escapeButton = B::Ok;

    const auto defaultIndex = static_cast<qsizetype>((style & 0xF00) / mb::DefaultButton2);
    layout.defaultButton = layout.buttons.value(defaultIndex, layout.buttons.first());

    switch (style & 0xF0) {
    case mb::Critical:
        layout.icon = B::Critical;
        break;
    case mb::Question:
        layout.icon = B::Question;
        break;
    case mb::Exclamation:
        layout.icon = B::Warning;
        break;
    case mb::Information:
        layout.icon = B::Information;
        break;
    default:
        layout.icon = B::NoIcon;
        break;
    }
    layout.topmost = (style & (mb::MsgBoxTopmost | mb::SystemModal)) != 0;
    return layout;
}

int resultCode(QMessageBox::StandardButton button) {
    switch (button) {
    case QMessageBox::Ok:
        return mb::Ok;
    case QMessageBox::Cancel:
        return mb::Cancel;
    case QMessageBox::Abort:
        return mb::Abort;
    case QMessageBox::Retry:
        return mb::Retry;
    case QMessageBox::Ignore:
        return mb::Ignore;
    case QMessageBox::Yes:
        return mb::Yes;
    case QMessageBox::No:
        return mb::No;
    default:
        return 0;
    }
}

QString promptText(std::string_view prompt) {
    QString text = QString::fromUtf8(prompt.data(), static_cast<qsizetype>(prompt.size()));
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    text.replace(QChar('\r'), QChar('\n'));
    return text;
}

int showMessageBox(QWidget* parent, std::string_view prompt, int style, std::string_view title,
                   const QString& programName) {
    const MessageBoxLayout layout = messageBoxLayout(style);
    QMessageBox box(parent);
    box.setTextFormat(Qt::PlainText); // a prompt may hold "<" and ">" from a document title
    box.setText(promptText(prompt));
    box.setWindowTitle(title.empty() ? programName : promptText(title));
    box.setIcon(layout.icon);
    for (auto button : layout.buttons)
        box.addButton(button);
    box.setDefaultButton(layout.defaultButton);
    if (layout.escapeButton != QMessageBox::NoButton)
        box.setEscapeButton(layout.escapeButton);
    if (layout.topmost)
        box.setWindowFlag(Qt::WindowStaysOnTopHint, true);
    box.exec();

    QAbstractButton* clicked = box.clickedButton();
    if (clicked == nullptr) // closed without an answer: as Escape would have answered
        return resultCode(layout.escapeButton != QMessageBox::NoButton ? layout.escapeButton : layout.buttons.last());
    return resultCode(box.standardButton(clicked));
}

} // namespace pl::qtui
