#pragma once
// The small window that a conversion shows while it takes its time: which document is being made,
// how many pages are done, and a Cancel button.

#include <QDialog>

class QLabel;
class QPushButton;

namespace pl::converter {

class ProgressWindow : public QDialog {
public:
    ProgressWindow(const QString& heading, const QString& cancelLabel, QWidget* parent = nullptr);

    void setStatus(const QString& status);
    bool cancelled() const { return cancelled_; }

    QLabel* headingLabel() const { return heading_; }
    QLabel* statusLabel() const { return status_; }
    QPushButton* cancelButton() const { return cancel_; }

protected:
    // Closing the window is cancelling, as Escape is.
    void reject() override;

private:
    QLabel* heading_;
    QLabel* status_;
    QPushButton* cancel_;
    bool cancelled_ = false;
};

} // namespace pl::converter
