#include "ui/qt/save_dialog.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>

namespace pl::qtui {

namespace {

QString fromUtf8(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// The toolkit's dialog lets a name in a missing folder through; the classic one, asked to, says
// so and stays open.
class ClassicSaveDialog final : public QFileDialog {
public:
    ClassicSaveDialog(QWidget* parent, bool pathMustExist) : QFileDialog(parent), pathMustExist_(pathMustExist) {}

protected:
    void accept() override {
        const QStringList chosen = selectedFiles();
        if (pathMustExist_ && !chosen.isEmpty()) {
            const QFileInfo file(chosen.first());
            if (!file.isDir() && !file.dir().exists()) {
                QMessageBox::warning(this, windowTitle(),
                                     file.absoluteFilePath() + QStringLiteral("\nThe path does not exist.\n"
                                                                              "Check the path and try again."));
                return;
            }
        }
        QFileDialog::accept();
    }

private:
    bool pathMustExist_;
};

} // namespace

QStringList nameFilters(std::string_view classicFilter) {
    QStringList parts;
    std::string_view rest = classicFilter;
    while (!rest.empty()) {
        const auto end = rest.find_first_of(std::string_view("|\0", 2));
        parts << fromUtf8(rest.substr(0, end));
        if (end == std::string_view::npos)
            break;
        rest.remove_prefix(end + 1);
    }
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        const QString patterns = QString(parts[i + 1]).replace(QChar(';'), QChar(' ')).trimmed();
        filters << parts[i] + QStringLiteral(" (") + patterns + QChar(')');
    }
    return filters;
}

void setUpSaveDialog(QFileDialog& dialog, const forms::SaveDialogRequest& request) {
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    if (!request.title.empty())
        dialog.setWindowTitle(fromUtf8(request.title));
    dialog.setOption(QFileDialog::HideNameFilterDetails, true);
    dialog.setOption(QFileDialog::DontConfirmOverwrite, !request.overwritePrompt);

    const QStringList filters = nameFilters(request.filter);
    if (!filters.isEmpty()) {
        dialog.setNameFilters(filters);
        dialog.selectNameFilter(filters.value(request.filterIndex - 1, filters.first()));
    }
    dialog.setDefaultSuffix(fromUtf8(request.defaultExt));
    if (!request.initDir.empty())
        dialog.setDirectory(fromUtf8(request.initDir));
    // The classic control keeps its previous name unless it is given one.
    if (!request.fileName.empty())
        dialog.selectFile(fromUtf8(request.fileName));
}

std::optional<std::string> askSaveFileName(QWidget* parent, const forms::SaveDialogRequest& request) {
    ClassicSaveDialog dialog(parent, request.pathMustExist);
    setUpSaveDialog(dialog, request);
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    const QStringList chosen = dialog.selectedFiles();
    if (chosen.isEmpty())
        return std::nullopt;
    return chosen.first().toStdString();
}

} // namespace pl::qtui
