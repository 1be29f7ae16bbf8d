#include "platform/posix/registry/posix_registry.h"

#include "base/text.h"
#include "platform/posix/registry/platform_values.h"
#include "platform/posix/xdg_dirs.h"

#include <algorithm>
#include <cstdlib>

namespace pl::platform::posix {

namespace {

constexpr RootKey FirstRoot = HKEY_CLASSES_ROOT;
constexpr RootKey LastRoot = HKEY_DYN_DATA;
constexpr const char* MachineFolder = "/etc/paperlark";

std::filesystem::path hivePath(const std::filesystem::path& folder, RootKey root) {
    return folder / (std::string(rootLongName(root)) + ".reg");
}

} // namespace

PosixRegistry::PosixRegistry() {
    const char* shared = std::getenv("PAPERLARK_REGISTRY_DIR");
    for (RootKey root = FirstRoot; root <= LastRoot; ++root) {
        std::filesystem::path folder;
        if (shared != nullptr && *shared != '\0')
            folder = shared;
        else if (root == HKEY_CURRENT_USER)
            folder = std::filesystem::path(xdgConfigHome()) / "paperlark";
        else
            folder = MachineFolder;
        hives_[root - FirstRoot] = std::make_unique<HiveStore>(root, hivePath(folder, root));
    }
}

PosixRegistry::PosixRegistry(const std::filesystem::path& folder) {
    for (RootKey root = FirstRoot; root <= LastRoot; ++root)
        hives_[root - FirstRoot] = std::make_unique<HiveStore>(root, hivePath(folder, root));
}

HiveStore* PosixRegistry::hive(RootKey root) const {
    return root >= FirstRoot && root <= LastRoot ? hives_[root - FirstRoot].get() : nullptr;
}

std::filesystem::path PosixRegistry::hiveFile(RootKey root) const {
    const HiveStore* h = hive(root);
    return h ? h->file() : std::filesystem::path();
}

std::optional<std::string> PosixRegistry::hiveProblem(RootKey root) const {
    const HiveStore* h = hive(root);
    return h ? h->problem() : std::nullopt;
}

// The view flag is not looked at anywhere below: both views of a root share its one hive.

bool PosixRegistry::keyExists(RootKey root, std::string_view subKey, std::uint32_t) const {
    const HiveStore* h = hive(root);
    if (h == nullptr)
        return false;
    bool found = false;
    h->read([&](const HiveKey& tree) { found = tree.find(subKey) != nullptr; });
    return found || isPlatformKey(root, subKey);
}

long PosixRegistry::queryValue(RootKey root, std::string_view subKey, std::string_view name, std::uint32_t,
                               RegValue& out) const {
    const HiveStore* h = hive(root);
    if (h == nullptr)
        return RegInvalidHandle;
    bool found = false;
    h->read([&](const HiveKey& tree) {
        const HiveKey* key = tree.find(subKey);
        const RegValue* value = key ? key->findValue(name) : nullptr;
        if (value != nullptr) {
            out = *value;
            found = true;
        }
    });
    if (found)
        return RegOk;
    for (RegValue& value : platformValues(root, subKey)) {
        if (text::iequals(value.name, name)) {
            out = std::move(value);
            return RegOk;
        }
    }
    return RegFileNotFound;
}

long PosixRegistry::enumValues(RootKey root, std::string_view subKey, std::uint32_t, std::vector<RegValue>& out) const {
    const HiveStore* h = hive(root);
    if (h == nullptr)
        return RegInvalidHandle;
    bool stored = false;
    out.clear();
    h->read([&](const HiveKey& tree) {
        if (const HiveKey* key = tree.find(subKey)) {
            out = key->values;
            stored = true;
        }
    });
    if (!stored && !isPlatformKey(root, subKey))
        return RegFileNotFound;
    for (RegValue& value : platformValues(root, subKey)) {
        const bool shadowed =
            std::any_of(out.begin(), out.end(), [&](const RegValue& v) { return text::iequals(v.name, value.name); });
        if (!shadowed)
            out.push_back(std::move(value));
    }
    return RegOk;
}

long PosixRegistry::change(RootKey root, const std::function<long(HiveKey&, bool&)>& edit) {
    HiveStore* h = hive(root);
    return h == nullptr ? RegInvalidHandle : h->modify(edit);
}

long PosixRegistry::setValue(RootKey root, std::string_view subKey, const RegValue& value, std::uint32_t) {
    return change(root, [&](HiveKey& tree, bool& changed) { return posix::setValue(tree, subKey, value, changed); });
}

long PosixRegistry::createKey(RootKey root, std::string_view subKey, std::uint32_t) {
    return change(root, [&](HiveKey& tree, bool& changed) { return posix::createKey(tree, subKey, changed); });
}

long PosixRegistry::deleteValue(RootKey root, std::string_view subKey, std::string_view name, std::uint32_t) {
    return change(root, [&](HiveKey& tree, bool& changed) { return posix::deleteValue(tree, subKey, name, changed); });
}

long PosixRegistry::deleteKey(RootKey root, std::string_view subKey, std::uint32_t) {
    return change(root, [&](HiveKey& tree, bool& changed) { return posix::deleteKey(tree, subKey, changed); });
}

} // namespace pl::platform::posix
