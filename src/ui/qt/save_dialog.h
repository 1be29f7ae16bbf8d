#pragma once
// The common save dialog, driven with what the classic control is given: the filter (pairs of a
// description and a pattern, separated by "|" or by NUL characters), the default extension, the
// initial folder, the file name, whether overwriting asks first and whether the folder must exist.

#include "forms/view.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <string>
#include <string_view>

class QFileDialog;
class QWidget;

namespace pl::qtui {

// The Qt name filters of a classic filter text. A description keeps its own words (even a
// parenthesis of its own, "Paperlark File     (.pdf)"); the pattern goes into a trailing
// parenthesis, which is what Qt reads, and which the dialog keeps out of sight.
QStringList nameFilters(std::string_view classicFilter);

// Prepares `dialog` for `request`: a save dialog as the classic control would show it.
void setUpSaveDialog(QFileDialog& dialog, const forms::SaveDialogRequest& request);

// Shows the dialog over `parent`; the chosen full path, or nothing when the user cancelled.
std::optional<std::string> askSaveFileName(QWidget* parent, const forms::SaveDialogRequest& request);

} // namespace pl::qtui
