#include "modal_answers.h"

#include <QAbstractButton>
#include <QApplication>
#include <QPushButton>
#include <QTest>
#include <QWindow>

namespace pl::test {

ModalAnswer::ModalAnswer(std::function<void(QWidget*)> answer, int timeoutMs)
    : answer_(std::move(answer)), triesLeft_(timeoutMs / 10) {
    QObject::connect(&timer_, &QTimer::timeout, [this] {
        QWidget* modal = QApplication::activeModalWidget();
        // Answered only once the box is on screen and laid out, as a person would see it.
        if (modal != nullptr && modal->isVisible() && modal->windowHandle() && modal->windowHandle()->isExposed()) {
            timer_.stop();
            answered_ = true;
            answer_(modal);
        } else if (--triesLeft_ <= 0) {
            timer_.stop();
        }
    });
    timer_.start(10);
}

std::unique_ptr<ModalAnswer> answerMessageBox(QMessageBox::StandardButton button,
                                              std::shared_ptr<SeenMessageBox> seen) {
    return std::make_unique<ModalAnswer>([button, seen](QWidget* modal) {
        auto* box = qobject_cast<QMessageBox*>(modal);
        if (seen && box != nullptr) {
            seen->shown = true;
            seen->title = box->windowTitle();
            seen->text = box->text();
            seen->icon = box->icon();
            seen->buttons = box->standardButtons();
            seen->defaultButton =
                box->defaultButton() ? box->standardButton(box->defaultButton()) : QMessageBox::NoButton;
        }
        if (box != nullptr && box->button(button) != nullptr)
            QTest::mouseClick(box->button(button), Qt::LeftButton);
        else
            QTest::keyClick(modal, Qt::Key_Escape);
    });
}

} // namespace pl::test
