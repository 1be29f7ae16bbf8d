#pragma once
// The Windows implementations of the platform services. Callers outside src/platform/win32/ reach
// them through makeNativePlatform(); they are declared here so that the platform object can compose
// them and the platform's own tests can build one in isolation.
//
// Texts are UTF-8 throughout. Every program carries a manifest that makes UTF-8 its ANSI code page,
// so the ANSI ("A") functions take and give those texts unchanged.

#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/processes.h"
#include "platform/special_folders.h"

#include <string>

namespace pl::platform::win32 {

class Win32Environment : public Environment {
public:
    std::string get(std::string_view name) const override;
};

class Win32FileSystem : public FileSystem {
public:
    std::optional<DirEntry> findFirst(std::string_view folder, std::string_view pattern,
                                      bool includeFolders = false) const override;
    FirstMatch searchFirst(std::string_view folder, std::string_view pattern, bool includeFolders) const override;
    std::vector<DirEntry> findAll(std::string_view folder, std::string_view pattern,
                                  bool includeFolders = false) const override;
    std::string resolveCase(std::string_view path) const override;
    bool exists(std::string_view path) const override;
    bool isFolder(std::string_view path) const override;
    std::optional<std::uint64_t> size(std::string_view path) const override;
    std::optional<FileTime> modified(std::string_view path) const override;
    bool rename(std::string_view from, std::string_view to) override;
    bool remove(std::string_view path) override;
    bool createFolder(std::string_view path) override;
    bool removeFolder(std::string_view path) override;
};

class Win32Processes : public Processes {
public:
    std::optional<ProcessId> start(std::string_view commandLine, WindowStyle style,
                                   std::string_view folder = {}) override;
    bool isRunning(ProcessId id) override;
    ProcessId currentId() const override;
    [[noreturn]] void exitCurrent(int exitCode) override;
};

class Win32Shell : public Shell {
public:
    bool execute(std::string_view verb, std::string_view file, std::string_view parameters, std::string_view folder,
                 WindowStyle style) override;
};

class Win32InstanceLock : public InstanceLock {
public:
    Win32InstanceLock() = default;
    ~Win32InstanceLock() override;
    Win32InstanceLock(const Win32InstanceLock&) = delete;
    Win32InstanceLock& operator=(const Win32InstanceLock&) = delete;

    bool acquire(std::string_view name) override;

private:
    void* mutex_ = nullptr; // HANDLE
    std::string heldName_;
};

class Win32SpecialFolders : public SpecialFolders {
public:
    std::string desktop() const override;
    std::string localAppData() const override;
    std::string documents() const override;
    std::string programFolder() const override;
};

// The text of the system error `code` (GetLastError), for messages that say why.
std::string errorText(unsigned long code);

} // namespace pl::platform::win32
