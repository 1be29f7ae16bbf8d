#include "platform/win32/win32_registry.h"

#include <windows.h>

namespace pl::platform::win32 {

namespace {

// The predefined handles are the root numbers sign-extended to the width of a pointer. (The names
// of the roots are macros of the system's headers here, hence the numbers.)
std::optional<HKEY> rootHandle(RootKey root) {
    constexpr RootKey classesRoot = 0x80000000u, dynData = 0x80000006u;
    if (root < classesRoot || root > dynData)
        return std::nullopt;
    return reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(static_cast<LONG_PTR>(static_cast<LONG>(root))));
}

// An open key, closed when it goes out of scope.
class Key {
public:
    Key() = default;
    ~Key() {
        if (key_ != nullptr)
            RegCloseKey(key_);
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    LONG open(RootKey root, std::string_view subKey, REGSAM access) {
        const auto base = rootHandle(root);
        if (!base)
            return ERROR_INVALID_HANDLE;
        return RegOpenKeyExA(*base, std::string(subKey).c_str(), 0, access, &key_);
    }
    LONG create(RootKey root, std::string_view subKey, REGSAM access) {
        const auto base = rootHandle(root);
        if (!base)
            return ERROR_INVALID_HANDLE;
        return RegCreateKeyExA(*base, std::string(subKey).c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, access, nullptr,
                               &key_, nullptr);
    }
    HKEY get() const { return key_; }

private:
    HKEY key_ = nullptr;
};

} // namespace

bool Win32Registry::keyExists(RootKey root, std::string_view subKey, std::uint32_t viewFlags) const {
    Key key;
    return key.open(root, subKey, KEY_QUERY_VALUE | viewFlags) == ERROR_SUCCESS;
}

long Win32Registry::queryValue(RootKey root, std::string_view subKey, std::string_view name, std::uint32_t viewFlags,
                               RegValue& out) const {
    Key key;
    if (const LONG result = key.open(root, subKey, KEY_QUERY_VALUE | viewFlags); result != ERROR_SUCCESS)
        return result;
    const std::string valueName(name);
    for (;;) {
        DWORD type = 0;
        DWORD size = 0;
        LONG result = RegQueryValueExA(key.get(), valueName.c_str(), nullptr, &type, nullptr, &size);
        if (result != ERROR_SUCCESS)
            return result;
        std::vector<std::uint8_t> data(size);
        result = RegQueryValueExA(key.get(), valueName.c_str(), nullptr, &type, data.data(), &size);
        if (result == ERROR_MORE_DATA)
            continue; // changed between the two calls
        if (result != ERROR_SUCCESS)
            return result;
        data.resize(size);
        out.name = valueName;
        out.type = type;
        out.data = std::move(data);
        return ERROR_SUCCESS;
    }
}

long Win32Registry::enumValues(RootKey root, std::string_view subKey, std::uint32_t viewFlags,
                               std::vector<RegValue>& out) const {
    out.clear();
    Key key;
    if (const LONG result = key.open(root, subKey, KEY_READ | viewFlags); result != ERROR_SUCCESS)
        return result;
    DWORD longestName = 0;
    DWORD longestData = 0;
    LONG result = RegQueryInfoKeyA(key.get(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                   &longestName, &longestData, nullptr, nullptr);
    if (result != ERROR_SUCCESS)
        return result;
    std::vector<char> name(longestName + 1);
    std::vector<std::uint8_t> data(longestData + 1);
    for (DWORD index = 0;; ++index) {
        DWORD nameLength = static_cast<DWORD>(name.size());
        DWORD dataLength = static_cast<DWORD>(data.size());
        DWORD type = 0;
        result = RegEnumValueA(key.get(), index, name.data(), &nameLength, nullptr, &type, data.data(), &dataLength);
        if (result == ERROR_MORE_DATA) {
            // A value grew since the size query: make room and ask for the same index again.
            name.resize(name.size() * 2 + 256);
            data.resize(data.size() * 2 + 256);
            --index;
            continue;
        }
        if (result != ERROR_SUCCESS)
            break;
        out.push_back(RegValue{std::string(name.data(), nameLength), type,
                               std::vector<std::uint8_t>(data.begin(), data.begin() + dataLength)});
    }
    return result == ERROR_NO_MORE_ITEMS ? ERROR_SUCCESS : result;
}

long Win32Registry::setValue(RootKey root, std::string_view subKey, const RegValue& value, std::uint32_t viewFlags) {
    Key key;
    if (const LONG result = key.create(root, subKey, KEY_ALL_ACCESS | viewFlags); result != ERROR_SUCCESS)
        return result;
    return RegSetValueExA(key.get(), value.name.c_str(), 0, value.type, value.data.data(),
                          static_cast<DWORD>(value.data.size()));
}

long Win32Registry::createKey(RootKey root, std::string_view subKey, std::uint32_t viewFlags) {
    Key key;
    return key.create(root, subKey, KEY_ALL_ACCESS | viewFlags);
}

long Win32Registry::deleteValue(RootKey root, std::string_view subKey, std::string_view name, std::uint32_t viewFlags) {
    Key key;
    if (const LONG result = key.open(root, subKey, KEY_ALL_ACCESS | viewFlags); result != ERROR_SUCCESS)
        return result;
    return RegDeleteValueA(key.get(), std::string(name).c_str());
}

long Win32Registry::deleteKey(RootKey root, std::string_view subKey, std::uint32_t viewFlags) {
    Key key;
    if (const LONG result = key.open(root, subKey, KEY_ALL_ACCESS | viewFlags); result != ERROR_SUCCESS)
        return result;
    // Windows refuses to delete a key with sub-keys, but not every implementation says so in the
    // same words (Wine answers "access denied"); asking first gives every caller the same answer.
    DWORD subKeys = 0;
    if (const LONG result = RegQueryInfoKeyA(key.get(), nullptr, nullptr, nullptr, &subKeys, nullptr, nullptr, nullptr,
                                             nullptr, nullptr, nullptr, nullptr);
        result != ERROR_SUCCESS)
        return result;
    if (subKeys > 0)
        return RegKeyHasChildren;
    return RegDeleteKeyA(key.get(), "");
}

} // namespace pl::platform::win32
