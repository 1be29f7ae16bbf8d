#pragma once
// The text form of registry files as the Windows registry editor reads and writes them, so that a
// hive can be edited by hand and an export from Windows can be dropped in as it is.
//
// Read: "Windows Registry Editor Version 5.00" (UTF-8, or UTF-16LE with a byte-order mark) and
// "REGEDIT4" (8-bit text; bytes that are not UTF-8 stand for the character of the same code).
// Written: version 5 as UTF-8 with LF line ends.
//
// Inside the program a registry text value (REG_SZ, REG_EXPAND_SZ, REG_MULTI_SZ) is UTF-8 with its
// NULs; in a version 5 file such data written as hex is UTF-16LE, in a REGEDIT4 file 8-bit text.
// The conversion happens here, so nobody else sees the file's encoding.

#include "platform/registry_backend.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pl::platform::posix {

// One value line: "name"=data, @=data for the default value (empty name), or "name"=- to delete.
struct RegFileValue {
    std::string name;
    bool remove = false;
    std::uint32_t type = regtype::None;
    std::vector<std::uint8_t> data;

    bool operator==(const RegFileValue&) const = default;
};

// One [key] section with its value lines; [-key] deletes the key and everything below it.
struct RegFileKey {
    RootKey root = 0;
    std::string subKey; // "\"-separated key names; empty for the root itself
    bool remove = false;
    std::vector<RegFileValue> values;
    std::size_t line = 0; // where the section starts in the parsed text, for messages; not content

    bool operator==(const RegFileKey& other) const {
        return root == other.root && subKey == other.subKey && remove == other.remove && values == other.values;
    }
};

struct RegFile {
    std::vector<RegFileKey> keys;

    bool operator==(const RegFile&) const = default;
};

struct RegFileError {
    std::size_t line = 0; // 1-based
    std::string message;
};

struct RegFileParse {
    std::optional<RegFile> file; // nothing when the text does not parse
    RegFileError error;
};

RegFileParse parseRegFile(std::string_view bytes);
// The same parse, handing each section to `visit` as soon as it is complete instead of keeping
// them all (a large hive is then never held twice); `visit` may take the section's contents and
// returns false to stop. The error, when the text does not parse; sections before it were visited.
std::optional<RegFileError> parseRegFileSections(std::string_view bytes, const std::function<bool(RegFileKey&)>& visit);

// The version 5 text of `file`. Names must be writable (see below); sections and values are written
// in their order, so parsing the result gives `file` back.
std::string writeRegFile(const RegFile& file);
// The same text in pieces: the header, then each section appended to `out`.
std::string regFileHeader();
void writeRegFileSection(std::string& out, const RegFileKey& key);

// A value name that a registry file can hold: no line break in it.
bool isWritableName(std::string_view name);
// A sub-key path that a registry file can hold: empty (the root itself), or "\"-separated key names
// that are writable and not empty.
bool isWritableKeyPath(std::string_view path);

// "HKEY_CURRENT_USER" and so on; the empty text for an unknown root.
std::string_view rootLongName(RootKey root);
// The root whose long name is `name`, letter case ignored; 0 when there is none.
RootKey rootFromLongName(std::string_view name);

} // namespace pl::platform::posix
