#pragma once
// The registry on POSIX: one regedit-format file per root key (HKEY_CURRENT_USER.reg, ...).
//
// Where the hives lie: every hive in $PAPERLARK_REGISTRY_DIR when that is set (tests, sandboxes);
// otherwise the user's hive in ${XDG_CONFIG_HOME:-~/.config}/paperlark/ and the machine's (and every
// other root's) in /etc/paperlark/, so that an unprivileged user cannot change machine settings, as
// on Windows. There is one view only: the 64-bit view flag selects the same hive.

#include "platform/posix/registry/hive_store.h"
#include "platform/registry_backend.h"

#include <array>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace pl::platform::posix {

class PosixRegistry final : public RegistryBackend {
public:
    // The hive folders as the environment says now (see above).
    PosixRegistry();
    // Every hive in `folder`.
    explicit PosixRegistry(const std::filesystem::path& folder);

    bool keyExists(RootKey root, std::string_view subKey, std::uint32_t viewFlags) const override;
    long queryValue(RootKey root, std::string_view subKey, std::string_view name, std::uint32_t viewFlags,
                    RegValue& out) const override;
    long enumValues(RootKey root, std::string_view subKey, std::uint32_t viewFlags,
                    std::vector<RegValue>& out) const override;
    long setValue(RootKey root, std::string_view subKey, const RegValue& value, std::uint32_t viewFlags) override;
    long createKey(RootKey root, std::string_view subKey, std::uint32_t viewFlags) override;
    long deleteValue(RootKey root, std::string_view subKey, std::string_view name, std::uint32_t viewFlags) override;
    long deleteKey(RootKey root, std::string_view subKey, std::uint32_t viewFlags) override;

    // The file that holds `root`'s hive (the empty path for an unknown root).
    std::filesystem::path hiveFile(RootKey root) const;
    // Why `root`'s hive cannot be read or written, with file name and line; nothing when all is well.
    std::optional<std::string> hiveProblem(RootKey root) const;

private:
    HiveStore* hive(RootKey root) const;
    // One change to `root`'s hive; RegInvalidHandle for an unknown root.
    long change(RootKey root, const std::function<long(HiveKey&, bool&)>& edit);

    std::array<std::unique_ptr<HiveStore>, 7> hives_;
};

} // namespace pl::platform::posix
