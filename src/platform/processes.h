#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace pl::platform {

// The window styles of the classic Shell function; a front-end-less platform ignores them.
enum class WindowStyle : int {
    Hide = 0,
    NormalFocus = 1,
    MinimizedFocus = 2,
    MaximizedFocus = 3,
    NormalNoFocus = 4,
    MinimizedNoFocus = 6,
};

using ProcessId = std::int64_t;

class Processes {
public:
    virtual ~Processes() = default;
    // Starts a program from a Windows-style command line (the first word is the program; words are
    // split by the Windows rules; never through a shell), in `folder` when it is not empty.
    // Returns the process id, or nothing when the program could not be started.
    virtual std::optional<ProcessId> start(std::string_view commandLine, WindowStyle style,
                                           std::string_view folder = {}) = 0;
    // Whether a process started earlier (or any process of that id) is still running. A finished
    // child of ours is reaped so that it leaves nothing behind.
    virtual bool isRunning(ProcessId id) = 0;
    // Collects what the system keeps of started programs that have ended (the converter, a
    // viewer's launcher), so that a resident program that calls it regularly leaves none behind.
    // What isRunning answers is not changed by it. Nothing to do where nothing is kept.
    virtual void collectEnded() {}
    virtual ProcessId currentId() const = 0;
    // Ends this process at once with `exitCode`: nothing after the call runs, nothing is saved.
    [[noreturn]] virtual void exitCurrent(int exitCode) = 0;
};

// The shell's "open" (ShellExecute): a document or URL goes to its associated program; a program
// with parameters is started in `folder`. Returns true when something was started.
class Shell {
public:
    virtual ~Shell() = default;
    virtual bool execute(std::string_view verb, std::string_view file, std::string_view parameters,
                         std::string_view folder, WindowStyle style) = 0;
};

// One assistant per logon session.
class InstanceLock {
public:
    virtual ~InstanceLock() = default;
    // Takes the session-wide lock called `name` and holds it for the life of this object. False
    // when another process of this session holds it.
    virtual bool acquire(std::string_view name) = 0;
};

} // namespace pl::platform
