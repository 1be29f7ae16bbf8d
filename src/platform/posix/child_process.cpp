#include "platform/child_process.h"

#include "platform/run_marks.h"
#include "platform/stop_signals.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <filesystem>
#include <fcntl.h>
#include <iterator>
#include <poll.h>
#include <spawn.h>
#include <string_view>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace pl::platform {

namespace {

using Clock = std::chrono::steady_clock;

// A program that prints a lot (a PostScript loop writing to stdout) must not make us hold it all.
constexpr std::size_t kKeptOutput = 64 * 1024;
// How long an ended program may take to go away before it is killed outright.
constexpr std::chrono::milliseconds kGraceAfterTerm{1500};
// Longer limits are no limit; it also keeps the deadline within the clock's range.
constexpr std::chrono::milliseconds kLongestLimit = std::chrono::hours(24 * 366);

void keepTail(std::string& output, const char* data, std::size_t size) {
    output.append(data, size);
    if (output.size() > kKeptOutput)
        output.erase(0, output.size() - kKeptOutput);
}

// Reads what is there without waiting longer than `wait`; false once the pipe is closed.
bool pump(int fd, std::string& output, std::chrono::milliseconds wait, const ChildWatch* watch) {
    pollfd p{fd, POLLIN, 0};
    const int ready = ::poll(&p, 1, static_cast<int>(wait.count()));
    if (ready <= 0)
        return true; // timeout or EINTR: try again on the next round
    char buffer[4096];
    const ssize_t n = ::read(fd, buffer, sizeof buffer);
    if (n > 0) {
        keepTail(output, buffer, static_cast<std::size_t>(n));
        if (watch && watch->output)
            watch->output(std::string_view(buffer, static_cast<std::size_t>(n)));
        return true;
    }
    return n < 0 && (errno == EINTR || errno == EAGAIN);
}

void decodeStatus(int status, ChildResult& result) {
    if (WIFEXITED(status))
        result.exitCode = WEXITSTATUS(status);
}

// The child is its own process group, so ending the group also ends whatever it started. The
// leader is left unreaped (a zombie) until the group has been killed: that keeps its id, and so
// the group id, from being handed to an unrelated process in between.
void endGroup(pid_t pid) {
    ::kill(-pid, SIGTERM);
    const auto giveUp = Clock::now() + kGraceAfterTerm;
    while (Clock::now() < giveUp) {
        siginfo_t info{};
        if (::waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOHANG | WNOWAIT) == 0 && info.si_pid == pid)
            break;
        ::usleep(20 * 1000);
    }
    ::kill(-pid, SIGKILL);
}

// Our own environment, with the temporary folder variables pointing at `tempFolder` when given.
std::vector<std::string> childEnvironment(const std::string& tempFolder) {
    std::vector<std::string> variables;
    const char* const replaced[] = {"TMPDIR=", "TEMP=", "TMP="};
    for (char** variable = environ; *variable; ++variable) {
        const std::string_view entry(*variable);
        const bool isTemp = std::any_of(std::begin(replaced), std::end(replaced),
                                        [&](const char* name) { return entry.starts_with(name); });
        if (tempFolder.empty() || !isTemp)
            variables.emplace_back(entry);
    }
    if (!tempFolder.empty()) {
        for (const char* name : replaced)
            variables.push_back(name + tempFolder);
    }
    return variables;
}

} // namespace

ChildResult runAndWait(const std::vector<std::string>& argv, std::chrono::milliseconds timeLimit,
                       const std::string& tempFolder, const ChildWatch* watch) {
    ChildResult result;
    if (argv.empty() || argv.front().empty()) {
        result.startError = "no program named";
        return result;
    }

    int pipeFds[2];
    if (::pipe2(pipeFds, O_CLOEXEC) != 0) {
        result.startError = std::strerror(errno);
        return result;
    }

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, pipeFds[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, pipeFds[1], STDERR_FILENO);

    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t noSignals, defaultSignals;
    sigemptyset(&noSignals);
    sigemptyset(&defaultSignals);
    sigaddset(&defaultSignals, SIGPIPE);
    sigaddset(&defaultSignals, SIGTERM);
    sigaddset(&defaultSignals, SIGINT);
    posix_spawnattr_setsigmask(&attributes, &noSignals);
    posix_spawnattr_setsigdefault(&attributes, &defaultSignals);
    posix_spawnattr_setpgroup(&attributes, 0);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);

    std::vector<char*> words;
    for (const auto& word : argv)
        words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);

    std::vector<std::string> environment = childEnvironment(tempFolder);
    std::vector<char*> variables;
    for (auto& variable : environment)
        variables.push_back(variable.data());
    variables.push_back(nullptr);

    pid_t pid = 0;
    const bool searchPath = argv.front().find('/') == std::string::npos;
    const int spawnError = searchPath
                               ? ::posix_spawnp(&pid, words[0], &actions, &attributes, words.data(), variables.data())
                               : ::posix_spawn(&pid, words[0], &actions, &attributes, words.data(), variables.data());
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
    ::close(pipeFds[1]);
    if (spawnError != 0) {
        ::close(pipeFds[0]);
        result.startError = std::strerror(spawnError);
        return result;
    }
    result.started = true;

    const auto deadline = Clock::now() + std::min(timeLimit, kLongestLimit);
    bool pipeOpen = true;
    int status = 0;
    for (;;) {
        const pid_t done = ::waitpid(pid, &status, WNOHANG);
        if (done == pid) {
            decodeStatus(status, result);
            break;
        }
        const auto now = Clock::now();
        result.stopped = stopRequested() != 0 || (watch && watch->stop && watch->stop());
        result.timedOut = !result.stopped && now >= deadline;
        if (result.stopped || result.timedOut) {
            endGroup(pid);
            while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
            }
            break;
        }
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - now);
        const auto slice = std::min(left, std::chrono::milliseconds(50));
        if (pipeOpen)
            pipeOpen = pump(pipeFds[0], result.output, slice, watch);
        else
            ::usleep(static_cast<useconds_t>(slice.count()) * 1000);
    }

    // Collect what is still buffered, without waiting on anything the program may have left behind
    // holding the pipe open.
    if (pipeOpen) {
        ::fcntl(pipeFds[0], F_SETFL, O_NONBLOCK);
        char buffer[4096];
        ssize_t n;
        while ((n = ::read(pipeFds[0], buffer, sizeof buffer)) > 0)
            keepTail(result.output, buffer, static_cast<std::size_t>(n));
    }
    ::close(pipeFds[0]);
    return result;
}

std::optional<std::string> createPrivateTempFolder(const std::string& namePrefix) {
    const char* tmp = std::getenv("TMPDIR");
    std::string path = (tmp && *tmp) ? tmp : "/tmp";
    if (path.back() != '/')
        path += '/';
    path += namePrefix + currentRunTag() + "-XXXXXX";
    // mkdtemp creates the folder with mode 0700, whatever the umask says.
    if (!::mkdtemp(path.data()))
        return std::nullopt;
    return path;
}

void removeStalePrivateTempFolders(const std::string& namePrefix) {
    const char* tmp = std::getenv("TMPDIR");
    const std::string folder = (tmp && *tmp) ? tmp : "/tmp";
    DIR* dir = ::opendir(folder.c_str());
    if (!dir)
        return;
    std::vector<std::string> stale;
    constexpr std::size_t kRandomPart = 7; // "-XXXXXX"
    while (const dirent* entry = ::readdir(dir)) {
        const std::string_view name(entry->d_name);
        if (!name.starts_with(namePrefix) || name.size() <= namePrefix.size() + kRandomPart)
            continue;
        const std::string path = folder + "/" + std::string(name);
        const auto tag = name.substr(namePrefix.size(), name.size() - namePrefix.size() - kRandomPart);
        if (leftByEndedRun(path, tag))
            stale.push_back(path);
    }
    ::closedir(dir);
    for (const auto& path : stale) {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
}

bool writePrivateFile(const std::string& path, const std::string& content) {
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (fd < 0)
        return false;
    std::size_t written = 0;
    while (written < content.size()) {
        const ssize_t n = ::write(fd, content.data() + written, content.size() - written);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            break;
        written += static_cast<std::size_t>(n);
    }
    if (::close(fd) != 0 || written != content.size()) {
        ::unlink(path.c_str());
        return false;
    }
    return true;
}

} // namespace pl::platform
