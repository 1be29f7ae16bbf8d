#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pl::platform {

using FileTime = std::chrono::system_clock::time_point;

// Which entries a search of a folder that other users may write to can find.
enum class Entries {
    Files,           // files of any kind (and folders when asked for)
    RegularFiles,    // plain files only: no folder, pipe, device or symbolic link
    OwnRegularFiles, // plain files that belong to the user this program runs for
};

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

    // The first entry of `folder` whose name matches `pattern`, like FindFirstFile: first in the
    // order NTFS lists names (ordinal, ignoring case; see namesInListingOrder), whatever order the
    // file system keeps them in, so that jobs are served in the order of their names. Folders are skipped unless
    // `includeFolders`; "." and ".." are never reported, so a search of an empty folder finds nothing (ask exists() or
    // isFolder() about the folder).
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
    // Every match, in the same order.
    virtual std::vector<DirEntry> findAll(std::string_view folder, std::string_view pattern,
                                          bool includeFolders = false) const = 0;

    // The same searches narrowed to plain files, and with Entries::OwnRegularFiles to those of this
    // user: in a spool folder that everybody writes to, a job is the user's own only when it
    // belongs to the user, whatever its name; a pipe or a device of the right name would hang
    // whoever reads it. Where the folder's permissions already decide whose a file is (Windows),
    // the plain search answers.
    virtual FirstMatch searchFirstOf(std::string_view folder, std::string_view pattern, Entries) const {
        return searchFirst(folder, pattern, false);
    }
    virtual std::vector<DirEntry> findAllOf(std::string_view folder, std::string_view pattern, Entries) const {
        return findAll(folder, pattern, false);
    }
    // Moves a plain file that somebody else may own to `to` as this user's own file (a copy that
    // belongs to this user; the original is removed), so that the searches for own files find it.
    // Fails, leaving the original in place and nothing at `to`, when the original may not be
    // removed or `to` exists. Where ownership does not decide whose a file is, a rename.
    virtual bool moveToOwn(std::string_view from, std::string_view to) { return rename(from, to); }

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

// Whether `a` comes before `b` in the order NTFS lists a folder: UTF-16 code units compared one by
// one after upper-casing, so "a_" follows "AB" ('_' lies above the capitals). Names that differ
// only in case, which NTFS cannot hold side by side, are put in byte order.
bool namesInListingOrder(std::string_view a, std::string_view b);

} // namespace pl::platform
