#pragma once
// Message boxes with the classic style codes: the low four bits choose the buttons, the next four
// the icon, the next the default button; the answer is the classic result code (Ok 1 ... No 7).

#include <QList>
#include <QMessageBox>
#include <QString>

#include <string_view>

class QWidget;

namespace pl::qtui {

struct MessageBoxLayout {
    QList<QMessageBox::StandardButton> buttons; // in the classic order: Ok Cancel, Yes No Cancel, ...
    QMessageBox::StandardButton defaultButton = QMessageBox::Ok;
    QMessageBox::StandardButton escapeButton = QMessageBox::NoButton; // none: the box decides
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    bool topmost = false;
};

// What a box of `style` shows.
MessageBoxLayout messageBoxLayout(int style);
// The classic result code of a button; 0 for a button no classic box has.
int resultCode(QMessageBox::StandardButton button);
// The classic prompt's line ends ("\r\n") as Qt shows them.
QString promptText(std::string_view prompt);

// Shows the box over `parent` (none: centred on the screen) and waits for the answer. An empty
// `title` shows `programName`.
int showMessageBox(QWidget* parent, std::string_view prompt, int style, std::string_view title,
                   const QString& programName);

} // namespace pl::qtui
