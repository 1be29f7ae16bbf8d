#pragma once
// Running a helper program to its end: a conversion engine that must finish, or be stopped, before
// its caller can decide what happens to the files it worked on. The program is started directly
// from its words (never through a shell), and everything it prints is collected so that the caller
// can tell the user why it failed.

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pl::platform {

struct ChildResult {
    // The program could not be started at all (not found, not executable); `startError` says why.
    bool started = false;
    std::string startError;
    // The time limit ran out and the program (with everything it started) was ended.
    bool timedOut = false;
    // The program was ended early: this process was asked to stop (StopRequests), or the watcher
    // asked for it; everything it started was ended with it.
    bool stopped = false;
    // The exit code when it ended by itself; -1 when it was ended by a signal or was stopped.
    int exitCode = -1;
    // What it wrote to its standard output and standard error, interleaved; only the last part is
    // kept when it wrote a lot.
    std::string output;
};

// Follows a running program, for a caller that shows its progress and lets a person stop it.
struct ChildWatch {
    // Each piece of output as it arrives (pieces are not split at line ends).
    std::function<void(std::string_view piece)> output;
    // Asked about every 50 ms while the program runs; true ends it.
    std::function<bool()> stop;
};

// Runs `argv` (argv[0] is the program: a path, or a name searched on the PATH) with no input and
// waits for it to end, at most `timeLimit`. When the limit runs out, the program and every process
// it started are ended. When `tempFolder` is given, the program keeps its temporary files there
// (a program that is ended has no chance to remove its own). Never throws for the program's own
// failures. `watch`, when given, sees the output as it comes and may stop the program.
ChildResult runAndWait(const std::vector<std::string>& argv, std::chrono::milliseconds timeLimit,
                       const std::string& tempFolder = {}, const ChildWatch* watch = nullptr);

// Creates a new folder that only the current user can enter, in the user's temporary folder,
// named `namePrefix`, this run's tag (run_marks.h) and a random part. Returns its path, or nothing
// when it could not be created. The caller removes it.
std::optional<std::string> createPrivateTempFolder(const std::string& namePrefix);

// Removes the folders that createPrivateTempFolder made with `namePrefix` for runs that were killed
// before they could remove them: only this user's, only of runs that no longer exist.
void removeStalePrivateTempFolders(const std::string& namePrefix);

// Creates the file `path`, which must not exist yet, readable by the current user only, holding
// `content`. False when it could not be written (nothing is left behind then).
bool writePrivateFile(const std::string& path, const std::string& content);

} // namespace pl::platform
