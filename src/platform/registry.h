#pragma once
// The one module through which the program reads and writes registry values. Callers name a key by
// one text path ("HKCU\Software\tobrin\PaperlarkXP", "HKLM64\...") and get values back as text.
// Each operation parses the path afresh, opens its key, does one thing and closes it again.

#include "platform/registry_backend.h"

#include <optional>
#include <string>
#include <string_view>

namespace pl::platform {

class Registry {
public:
    explicit Registry(RegistryBackend& backend) : backend_(backend) {}

    // Root key from the start of `path` (0 when no root name matches); `path` is cut down to the
    // sub-key path. Every root row is tested in turn on what the earlier rows left; the last match
    // wins.
    static RootKey GetRootKey(std::string& path);

    // The value as text; the empty text when the key or value is missing, empty or unreadable.
    // A REG_DWORD of 0x80000000 or above raises an overflow error (6) to the caller.
    std::string GetRegValue(std::string_view path, std::string_view valueName) const;
    // "Create or Open Error", "Open Error", "True" or "False"; the empty text for a too short path.
    std::string SetRegValue(std::string_view path, std::string_view valueName, std::string_view data);
    // "True" or "False"; the empty text for a too short path. An empty value name deletes the key.
    std::string DeleteRegEntry(std::string_view path, std::string_view valueName);
    // Names of the key's REG_SZ values, each followed by "\r"; the empty text when the key cannot be
    // opened; nothing when it has no string value.
    std::optional<std::string> EnumRegStringValues(std::string_view path) const;

    static std::string HexByte(int value);

    RegistryBackend& backend() { return backend_; }

private:
    RegistryBackend& backend_;
};

} // namespace pl::platform
