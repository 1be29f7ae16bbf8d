#pragma once
// One hive file (HKEY_CURRENT_USER.reg, ...) shared by every process of the user or the machine.
//
// Writers never lose each other's changes and readers never see half a file: a change takes an
// exclusive lock on "<hive>.lock", reads the file again when it changed since it was last read,
// applies only its own change, writes a temporary file in the same folder, syncs it, renames it
// over the hive and syncs the folder. A hive that does not parse, cannot be read or is no plain file
// (a pipe would stop every reader) is never overwritten: it counts as empty, the change fails, the
// file stays exactly as it is, and standard error says why, so a typo made by hand costs nobody
// their settings and nothing hangs.
//
// A hive is held once in memory, as its tree: it is read and written in pieces, never copied whole.

#include "platform/posix/registry/hive_tree.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <mutex>
#include <optional>
#include <string>

#include <sys/stat.h>

namespace pl::platform::posix {

class HiveStore {
public:
    HiveStore(RootKey root, std::filesystem::path file);
    HiveStore(const HiveStore&) = delete;
    HiveStore& operator=(const HiveStore&) = delete;

    RootKey root() const { return root_; }
    const std::filesystem::path& file() const { return file_; }

    // Calls `reader` with the hive as the file holds it now. A missing file is an empty hive; so is
    // one that cannot be read or parsed (problem() says why).
    void read(const std::function<void(const HiveKey&)>& reader) const;

    // One change, applied to the newest hive under the lock and written back. `change` returns a
    // result code and sets its flag when it changed the tree; nothing is written otherwise.
    // RegCannotWrite when the file cannot be read, parsed or replaced; RegAccessDenied when the
    // folder or file is not ours to write.
    long modify(const std::function<long(HiveKey& root, bool& changed)>& change);

    // Why the hive cannot be read or written, with the file name and line; nothing when all is well.
    std::optional<std::string> problem() const;

private:
    // What identifies one version of the file's bytes.
    struct Version {
        std::uint64_t size = 0;
        std::uint64_t hash = 0;
        bool operator==(const Version&) const = default;
    };

    // The status of a file read well after its last change (see refresh).
    struct Settled {
        dev_t device;
        ino_t inode;
        off_t size;
        std::int64_t modified, changed; // nanoseconds
        bool matches(const struct stat& st) const;
    };

    void refresh() const;
    void load(std::string_view bytes) const;
    void forget(std::optional<std::string> problem) const;
    void complain() const;
    long replaceFile(const HiveKey& tree);

    RootKey root_;
    std::filesystem::path file_;
    mutable std::mutex mutex_;
    // The hive as last read and the version of the bytes it was read from. An access reads the file
    // again unless it has settled, and parses it again only when the bytes differ: time stamps and
    // inode numbers can miss a change made within the same clock tick, the bytes cannot.
    mutable HiveKey tree_;
    mutable std::optional<Version> version_;
    // Set while the file is known not to have changed since it was read, so it need not be read again.
    mutable std::optional<Settled> settled_;
    mutable std::optional<std::string> problem_;
    mutable std::string complained_; // the problem last told on standard error
};

} // namespace pl::platform::posix
