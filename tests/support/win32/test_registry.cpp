#include "support/test_registry.h"

#include "platform/posix/registry/hive_tree.h"
#include "platform/posix/registry/regedit_format.h"
#include "platform/win32/win32_registry.h"

#include <windows.h>

#include <array>
#include <atomic>
#include <stdexcept>
#include <vector>

namespace pl::test {

namespace {

namespace regfile = platform::posix;

// The roots a test may write to. Each is turned, for this process only, to a key below
// HKCU\Software\PaperlarkTests\<process>-<n>, so that tests running side by side (they share
// one registry) never see each other's values and the real roots stay untouched.
// (The names of the roots are macros of the system's headers here, hence the numbers: classes root,
// current user, local machine, users.)
constexpr std::array<platform::RootKey, 4> IsolatedRoots{0x80000000u, 0x80000001u, 0x80000002u, 0x80000003u};

HKEY handleOf(platform::RootKey root) {
    return reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(static_cast<LONG_PTR>(static_cast<LONG>(root))));
}

// Reads a key and everything below it, for an export.
void readTree(HKEY key, regfile::HiveKey& into) {
    DWORD subKeys = 0, longestSubKey = 0, longestName = 0, longestData = 0;
    if (RegQueryInfoKeyA(key, nullptr, nullptr, nullptr, &subKeys, &longestSubKey, nullptr, nullptr, &longestName,
                         &longestData, nullptr, nullptr) != ERROR_SUCCESS)
        return;
    std::vector<char> name(std::max(longestName, longestSubKey) + 1);
    std::vector<BYTE> data(longestData + 1);
    for (DWORD i = 0;; ++i) {
        DWORD nameLength = static_cast<DWORD>(name.size()), dataLength = static_cast<DWORD>(data.size()), type = 0;
        if (RegEnumValueA(key, i, name.data(), &nameLength, nullptr, &type, data.data(), &dataLength) != ERROR_SUCCESS)
            break;
        into.values.push_back(platform::RegValue{std::string(name.data(), nameLength), type,
                                                 std::vector<std::uint8_t>(data.begin(), data.begin() + dataLength)});
    }
    for (DWORD i = 0; i < subKeys; ++i) {
        DWORD nameLength = static_cast<DWORD>(name.size());
        if (RegEnumKeyExA(key, i, name.data(), &nameLength, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
            break;
        HKEY child = nullptr;
        const std::string childName(name.data(), nameLength);
        if (RegOpenKeyExA(key, childName.c_str(), 0, KEY_READ, &child) != ERROR_SUCCESS)
            continue;
        into.subKeys.push_back(regfile::HiveKey{childName, {}, {}});
        readTree(child, into.subKeys.back());
        RegCloseKey(child);
    }
}

} // namespace

struct TestRegistry::Store {
    Store() {
        static std::atomic<unsigned> counter{0};
        const std::string name =
            "Software\\PaperlarkTests\\" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(counter++);
        // Made below the user's real root (or below an outer test registry's), before any override.
        if (RegCreateKeyExA(HKEY_CURRENT_USER, name.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS,
                            nullptr, &own, nullptr) != ERROR_SUCCESS)
            throw std::runtime_error("cannot create the test's registry key");
        for (std::size_t i = 0; i < IsolatedRoots.size(); ++i) {
            const std::string rootName(regfile::rootLongName(IsolatedRoots[i]));
            RegCreateKeyExA(own, rootName.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr,
                            &roots[i], nullptr);
        }
        active().push_back(this);
        turnRootsTo(this);
    }
    ~Store() {
        active().pop_back();
        turnRootsTo(active().empty() ? nullptr : active().back());
        for (HKEY root : roots)
            RegCloseKey(root);
        RegDeleteTreeA(own, nullptr);
        RegDeleteKeyA(own, "");
        RegCloseKey(own);
    }
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;

    static std::vector<Store*>& active() {
        static std::vector<Store*> stores;
        return stores;
    }
    static void turnRootsTo(const Store* store) {
        for (std::size_t i = 0; i < IsolatedRoots.size(); ++i)
            RegOverridePredefKey(handleOf(IsolatedRoots[i]), store ? store->roots[i] : nullptr);
    }

    HKEY own = nullptr;
    std::array<HKEY, IsolatedRoots.size()> roots{};
    platform::win32::Win32Registry backend;
};

TestRegistry::TestRegistry()
    : env_("PAPERLARK_REGISTRY_DIR", dir_.folder()), store_(std::make_unique<Store>()), registry_(store_->backend) {}

TestRegistry::~TestRegistry() = default;

platform::RegistryBackend& TestRegistry::backend() {
    return store_->backend;
}

std::string TestRegistry::writeHive(const std::string& rootName, const std::string& content) const {
    const std::string file = dir_.write(rootName + ".reg", content);
    const regfile::RegFileParse parsed = regfile::parseRegFile(content);
    if (!parsed.file)
        throw std::runtime_error("the hive text does not parse: " + parsed.error.message);
    for (const regfile::RegFileKey& section : parsed.file->keys) {
        const HKEY root = handleOf(section.root);
        if (section.remove) {
            RegDeleteTreeA(root, section.subKey.c_str());
            RegDeleteKeyA(root, section.subKey.c_str());
            continue;
        }
        for (const regfile::RegFileValue& value : section.values) {
            if (value.remove)
                store_->backend.deleteValue(section.root, section.subKey, value.name, 0);
            else
                store_->backend.setValue(section.root, section.subKey, {value.name, value.type, value.data}, 0);
        }
        store_->backend.createKey(section.root, section.subKey, 0);
    }
    return file;
}

std::string TestRegistry::readHive(const std::string& rootName) const {
    const platform::RootKey root = regfile::rootFromLongName(rootName);
    regfile::HiveKey tree;
    readTree(handleOf(root), tree);
    if (tree.values.empty() && tree.subKeys.empty())
        return {};
    return regfile::writeRegFile(regfile::toRegFile(tree, root));
}

} // namespace pl::test
