#include "base/text.h"
#include "platform/command_line.h"
#include "platform/posix/posix_services.h"
#include <cstdio>
#include <cstdlib>

#include <cerrno>
#include <csignal>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace pl::platform::posix {

namespace {

// Windows resolves a relative program path against the starting program's folder, not against the
// folder the new program is to run in; the child changes folder before it looks for its program,
// so the path is made absolute here.
std::string absoluteProgram(const std::string& program) {
    if (program.empty() || program[0] == '/' || program.find('/') == std::string::npos)
        return program;
    std::string resolved = resolvePathCase(program);
    if (resolved[0] == '/')
        return resolved;
    char cwd[4096];
    return ::getcwd(cwd, sizeof cwd) ? std::string(cwd) + "/" + resolved : resolved;
}

// The suite's programs are installed under their Windows names in lower case without ".exe"
// ("Paperlark.exe" is "paperlark"), so a command line written for Windows finds them too.
std::string posixProgramName(const std::string& program) {
    const std::size_t nameStart = program.rfind('/') + 1; // 0 when there is no folder part
    const std::string name = text::toLower(program.substr(nameStart, program.size() - nameStart - 4));
    // A bare name is looked up on the search path, never in the current folder.
    return nameStart == 0 ? name : resolvePathCase(program.substr(0, nameStart) + name);
}

class SpawnSettings {
public:
    SpawnSettings() {
        ::posix_spawn_file_actions_init(&actions_);
        ::posix_spawnattr_init(&attributes_);
        // The child starts with no blocked signals and with every signal at its default, whatever
        // a toolkit thread of ours happened to block or ignore.
        sigset_t none;
        sigset_t all;
        sigemptyset(&none);
        sigfillset(&all);
        ::posix_spawnattr_setsigmask(&attributes_, &none);
        ::posix_spawnattr_setsigdefault(&attributes_, &all);
        ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~SpawnSettings() {
        ::posix_spawnattr_destroy(&attributes_);
        ::posix_spawn_file_actions_destroy(&actions_);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;

    bool changeFolder(const std::string& folder) {
        return ::posix_spawn_file_actions_addchdir_np(&actions_, folder.c_str()) == 0;
    }
    const posix_spawn_file_actions_t* actions() const { return &actions_; }
    const posix_spawnattr_t* attributes() const { return &attributes_; }

private:
    posix_spawn_file_actions_t actions_;
    posix_spawnattr_t attributes_;
};

} // namespace

std::optional<ProcessId> PosixProcesses::spawn(const std::vector<std::string>& words, std::string_view folder) {
    if (words.empty() || words[0].empty())
        return std::nullopt;
    std::vector<std::string> args = words;
    std::vector<char*> argv;
    for (std::string& arg : args) {
        // A word cannot carry a zero character to another program.
        if (arg.find('\0') != std::string::npos)
            return std::nullopt;
        argv.push_back(arg.data());
    }
    argv.push_back(nullptr);

    SpawnSettings settings;
    if (!folder.empty() && !settings.changeFolder(resolvePathCase(folder)))
        return std::nullopt;

    // glibc's posix_spawnp waits until the child has run exec and reports its failure (a missing
    // program, a folder that cannot be entered) as its own result, so a program that does not exist
    // gives no process id rather than a child that ends at once.
    const auto run = [&](const std::string& program, pid_t& pid) {
        return ::posix_spawnp(&pid, program.c_str(), settings.actions(), settings.attributes(), argv.data(), environ);
    };
    pid_t pid = 0;
    const std::string program = absoluteProgram(words[0]);
    int error = run(program, pid);
    if (error == ENOENT && text::iendsWith(program, ".exe"))
        error = run(posixProgramName(program), pid);
    if (error != 0)
        return std::nullopt;

    std::lock_guard lock(mutex_);
    reapFinishedChildren();
    children_.insert(pid);
    finished_.erase(pid);
    return pid;
}

std::optional<ProcessId> PosixProcesses::start(std::string_view commandLine, WindowStyle, std::string_view folder) {
    return spawn(splitCommandLine(commandLine), folder);
}

void PosixProcesses::reapFinishedChildren() {
    for (auto it = children_.begin(); it != children_.end();) {
        int status = 0;
        pid_t result = 0;
        do
            result = ::waitpid(static_cast<pid_t>(*it), &status, WNOHANG);
        while (result < 0 && errno == EINTR);
        if (result == 0) {
            ++it;
            continue;
        }
        // Ended (or already reaped elsewhere): either way it no longer runs.
        finished_.insert(*it);
        it = children_.erase(it);
    }
}

bool PosixProcesses::isRunning(ProcessId id) {
    if (id <= 0)
        return false;
    std::lock_guard lock(mutex_);
    reapFinishedChildren();
    if (children_.count(id))
        return true;
    // A child of ours that has been reaped is gone for good, even if the system has since given
    // its number to another process.
    if (finished_.count(id))
        return false;
    int status = 0;
    pid_t result = 0;
    do
        result = ::waitpid(static_cast<pid_t>(id), &status, WNOHANG);
    while (result < 0 && errno == EINTR);
    if (result == 0)
        return true;
    if (result > 0)
        return false;
    // Not our child: all we can ask is whether the process exists.
    return ::kill(static_cast<pid_t>(id), 0) == 0 || errno == EPERM;
}

void PosixProcesses::collectEnded() {
    std::lock_guard lock(mutex_);
    reapFinishedChildren();
}

ProcessId PosixProcesses::currentId() const {
    return ::getpid();
}

void PosixProcesses::exitCurrent(int exitCode) {
    // No destructors and no exit handlers: the program may be deep inside a toolkit's event
    // handler, where tearing down static objects is not safe. Every file the program writes is
    // complete after each call (log lines, registry hives), so only stdio needs a flush.
    std::fflush(nullptr);
    std::_Exit(exitCode);
}

} // namespace pl::platform::posix
