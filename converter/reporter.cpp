#include "converter/reporter.h"

#include "converter/file_ops.h"
#include "converter/ghostscript_command.h"

#include <filesystem>
#include <system_error>

namespace pl::converter {

namespace {

bool sameFolder(const std::string& a, const std::string& b) {
    if (a.empty() || b.empty())
        return false;
    std::error_code error;
    if (std::filesystem::equivalent(fsPath(a), fsPath(b), error))
        return true;
    return fsPath(a).lexically_normal() == fsPath(b).lexically_normal();
}

} // namespace

void Reporter::setAudience(int language, std::string desktopFolder, Desktop* desktop) {
    language_ = language;
    desktopFolder_ = std::move(desktopFolder);
    desktop_ = desktop;
    ui_.setLanguage(language);
}

std::string Reporter::text(texts::Notice id, std::string_view first, std::string_view second) const {
    return texts::noticeText(language_, id, first, second);
}

void Reporter::log(std::string_view line) {
    if (log_)
        log_("Paperlark: " + std::string(line));
}

// Only the job files that are still there: a failure after the inputs were deleted keeps none.
std::string Reporter::whereJobIsKept() const {
    std::string kept;
    for (const auto& file : jobFiles_) {
        std::error_code error;
        if (std::filesystem::is_regular_file(fsPath(file), error))
            kept += (kept.empty() ? "" : "\n") + file;
    }
    return kept.empty() ? kept : text(texts::Notice::JobKept, kept);
}

void Reporter::failure(std::string_view message) {
    errors_ << "paperlark: " << message << std::endl;
    log(message);
    std::string details(message);
    if (const std::string kept = whereJobIsKept(); !kept.empty()) {
        // The list of kept files, in the person's language, says it better than the general note.
        for (std::string_view note : {"\nThe input file was kept.", "\nEvery input file was kept."}) {
            if (details.ends_with(note))
                details.erase(details.size() - note.size());
        }
        details += "\n\n" + kept;
    }
    ui_.showFailure(text(texts::Notice::NotMade), details);
}

platform::ChildWatch Reporter::watchConversion(std::string_view documentName) {
    pages_ = 0;
    pending_.clear();
    ui_.progressStarted({text(texts::Notice::Making, documentName), text(texts::Notice::Cancel)});
    platform::ChildWatch watch;
    // Ghostscript prints "Page N" for the pages of a PDF it reads; for PostScript the converter
    // makes it print the same words as each page is finished (see ghostscriptArguments). The
    // highest number seen is the count, since the first kind starts again with every PDF.
    watch.output = [this](std::string_view piece) {
        pending_ += piece;
        std::size_t start = 0;
        for (std::size_t end; (end = pending_.find('\n', start)) != std::string::npos; start = end + 1)
            pages_ = std::max(pages_, pageOfLine(std::string_view(pending_).substr(start, end - start)));
        pending_.erase(0, start);
    };
    watch.stop = [this] {
        return !ui_.progressGoesOn(pages_ > 0 ? text(texts::Notice::Page, std::to_string(pages_)) : std::string());
    };
    return watch;
}

void Reporter::conversionEnded() {
    ui_.progressEnded();
}

void Reporter::cancelled() {
    const std::string message = "The conversion was cancelled; nothing was converted.";
    errors_ << "paperlark: " << message << std::endl;
    log(message);
    std::string note = text(texts::Notice::Cancelled);
    if (const std::string kept = whereJobIsKept(); !kept.empty())
        note += "\n\n" + kept;
    ui_.showNote(note);
}

void Reporter::finished(const std::vector<std::string>& results) {
    if (results.empty())
        return;
    const std::string& file = results.front();
    const std::string folder = folderOf(file);
    Announcement announcement;
    announcement.text = sameFolder(folder, desktopFolder_) ? text(texts::Notice::OnDesktop, fileNameOf(file))
                                                           : text(texts::Notice::InFolder, fileNameOf(file), folder);
    announcement.openLabel = text(texts::Notice::Open);
    announcement.folderLabel = text(texts::Notice::ShowFolder);
    announcement.closeLabel = text(texts::Notice::Close);
    log("Fertig: " + file);
    switch (ui_.announce(announcement)) {
    case NoticeAnswer::OpenFile:
        if (desktop_ && !desktop_->open(file))
            cannotOpen(file);
        break;
    case NoticeAnswer::ShowFolder:
        openFolderOf(file);
        break;
    case NoticeAnswer::Nothing:
        break;
    }
}

void Reporter::cannotOpen(const std::string& result) {
    const std::string message = "The result \"" + result + "\" was written but cannot be opened.";
    errors_ << "paperlark: " << message << std::endl;
    log(message);
    ui_.showError(text(texts::Notice::NoViewer, result));
}

void Reporter::cannotMail(const std::vector<std::string>& results) {
    const std::string& file = results.front();
    const std::string message = "The result \"" + file + "\" was written but cannot be handed to the mail program.";
    errors_ << "paperlark: " << message << std::endl;
    log(message);
    std::string places;
    for (const auto& result : results)
        places += (places.empty() ? "" : "\n") + result;
    openFolderOf(file);
    ui_.showError(text(texts::Notice::NoMailProgram, places));
}

void Reporter::openFolderOf(const std::string& file) {
    if (desktop_)
        desktop_->open(folderOf(file));
}

} // namespace pl::converter
