#pragma once
// Where the converter's messages go, and how the person learns what became of a job. A failure is
// always written to standard error, to the log when logging is on, and to a message where a desktop
// is there, saying where the job was kept: the person who printed must learn that no document came
// out, even when nobody watches a console. A long conversion shows its progress and can be
// cancelled; a finished file is announced with the means to open it or its folder.

#include "converter/desktop.h"
#include "converter/user_interface.h"
#include "platform/child_process.h"
#include "texts/notice_texts.h"

#include <chrono>
#include <functional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace pl::converter {

class Reporter {
public:
    using LogWriter = std::function<void(std::string_view line)>;

    // `log` is empty when logging is off.
    Reporter(UserInterface& ui, LogWriter log, std::ostream& errors) : ui_(ui), log_(std::move(log)), errors_(errors) {}

    // Who is told: the person's language (German = 1, else English), their desktop folder (to say
    // "on your desktop"), what opens files and folders, and the job's files (to say where they
    // were kept). Without it, texts are English and nothing is opened.
    void setAudience(int language, std::string desktopFolder, Desktop* desktop);
    void setJobFiles(std::vector<std::string> files) { jobFiles_ = std::move(files); }

    void log(std::string_view line);
    void failure(std::string_view message);

    // Follows one Ghostscript run making `documentName`, for runAndWait: counts the pages from its
    // "Page N" lines and stops it when the person cancels.
    platform::ChildWatch watchConversion(std::string_view documentName);
    void conversionEnded();
    // The run was stopped by the person: nothing was made and the job stays.
    void cancelled();

    // The result is in place (and was not handed to a viewer or a mail program).
    void finished(const std::vector<std::string>& results);
    // The result could not be opened, or not handed to a mail program: the person is told where it
    // is, and for mail its folder is opened so that it can be attached by hand.
    void cannotOpen(const std::string& result);
    void cannotMail(const std::vector<std::string>& results);

private:
    std::string text(texts::Notice id, std::string_view first = {}, std::string_view second = {}) const;
    std::string whereJobIsKept() const;
    void openFolderOf(const std::string& file);

    UserInterface& ui_;
    LogWriter log_;
    std::ostream& errors_;
    int language_ = 2;
    std::string desktopFolder_;
    Desktop* desktop_ = nullptr;
    std::vector<std::string> jobFiles_;
    int pages_ = 0;
    std::string pending_; // an unfinished line of Ghostscript's output
};

} // namespace pl::converter
