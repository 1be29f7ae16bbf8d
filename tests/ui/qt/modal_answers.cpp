#include "modal_answers.h"

#include <QAbstractButton>
#include <QApplication>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QWindow>

namespace pl::test {

struct ModalAnswer::State {
    std::function<void(QWidget*)> answer;
    QTimer timer;
    int remaining = 0;
    bool answered = false;
};

ModalAnswer::ModalAnswer(std::function<void(QWidget*)> answer, int timeoutMs) : state_(std::make_shared<State>()) {
    state_->answer = std::move(answer);
    state_->remaining = timeoutMs / 10;
    std::weak_ptr<State> weak = state_;
    QObject::connect(&state_->timer, &QTimer::timeout, [weak] {
        auto state = weak.lock();
        if (!state)
            return;
        QWidget* modal = QApplication::activeModalWidget();
        // Answered only once the box is on screen and laid out, as a person would see it.
        if (modal != nullptr && modal->isVisible() && modal->windowHandle() && modal->windowHandle()->isExposed()) {
            state->timer.stop();
            state->answered = true;
            state->answer(modal);
        } else if (--state->remaining <= 0) {
            state->timer.stop();
        }
    });
    state_->timer.start(10);
}

ModalAnswer::~ModalAnswer() = default;

bool ModalAnswer::answered() const {
    return state_->answered;
}

namespace {

void remember(QMessageBox* box, const std::shared_ptr<SeenMessageBox>& seen) {
    if (!seen || box == nullptr)
        return;
    seen->shown = true;
    seen->title = box->windowTitle();
    seen->text = box->text();
    seen->icon = box->icon();
    seen->buttons = box->standardButtons();
    seen->defaultButton = box->defaultButton() ? box->standardButton(box->defaultButton()) : QMessageBox::NoButton;
}

} // namespace

std::unique_ptr<ModalAnswer> answerMessageBox(QMessageBox::StandardButton button,
                                              std::shared_ptr<SeenMessageBox> seen) {
    return std::make_unique<ModalAnswer>([button, seen](QWidget* modal) {
        auto* box = qobject_cast<QMessageBox*>(modal);
        remember(box, seen);
        if (box == nullptr) {
            modal->close();
            return;
        }
        if (QAbstractButton* target = box->button(button))
            QTest::mouseClick(target, Qt::LeftButton);
        else
            box->close();
    });
}

std::unique_ptr<ModalAnswer> escapeMessageBox(std::shared_ptr<SeenMessageBox> seen) {
    return std::make_unique<ModalAnswer>([seen](QWidget* modal) {
        remember(qobject_cast<QMessageBox*>(modal), seen);
        QTest::keyClick(modal, Qt::Key_Escape);
    });
}

} // namespace pl::test
