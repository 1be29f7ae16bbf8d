#pragma once
// One hive in memory: a tree of keys, each with its values. Key and value names compare without
// regard to letter case and keep the spelling they were created with, as on Windows.

#include "platform/posix/registry/regedit_format.h"
#include "platform/registry_backend.h"

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace pl::platform::posix {

// Result code for a sub-key path with an empty key name in it (ERROR_BAD_PATHNAME).
inline constexpr long RegBadPathName = 161;
// Result code for a name a hive file cannot hold (ERROR_INVALID_PARAMETER).
inline constexpr long RegInvalidParameter = 87;

struct HiveKey {
    std::string name;
    std::vector<RegValue> values;
    std::vector<HiveKey> subKeys;

    // The key at `path` below this one ("" is this key itself); nullptr when it does not exist or
    // the path has an empty key name in it.
    const HiveKey* find(std::string_view path) const;
    HiveKey* find(std::string_view path);
    const RegValue* findValue(std::string_view valueName) const;

    bool operator==(const HiveKey&) const = default;
};

// The key names of a sub-key path, "a\b\c" -> a, b, c. A single trailing "\" is ignored, as the
// registry does. False when a name is empty (a leading "\" or "\\" in the middle).
bool splitKeyPath(std::string_view path, std::vector<std::string_view>& names);

// Changes to a hive; each returns a Win32 result code and tells whether the tree changed.
long createKey(HiveKey& root, std::string_view path, bool& changed);
// Creates the key and any missing parents; a value of the same name (any case) is replaced and
// keeps its spelling.
long setValue(HiveKey& root, std::string_view path, const RegValue& value, bool& changed);
long deleteValue(HiveKey& root, std::string_view path, std::string_view valueName, bool& changed);
// RegKeyHasChildren when the key has sub-keys; the root itself cannot be deleted.
long deleteKey(HiveKey& root, std::string_view path, bool& changed);

// The hive of `rootKey` as a file holds it: every key in its own section, parents before children,
// the root's section only when it has values.
RegFile toRegFile(const HiveKey& root, RootKey rootKey);
// Calls `visit` with each section that toRegFile would give, one at a time.
void forEachSection(const HiveKey& root, RootKey rootKey, const std::function<void(const RegFileKey&)>& visit);
// Applies parsed sections one after the other as an import does, in time proportional to their
// size however many keys and values a hive holds: it remembers where each key's sub-keys are, by
// name, for as long as it lives (nothing else may change the tree meanwhile).
class HiveLoader {
public:
    HiveLoader(HiveKey& root, RootKey rootKey);
    // Takes the section's data; false for a section of another root or a key path the hive cannot
    // hold.
    bool apply(RegFileKey& section);

private:
    HiveKey* obtain(std::string_view path);
    static void takeNewValues(HiveKey& key, std::vector<RegFileValue>& values);
    static void mergeValues(HiveKey& key, std::vector<RegFileValue>& values);

    HiveKey& root_;
    RootKey rootKey_;
    // For each key reached so far (by its lower-case path), its sub-keys' positions by lower-case name.
    std::unordered_map<std::string, std::unordered_map<std::string, std::size_t>> children_;
};
// Applies a parsed file to the hive as an import does ([-key] removes the whole branch). A section
// of another root is refused: the result is that section, and the hive is left half applied.
const RegFileKey* applyRegFile(HiveKey& root, RootKey rootKey, const RegFile& file);

} // namespace pl::platform::posix
