#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pl::platform {

using FileTime = std::chrono::system_clock::time_point;

struct DirEntry {
    std::string name; // the name as stored, without the folder
    bool isFolder = false;
};

// Files and folders. Paths are UTF-8 with the platform's separator. Wildcard patterns use `*` and
// `?` with the Windows meaning (`*.*` matches every name, with or without a dot) and match names
// without regard to case, as on Windows.
class FileSystem {
public:
    virtual ~FileSystem() = default;

    // The first entry of `folder` (in directory order) whose name matches `pattern`, like
    // FindFirstFile. Folders are skipped unless `includeFolders`; "." and ".." are never reported,
    // so a search of an empty folder finds nothing (ask exists() or isFolder() about the folder).
    virtual std::optional<DirEntry> findFirst(std::string_view folder, std::string_view pattern,
                                              bool includeFolders = false) const = 0;
    // findFirst that also says whether the folder was read through to its answer. An incomplete
    // read (the folder could not be opened, or reading it failed part-way) answers "no match"
    // that nobody should remember: the next search may well find something.
    struct FirstMatch {
        std::optional<DirEntry> entry;
        bool complete = true;
    };
    virtual FirstMatch searchFirst(std::string_view folder, std::string_view pattern,
                                   bool includeFolders = false) const = 0;
    // Every match, in directory order.
    virtual std::vector<DirEntry> findAll(std::string_view folder, std::string_view pattern,
                                          bool includeFolders = false) const = 0;

    // A path the program built (a profile from a job's name, a language file, a job): when the
    // exact name does not exist, the existing entry whose name differs only in case, if any.
    // Returns `path` unchanged when neither exists.
    virtual std::string resolveCase(std::string_view path) const = 0;

    virtual bool exists(std::string_view path) const = 0; // file or folder, case-blind as above
    virtual bool isFolder(std::string_view path) const = 0;
    virtual std::optional<std::uint64_t> size(std::string_view path) const = 0;
    virtual std::optional<FileTime> modified(std::string_view path) const = 0;

    // Rename or move, across folders and file systems; fails when `to` exists.
    virtual bool rename(std::string_view from, std::string_view to) = 0;
    virtual bool remove(std::string_view path) = 0;
    // Creates the folder and any missing parents; true when it exists afterwards.
    virtual bool createFolder(std::string_view path) = 0;
    virtual bool removeFolder(std::string_view path) = 0; // an empty folder
};

// `name` matches `pattern` with the Windows wildcard rules, ignoring case.
bool wildcardMatch(std::string_view pattern, std::string_view name);

} // namespace pl::platform
