#pragma once
// The few registry operations the registry module needs, one key at a time. On Windows they are the
// Win32 registry calls; on POSIX a file-backed store with the same semantics: key and value names
// compare without regard to case and keep their spelling, values keep their type, a key with
// sub-keys cannot be deleted.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pl::platform {

using RootKey = std::uint32_t;
inline constexpr RootKey HKEY_CLASSES_ROOT = 0x80000000u;
inline constexpr RootKey HKEY_CURRENT_USER = 0x80000001u;
inline constexpr RootKey HKEY_LOCAL_MACHINE = 0x80000002u;
inline constexpr RootKey HKEY_USERS = 0x80000003u;
inline constexpr RootKey HKEY_PERFORMANCE_DATA = 0x80000004u;
inline constexpr RootKey HKEY_CURRENT_CONFIG = 0x80000005u;
inline constexpr RootKey HKEY_DYN_DATA = 0x80000006u;

namespace regtype {
inline constexpr std::uint32_t None = 0;
inline constexpr std::uint32_t Sz = 1;
inline constexpr std::uint32_t ExpandSz = 2;
inline constexpr std::uint32_t Binary = 3;
inline constexpr std::uint32_t Dword = 4;
inline constexpr std::uint32_t DwordBigEndian = 5;
inline constexpr std::uint32_t Link = 6;
inline constexpr std::uint32_t MultiSz = 7;
inline constexpr std::uint32_t Qword = 11;
} // namespace regtype

// Access flag that opens a key in the 64-bit view of the registry.
inline constexpr std::uint32_t KEY_WOW64_64KEY = 0x100;

struct RegValue {
    std::string name; // as stored
    std::uint32_t type = regtype::None;
    // Raw data as the system stores it: REG_SZ is the UTF-8 text followed by one NUL byte,
    // REG_DWORD four bytes lowest first.
    std::vector<std::uint8_t> data;
};

// Result codes are Win32 error codes: 0 is success.
inline constexpr long RegOk = 0;
inline constexpr long RegFileNotFound = 2;
inline constexpr long RegAccessDenied = 5;
inline constexpr long RegInvalidHandle = 6;
inline constexpr long RegCannotWrite = 1013;  // ERROR_REGISTRY_IO_FAILED
inline constexpr long RegKeyHasChildren = 1020; // ERROR_KEY_HAS_CHILDREN

class RegistryBackend {
public:
    virtual ~RegistryBackend() = default;

    // `viewFlags` is 0 or KEY_WOW64_64KEY. An unknown root (0 among them) fails with
    // RegInvalidHandle. `subKey` is `\`-separated; the empty text means the root itself.

    virtual bool keyExists(RootKey root, std::string_view subKey, std::uint32_t viewFlags) const = 0;
    // The named value (the empty name is the key's default value); RegFileNotFound when the key or
    // the value is missing.
    virtual long queryValue(RootKey root, std::string_view subKey, std::string_view name, std::uint32_t viewFlags,
                            RegValue& out) const = 0;
    // All values of the key in their stored order.
    virtual long enumValues(RootKey root, std::string_view subKey, std::uint32_t viewFlags,
                            std::vector<RegValue>& out) const = 0;
    // Creates the key and any missing parents, then sets the value.
    virtual long setValue(RootKey root, std::string_view subKey, const RegValue& value, std::uint32_t viewFlags) = 0;
    // Creates the key and any missing parents (RegCreateKeyEx without a value).
    virtual long createKey(RootKey root, std::string_view subKey, std::uint32_t viewFlags) = 0;
    virtual long deleteValue(RootKey root, std::string_view subKey, std::string_view name, std::uint32_t viewFlags) = 0;
    // Deletes the key itself; RegKeyHasChildren when it has sub-keys.
    virtual long deleteKey(RootKey root, std::string_view subKey, std::uint32_t viewFlags) = 0;
};

} // namespace pl::platform
