#pragma once
// The POSIX implementations of the platform services. Callers outside src/platform/posix/ reach
// them through makeNativePlatform(); they are declared here so that the platform object can compose
// them and the platform's own tests can build one in isolation.

#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/processes.h"
#include "platform/special_folders.h"

#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace pl::platform::posix {

// The environment variable exactly as named, or the empty text when it is not set.
std::string envValue(const char* name);

class PosixEnvironment : public Environment {
public:
    std::string get(std::string_view name) const override;
};

class PosixFileSystem : public FileSystem {
public:
    std::optional<DirEntry> findFirst(std::string_view folder, std::string_view pattern,
                                      bool includeFolders = false) const override;
    FirstMatch searchFirst(std::string_view folder, std::string_view pattern, bool includeFolders) const override;
    std::vector<DirEntry> findAll(std::string_view folder, std::string_view pattern,
                                  bool includeFolders = false) const override;
    FirstMatch searchFirstOf(std::string_view folder, std::string_view pattern, Entries entries) const override;
    std::vector<DirEntry> findAllOf(std::string_view folder, std::string_view pattern, Entries entries) const override;
    bool moveToOwn(std::string_view from, std::string_view to) override;
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

// `path` as it exists on disk when only the case of some of its names differs; see
// FileSystem::resolveCase.
std::string resolvePathCase(std::string_view path);

class PosixProcesses : public Processes {
public:
    std::optional<ProcessId> start(std::string_view commandLine, WindowStyle style,
                                   std::string_view folder = {}) override;
    bool isRunning(ProcessId id) override;
    void collectEnded() override;
    ProcessId currentId() const override;
    [[noreturn]] void exitCurrent(int exitCode) override;

    // Starts `argv[0]` (looked up on PATH when it holds no "/") with exactly these words, in
    // `folder` when it is not empty. A missing "Name.exe" is looked for as "name".
    std::optional<ProcessId> spawn(const std::vector<std::string>& argv, std::string_view folder);

private:
    // Reaps the children that have ended since the last call, so that programs nobody asks about
    // (the converter, a document viewer's launcher) leave no zombies behind.
    void reapFinishedChildren();

    std::mutex mutex_;
    std::set<ProcessId> children_; // started by us and not yet reaped
    std::set<ProcessId> finished_; // started by us and reaped
};

class PosixShell : public Shell {
public:
    explicit PosixShell(PosixProcesses& processes) : processes_(processes) {}
    bool execute(std::string_view verb, std::string_view file, std::string_view parameters, std::string_view folder,
                 WindowStyle style) override;

private:
    PosixProcesses& processes_;
};

class PosixInstanceLock : public InstanceLock {
public:
    PosixInstanceLock() = default;
    ~PosixInstanceLock() override;
    PosixInstanceLock(const PosixInstanceLock&) = delete;
    PosixInstanceLock& operator=(const PosixInstanceLock&) = delete;

    bool acquire(std::string_view name) override;

private:
    int fd_ = -1;
    std::string heldName_;
};

class PosixSpecialFolders : public SpecialFolders {
public:
    std::string desktop() const override;
    std::string localAppData() const override;
    std::string documents() const override;
    std::string programFolder() const override;
};

} // namespace pl::platform::posix
