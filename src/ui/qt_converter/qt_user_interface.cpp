#include "converter/desktop_interface.h"
#include "ui/qt_converter/desktop_notifications.h"
#include "ui/qt_converter/notice_window.h"
#include "ui/qt_converter/password_dialog.h"
#include "ui/qt_converter/progress_window.h"
#include "ui/qt_converter/window_placement.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QMessageBox>

namespace pl::converter {

namespace {

using namespace std::chrono_literals;

// A conversion that is done within this time says nothing until it is done.
constexpr qint64 kQuietMilliseconds = 1000;
// How long the converter stays to carry out a choice from its announcement.
constexpr std::chrono::milliseconds kAnnouncementWait = 60s;

QString fromUtf8(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// The application object is made only when something is really shown: a short conversion that
// goes well connects to the display just once, to announce its result.
class QtInterface final : public UserInterface {
public:
    void setLanguage(int language) override { language_ = language; }
    bool canAsk() const override { return true; }

    void showError(std::string_view message) override {
        ensureApplication();
        QMessageBox box(QMessageBox::Warning, QStringLiteral("Paperlark"), fromUtf8(message), QMessageBox::Ok);
        box.exec();
    }

    void showFailure(std::string_view heading, std::string_view details) override {
        ensureApplication();
        QMessageBox box(QMessageBox::Critical, QStringLiteral("Paperlark"), fromUtf8(heading), QMessageBox::Ok);
        box.setInformativeText(fromUtf8(details));
        box.exec();
    }

    void showNote(std::string_view text) override {
        ensureApplication();
        const QString note = fromUtf8(text);
        const qsizetype lineEnd = note.indexOf(QLatin1Char('\n'));
        if (auto* notifications = sessionNotifications();
            notifications && notifications->note(note.left(lineEnd), lineEnd < 0 ? QString() : note.mid(lineEnd + 1)))
            return;
        showError(text);
    }

    std::optional<std::string> askPassword(std::string_view documentName) override {
        ensureApplication();
        PasswordDialog dialog(fromUtf8(documentName), language_);
        if (dialog.exec() != QDialog::Accepted)
            return std::nullopt;
        return dialog.password().toStdString();
    }

    void progressStarted(const ProgressTexts& texts) override {
        progressTexts_ = texts;
        running_.start();
    }

    bool progressGoesOn(std::string_view status) override {
        if (!progress_ && running_.isValid() && running_.elapsed() >= kQuietMilliseconds) {
            ensureApplication();
            progress_ = std::make_unique<ProgressWindow>(fromUtf8(progressTexts_.heading),
                                                         fromUtf8(progressTexts_.cancelLabel));
            centreOnMouseScreen(*progress_);
            progress_->show();
        }
        if (!progress_)
            return true;
        progress_->setStatus(fromUtf8(status));
        QApplication::processEvents();
        return !progress_->cancelled();
    }

    void progressEnded() override {
        progress_.reset();
        running_.invalidate();
    }

    NoticeAnswer announce(const Announcement& announcement) override {
        ensureApplication();
        if (auto* notifications = sessionNotifications())
            return notifications->announce(announcement, kAnnouncementWait);
        NoticeWindow window(announcement);
        centreOnMouseScreen(window);
        window.exec();
        return window.answer();
    }

private:
    void ensureApplication() {
        if (!QApplication::instance())
            application_ = std::make_unique<QApplication>(argc_, argv_);
    }

    DesktopNotifications* sessionNotifications() {
        if (!notificationsLookedFor_) {
            notificationsLookedFor_ = true;
            notifications_ = DesktopNotifications::connectToSession();
        }
        return notifications_.get();
    }

    char name_[10] = "paperlark";
    char* argv_[2] = {name_, nullptr};
    int argc_ = 1;
    int language_ = 2;
    std::unique_ptr<QApplication> application_;
    ProgressTexts progressTexts_;
    QElapsedTimer running_;
    std::unique_ptr<ProgressWindow> progress_;
    bool notificationsLookedFor_ = false;
    std::unique_ptr<DesktopNotifications> notifications_;
};

} // namespace

std::unique_ptr<UserInterface> makeDesktopInterface() {
    return std::make_unique<QtInterface>();
}

} // namespace pl::converter
