#pragma once
// Answers the modal boxes that the code under test opens and waits on (message boxes, the save
// dialog), as a person would: by looking at what the box shows and clicking in it. Arm an answer
// before the action that opens the box; it is given from inside the box's own event loop.

#include <QMessageBox>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <functional>
#include <memory>

class QWidget;

namespace pl::test {

// What a message box showed.
struct SeenMessageBox {
    bool shown = false;
    QString title;
    QString text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButtons buttons;
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
};

class ModalAnswer {
public:
    // Runs `answer` on the next modal widget that shows up within `timeoutMs`.
    explicit ModalAnswer(std::function<void(QWidget*)> answer, int timeoutMs = 10000);
    bool answered() const { return answered_; }

private:
    std::function<void(QWidget*)> answer_;
    QTimer timer_; // looks for the box every 10 ms
    int triesLeft_;
    bool answered_ = false;
};

// Clicks `button` in the next message box, or presses Escape there for NoButton, and keeps what it
// showed in `seen`.
std::unique_ptr<ModalAnswer> answerMessageBox(QMessageBox::StandardButton button,
                                              std::shared_ptr<SeenMessageBox> seen = nullptr);

} // namespace pl::test
