#include "platform/child_process.h"

#include "base/text.h"
#include "platform/command_line.h"
#include "platform/win32/win32_services.h"

#include <windows.h>

#include <cstring>
#include <thread>

namespace pl::platform {

namespace {

// A program that prints a lot must not make us hold it all.
constexpr std::size_t kKeptOutput = 64 * 1024;

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

} // namespace

ChildResult runAndWait(const std::vector<std::string>& argv, std::chrono::milliseconds timeLimit,
                       const std::string& tempFolder) {
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

    std::thread reader([&] {
        char buffer[4096];
        DWORD got = 0;
        while (ReadFile(readEnd.get(), buffer, sizeof buffer, &got, nullptr) && got > 0) {
            result.output.append(buffer, got);
            if (result.output.size() > kKeptOutput)
                result.output.erase(0, result.output.size() - kKeptOutput);
        }
    });
    const DWORD wait = WaitForSingleObject(process.get(), static_cast<DWORD>(timeLimit.count()));
    if (wait != WAIT_OBJECT_0) {
        result.timedOut = true;
        if (job.get())
            TerminateJobObject(job.get(), 1);
        else
            TerminateProcess(process.get(), 1);
        WaitForSingleObject(process.get(), INFINITE);
    } else {
        DWORD code = 0;
        GetExitCodeProcess(process.get(), &code);
        result.exitCode = static_cast<int>(code);
        // Children that still hold the pipe would keep the reader waiting for ever.
        if (job.get())
            TerminateJobObject(job.get(), 1);
    }
    reader.join();
    return result;
}

std::optional<std::string> createPrivateTempFolder(const std::string& namePrefix) {
    char temp[MAX_PATH + 1] = {};
    const DWORD length = GetTempPathA(sizeof temp, temp);
    if (length == 0 || length > MAX_PATH)
        return std::nullopt;
    // The user's temporary folder is the user's own; a fresh name that nobody else has made.
    for (unsigned attempt = 0; attempt < 100; ++attempt) {
        const std::string path = std::string(temp) + namePrefix + std::to_string(GetCurrentProcessId()) + "-" +
                                 std::to_string(GetTickCount64() + attempt);
        if (CreateDirectoryA(path.c_str(), nullptr))
            return path;
        if (GetLastError() != ERROR_ALREADY_EXISTS)
            return std::nullopt;
    }
    return std::nullopt;
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
