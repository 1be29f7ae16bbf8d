#pragma once
// One hive file (HKEY_CURRENT_USER.reg, ...) shared by every process of the user or the machine.
//
// Writers never lose each other's changes and readers never see half a file: a change takes an
// exclusive lock on "<hive>.lock", reads the file again when it changed since it was last read,
// applies only its own change, writes a temporary file in the same folder, syncs it, renames it
// over the hive and syncs the folder. A hive that does not parse is never overwritten: the change
// fails and the file stays exactly as it is, so a typo made by hand costs nobody their settings.

#include "platform/posix/registry/hive_tree.h"

#include <filesystem>
#include <functional>
#include <mutex>
#include <optional>
#include <string>

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
    void refresh() const;
    void load(std::string bytes) const;
    void forget(std::optional<std::string> problem) const;
    long replaceFile(const HiveKey& tree);

    RootKey root_;
    std::filesystem::path file_;
    mutable std::mutex mutex_;
    // The hive as last read and the bytes it was read from. Every access reads the (small) file and
    // parses it again only when the bytes differ: time stamps and inode numbers can miss a change
    // made within the same clock tick, the bytes cannot.
    mutable HiveKey tree_;
    mutable std::optional<std::string> bytes_;
    mutable std::optional<std::string> problem_;
};

} // namespace pl::platform::posix
