#include "platform/win32/win32_services.h"

#include <windows.h>

#include <shellapi.h> // after windows.h, which it needs

#include <cstdio>

namespace pl::platform::win32 {

namespace {

// The classic Shell function's window styles as ShowWindow commands.
WORD showCommand(WindowStyle style) {
    switch (style) {
    case WindowStyle::Hide:
        return SW_HIDE;
    case WindowStyle::NormalFocus:
        return SW_SHOWNORMAL;
    case WindowStyle::MinimizedFocus:
        return SW_SHOWMINIMIZED;
    case WindowStyle::MaximizedFocus:
        return SW_SHOWMAXIMIZED;
    case WindowStyle::NormalNoFocus:
        return SW_SHOWNOACTIVATE;
    case WindowStyle::MinimizedNoFocus:
        return SW_SHOWMINNOACTIVE;
    }
    return SW_SHOWNORMAL;
}

} // namespace

std::optional<ProcessId> Win32Processes::start(std::string_view commandLine, WindowStyle style,
                                               std::string_view folder) {
    if (commandLine.empty() || commandLine.find('\0') != std::string_view::npos)
        return std::nullopt;
    std::string line(commandLine); // CreateProcess may write into its command line
    const std::string directory(folder);
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESHOWWINDOW;
    startup.wShowWindow = showCommand(style);
    PROCESS_INFORMATION info{};
    if (!CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr,
                        directory.empty() ? nullptr : directory.c_str(), &startup, &info))
        return std::nullopt;
    CloseHandle(info.hThread);
    CloseHandle(info.hProcess);
    return static_cast<ProcessId>(info.dwProcessId);
}

bool Win32Processes::isRunning(ProcessId id) {
    if (id <= 0 || id > 0xFFFFFFFFLL)
        return false;
    // 1024 is PROCESS_QUERY_INFORMATION. The process object outlives the process while anybody
    // holds a handle to it, so an open that succeeds is not enough: it must not have an exit code.
    HANDLE process = OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, static_cast<DWORD>(id));
    if (process == nullptr)
        return GetLastError() == ERROR_ACCESS_DENIED; // it exists, it just is not ours to ask
    DWORD exitCode = 0;
    const bool running = !GetExitCodeProcess(process, &exitCode) || exitCode == STILL_ACTIVE;
    CloseHandle(process);
    return running;
}

ProcessId Win32Processes::currentId() const {
    return static_cast<ProcessId>(GetCurrentProcessId());
}

void Win32Processes::exitCurrent(int exitCode) {
    // Every file the program writes is complete after each call (log lines, registry values), so
    // only the C library's buffers need a flush before the process goes.
    std::fflush(nullptr);
    ExitProcess(static_cast<UINT>(exitCode));
}

bool Win32Shell::execute(std::string_view verb, std::string_view file, std::string_view parameters,
                         std::string_view folder, WindowStyle style) {
    if (file.empty())
        return false;
    const std::string verbText(verb), fileText(file), parameterText(parameters), folderText(folder);
    const HINSTANCE result = ShellExecuteA(nullptr, verbText.empty() ? nullptr : verbText.c_str(), fileText.c_str(),
                                           parameterText.empty() ? nullptr : parameterText.c_str(),
                                           folderText.empty() ? nullptr : folderText.c_str(), static_cast<int>(style));
    // Above 32 is success; the smaller numbers are the classic error codes.
    return reinterpret_cast<INT_PTR>(result) > 32;
}

} // namespace pl::platform::win32
