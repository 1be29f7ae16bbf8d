#pragma once
// The registry backend on the Windows registry itself, through the ANSI functions (the program's
// code page is UTF-8, so names and texts pass unchanged). Every call opens its key, does one thing
// and closes the key again.

#include "platform/registry_backend.h"

namespace pl::platform::win32 {

class Win32Registry final : public RegistryBackend {
public:
    bool keyExists(RootKey root, std::string_view subKey, std::uint32_t viewFlags) const override;
    long queryValue(RootKey root, std::string_view subKey, std::string_view name, std::uint32_t viewFlags,
                    RegValue& out) const override;
    long enumValues(RootKey root, std::string_view subKey, std::uint32_t viewFlags,
                    std::vector<RegValue>& out) const override;
    long setValue(RootKey root, std::string_view subKey, const RegValue& value, std::uint32_t viewFlags) override;
    long createKey(RootKey root, std::string_view subKey, std::uint32_t viewFlags) override;
    long deleteValue(RootKey root, std::string_view subKey, std::string_view name, std::uint32_t viewFlags) override;
    long deleteKey(RootKey root, std::string_view subKey, std::uint32_t viewFlags) override;
};

} // namespace pl::platform::win32
