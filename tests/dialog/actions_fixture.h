#pragma once
// A job dialog with the program's own actions, on the real folders and registry store of
// DialogFixture, and a recording converter in the suite folder that writes down every call it gets.
// The converter is started as a real process and not waited for, so a test waits for its record.

#include "dialog/actions/job_actions.h"
#include "dialog_fixture.h"

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace pl::test {

// Another process that holds a file open with a lock, as a program that wants the file to itself
// does, until the object goes away.
class FileHolder {
public:
    enum class Lock { Flock, RecordLock };
    FileHolder(const std::string& path, Lock kind);
    ~FileHolder();
    FileHolder(const FileHolder&) = delete;
    FileHolder& operator=(const FileHolder&) = delete;
    bool holding() const { return holding_; }

private:
    struct Held; // how the system's own kind of holding is done
    std::unique_ptr<Held> held_;
    bool holding_ = false;
};

class ActionsFixture : public DialogFixture {
protected:
    ActionsFixture();

    // No call arrives within a moment.
    bool noCallArrives() const;
    // The one message shown was `prompt`, with the exclamation icon and the program's title.
    void expectOneWarning(const std::string& prompt) const;

    // The dialog for the offered job with the program's own actions, loaded.
    dialog::JobDialog& openWithActions();
    dialog::DialogJobActions& buttons();

    std::string tempFolder; // the user's temporary folder ("temp")
    std::string out;        // a folder for saved files
};

} // namespace pl::test
