#include "platform/child_process.h"

#include "base/text.h"
#include "platform/command_line.h"
#include "platform/paths.h"
#include "platform/run_marks.h"
#include "platform/stop_signals.h"
#include "platform/win32/win32_services.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <random>
#include <thread>

namespace pl::platform {

namespace {

using Clock = std::chrono::steady_clock;

// A program that prints a lot must not make us hold it all.
constexpr std::size_t kKeptOutput = 64 * 1024;
// Longer limits are no limit; it also keeps the deadline within the clock's range.
constexpr std::chrono::milliseconds kLongestLimit = std::chrono::hours(24 * 366);
// How often a watcher hears of the output and is asked whether to stop.
constexpr std::chrono::milliseconds kWatchInterval{50};
// The random end of a private temporary folder's name: "-" and six hexadecimal digits.
constexpr std::size_t kRandomPart = 7;

class Handle {
public:
    explicit Handle(HANDLE h = nullptr) : h_(h == INVALID_HANDLE_VALUE ? nullptr : h) {}
    ~Handle() { reset(); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    void reset(HANDLE h = nullptr) {
        if (h_ != nullptr)
            CloseHandle(h_);
        h_ = h;
    }
    HANDLE get() const { return h_; }
    HANDLE* out() { return &h_; }

private:
    HANDLE h_;
};

// The environment of this process with the temporary folders pointed at `tempFolder`, as the
// block CreateProcess takes: "name=value" texts one after the other, each ended by a NUL.
std::string childEnvironment(const std::string& tempFolder) {
    std::string block;
    char* strings = GetEnvironmentStringsA();
    for (const char* entry = strings; entry && *entry; entry += std::strlen(entry) + 1) {
        const std::string_view text(entry);
        if (text::istartsWith(text, "TEMP=") || text::istartsWith(text, "TMP="))
            continue;
        block.append(text).push_back('\0');
    }
    FreeEnvironmentStringsA(strings);
    for (const char* name : {"TEMP=", "TMP="})
        block.append(name).append(tempFolder).push_back('\0');
    block.push_back('\0');
    return block;
}

// The user's temporary folder, with its trailing backslash.
std::optional<std::string> userTempFolder() {
    char temp[MAX_PATH + 1] = {};
    const DWORD length = GetTempPathA(sizeof temp, temp);
    if (length == 0 || length > MAX_PATH)
        return std::nullopt;
    return std::string(temp, length);
}

// What the reader thread got that the watcher has not seen yet; the watcher hears of it on the
// caller's thread, which is the one a progress window belongs to.
class PendingOutput {
public:
    void add(const char* data, std::size_t size) {
        std::lock_guard lock(mutex_);
        text_.append(data, size);
    }
    void deliver(const ChildWatch* watch) {
        std::string piece;
        {
            std::lock_guard lock(mutex_);
            piece.swap(text_);
        }
        if (!piece.empty() && watch && watch->output)
            watch->output(piece);
    }

private:
    std::mutex mutex_;
    std::string text_;
};

} // namespace

ChildResult runAndWait(const std::vector<std::string>& argv, std::chrono::milliseconds timeLimit,
                       const std::string& tempFolder, const ChildWatch* watch) {
    ChildResult result;
    if (argv.empty() || argv[0].empty()) {
        result.startError = "no program given";
        return result;
    }
    std::string line;
    for (const std::string& word : argv) {
        if (!line.empty())
            line.push_back(' ');
        line += quoteArgument(word);
    }

    SECURITY_ATTRIBUTES inherit{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    Handle readEnd, writeEnd;
    if (!CreatePipe(readEnd.out(), writeEnd.out(), &inherit, 0)) {
        result.startError = win32::errorText(GetLastError());
        return result;
    }
    SetHandleInformation(readEnd.get(), HANDLE_FLAG_INHERIT, 0);
    Handle nul(
        CreateFileA("NUL", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherit, OPEN_EXISTING, 0, nullptr));

    // Everything the program starts belongs to the job, and ending the job ends all of it.
    Handle job(CreateJobObjectA(nullptr, nullptr));
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    if (job.get())
        SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &limits, sizeof limits);

    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES | STARTF_USESHOWWINDOW;
    startup.wShowWindow = SW_HIDE;
    startup.hStdInput = nul.get();
    startup.hStdOutput = writeEnd.get();
    startup.hStdError = writeEnd.get();
    std::string environment = tempFolder.empty() ? std::string() : childEnvironment(tempFolder);
    PROCESS_INFORMATION info{};
    if (!CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE, CREATE_SUSPENDED | CREATE_NO_WINDOW,
                        environment.empty() ? nullptr : environment.data(), nullptr, &startup, &info)) {
        result.startError = win32::errorText(GetLastError());
        return result;
    }
    Handle process(info.hProcess), thread(info.hThread);
    if (job.get())
        AssignProcessToJobObject(job.get(), process.get());
    ResumeThread(thread.get());
    result.started = true;
    writeEnd.reset(); // the pipe ends when the program and its children have closed theirs

    const bool watched = watch && watch->output;
    PendingOutput pending;
    std::thread reader([&] {
        char buffer[4096];
        DWORD got = 0;
        while (ReadFile(readEnd.get(), buffer, sizeof buffer, &got, nullptr) && got > 0) {
            result.output.append(buffer, got);
            if (result.output.size() > kKeptOutput)
                result.output.erase(0, result.output.size() - kKeptOutput);
            if (watched)
                pending.add(buffer, got);
        }
    });
    const auto deadline = Clock::now() + std::min(timeLimit, kLongestLimit);
    for (;;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
        const auto slice = std::clamp(left, std::chrono::milliseconds(0), kWatchInterval);
        const DWORD wait = WaitForSingleObject(process.get(), static_cast<DWORD>(slice.count()));
        pending.deliver(watch);
        if (wait == WAIT_OBJECT_0) {
            DWORD code = 0;
            GetExitCodeProcess(process.get(), &code);
            result.exitCode = static_cast<int>(code);
            break;
        }
        result.stopped = stopRequested() != 0 || (watch && watch->stop && watch->stop());
        result.timedOut = !result.stopped && Clock::now() >= deadline;
        if (result.stopped || result.timedOut) {
            if (job.get())
                TerminateJobObject(job.get(), 1);
            else
                TerminateProcess(process.get(), 1);
            WaitForSingleObject(process.get(), INFINITE);
            break;
        }
    }
    // Children that still hold the pipe would keep the reader waiting for ever.
    if (job.get())
        TerminateJobObject(job.get(), 1);
    reader.join();
    pending.deliver(watch);
    return result;
}

std::optional<std::string> createPrivateTempFolder(const std::string& namePrefix) {
    const auto temp = userTempFolder();
    if (!temp)
        return std::nullopt;
    // The user's temporary folder is the user's own; a fresh name that nobody else has made. The
    // run's tag lets a later run tell the folder of a killed run from one still in use.
    std::random_device seed;
    std::mt19937 random(seed() ^ GetCurrentProcessId() ^ static_cast<unsigned>(GetTickCount64()));
    const std::string start = *temp + namePrefix + currentRunTag() + "-";
    for (unsigned attempt = 0; attempt < 100; ++attempt) {
        char digits[8];
        std::snprintf(digits, sizeof digits, "%06x", static_cast<unsigned>(random() & 0xFFFFFFu));
        const std::string path = start + digits;
        if (CreateDirectoryA(path.c_str(), nullptr))
            return path;
        if (GetLastError() != ERROR_ALREADY_EXISTS)
            return std::nullopt;
    }
    return std::nullopt;
}

void removeStalePrivateTempFolders(const std::string& namePrefix) {
    const auto temp = userTempFolder();
    if (!temp)
        return;
    std::vector<std::string> stale;
    WIN32_FIND_DATAA data;
    HANDLE find = FindFirstFileA((*temp + namePrefix + "*").c_str(), &data);
    if (find == INVALID_HANDLE_VALUE)
        return;
    do {
        const std::string_view name(data.cFileName);
        if ((data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0 || name.size() <= namePrefix.size() + kRandomPart)
            continue;
        const std::string path = *temp + std::string(name);
        const auto tag = name.substr(namePrefix.size(), name.size() - namePrefix.size() - kRandomPart);
        if (leftByEndedRun(path, tag))
            stale.push_back(path);
    } while (FindNextFileA(find, &data));
    FindClose(find);
    for (const auto& path : stale) {
        std::error_code ignored;
        std::filesystem::remove_all(fsPath(path), ignored);
    }
}

bool writePrivateFile(const std::string& path, const std::string& content) {
    HANDLE file = CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    DWORD written = 0;
    const bool ok = WriteFile(file, content.data(), static_cast<DWORD>(content.size()), &written, nullptr) &&
                    written == content.size();
    if (!CloseHandle(file) || !ok) {
        DeleteFileA(path.c_str());
        return false;
    }
    return true;
}

} // namespace pl::platform
