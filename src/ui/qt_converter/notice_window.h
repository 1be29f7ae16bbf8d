#pragma once
// The announcement of a finished file where the desktop has no notification service: a small
// window with the news and buttons to open the file, show its folder or close.

#include "converter/user_interface.h"

#include <QDialog>

class QPushButton;

namespace pl::converter {

class NoticeWindow : public QDialog {
public:
    explicit NoticeWindow(const Announcement& announcement, QWidget* parent = nullptr);

    // What the person chose once the window has closed.
    NoticeAnswer answer() const { return answer_; }

    QPushButton* openButton() const { return open_; }
    QPushButton* folderButton() const { return folder_; }
    QPushButton* closeButton() const { return close_; }

private:
    QPushButton* open_;
    QPushButton* folder_;
    QPushButton* close_;
    NoticeAnswer answer_ = NoticeAnswer::Nothing;
};

} // namespace pl::converter
