#pragma once
// What the converter asks of and tells a person: a password when a PDF is to be encrypted and its
// profile holds none, the progress of a long conversion, the finished file and every failure.
// Where there is no desktop nobody can be asked; the converter then says everything on standard
// error and refuses what needs an answer. The words come from the reporter, in the person's
// language; an interface only shows them.

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace pl::platform {
class Environment;
}

namespace pl::converter {

// What the person chose to do about an announced file.
enum class NoticeAnswer { Nothing, OpenFile, ShowFolder };

// A finished file, announced with the two things a person wants next.
struct Announcement {
    std::string text;        // "Quarterly Report.pdf is on your desktop"
    std::string openLabel;   // the action that opens the file
    std::string folderLabel; // the action that shows its folder
    std::string closeLabel;  // where the announcement is a window of its own
};

// The words of the progress window.
struct ProgressTexts {
    std::string heading; // "Making Quarterly Report.pdf ..."
    std::string cancelLabel;
};

class UserInterface {
public:
    virtual ~UserInterface() = default;
    // The language of the interface's own words (German = 1, else English).
    virtual void setLanguage(int) {}
    // Whether a person can be asked.
    virtual bool canAsk() const = 0;
    // A message box; nothing where nobody can see one.
    virtual void showError(std::string_view message) = 0;
    // A new password for the document `documentName`; nothing when the person cancelled or when
    // nobody can be asked.
    virtual std::optional<std::string> askPassword(std::string_view documentName) = 0;

    // A conversion begins; a window follows only when it takes longer than about a second.
    virtual void progressStarted(const ProgressTexts&) {}
    // Called every few hundredths of a second while it runs, with the pages done so far ("Page 3",
    // empty before the first). False once the person asked to stop it.
    virtual bool progressGoesOn(std::string_view) { return true; }
    virtual void progressEnded() {}
    // A failure: what failed and where the job was kept.
    virtual void showFailure(std::string_view heading, std::string_view details) {
        showError(std::string(heading) + "\n\n" + std::string(details));
    }
    // Something the person should learn of without having to answer: a cancelled conversion.
    virtual void showNote(std::string_view text) { showError(text); }
    // A finished file; returns what the person chose to do with it.
    virtual NoticeAnswer announce(const Announcement&) { return NoticeAnswer::Nothing; }
};

// The interface where no desktop is there.
std::unique_ptr<UserInterface> makeConsoleInterface();

// The platform's interface: the desktop's dialogs when a desktop is there, else the console one.
std::unique_ptr<UserInterface> makeUserInterface(const platform::Environment& environment);

} // namespace pl::converter
