#include "platform/registry.h"

#include "base/errors.h"
#include "base/text.h"

#include <array>
#include <cstdint>

namespace pl::platform {

namespace {

struct RootName {
    std::string_view longName;
    std::string_view shortName;
    RootKey key;
};

// Tested in this order. The first long name carries two lower-case letters and is compared with the
// upper-cased path, so it never matches: the classes root is reachable through "HKCR" only. Callers
// have always lived with that, and some rely on the full name being refused, so it stays.
constexpr std::array<RootName, 7> rootNames{{
    {"HKEY_CLAssES_ROOT", "HKCR", HKEY_CLASSES_ROOT},
    {"HKEY_CURRENT_USER", "HKCU", HKEY_CURRENT_USER},
    {"HKEY_LOCAL_MACHINE", "HKLM", HKEY_LOCAL_MACHINE},
    {"HKEY_USERS", "HKU", HKEY_USERS},
    {"HKEY_PERFORMANCE_DATA", "HKPD", HKEY_PERFORMANCE_DATA},
    {"HKEY_CURRENT_CONFIG", "HKCC", HKEY_CURRENT_CONFIG},
    {"HKEY_DYN_DATA", "HKDD", HKEY_DYN_DATA},
}};

constexpr std::uint32_t KEY_QUERY_VALUE = 0x0001;
constexpr std::uint32_t KEY_ALL_ACCESS = 0xF003F;
constexpr std::uint32_t KEY_READ = 0x20019;

// Paths this short cannot name a key below a root; read, write and delete refuse them.
constexpr std::size_t MinimumPathLength = 6;

// A path as one operation sees it: the caller's text with the view marker taken out.
struct ViewedPath {
    std::string path;
    std::uint32_t viewFlag = 0;
};

// "HKLM64\Software" asks for the 64-bit view. Only the two characters in front of the first "\" are
// looked at, so any first component ending in "64" counts as the marker.
ViewedPath takeViewMarker(std::string_view callerPath) {
    ViewedPath result{std::string(callerPath), 0};
    const std::size_t sep = result.path.find('\\');
    // The separator must stand at a 1-based position above 2, i.e. have at least two characters before it.
    if (sep != std::string::npos && sep >= 2 && result.path.compare(sep - 2, 2, "64") == 0) {
        result.path.erase(sep - 2, 2);
        result.viewFlag = KEY_WOW64_64KEY;
    }
    return result;
}

bool tooShort(const std::string& path) {
    return text::length(path) < MinimumPathLength;
}

// The key handle of the classic code carried the access it was opened with; the store needs only
// the view bit of it.
std::uint32_t viewOf(std::uint32_t access) {
    return access & KEY_WOW64_64KEY;
}

std::string booleanText(bool value) {
    return value ? "True" : "False";
}

std::string binaryText(const std::vector<std::uint8_t>& data) {
    std::string out;
    out.reserve(data.size() * 3);
    for (std::uint8_t b : data) {
        out += Registry::HexByte(b);
        out += ':';
    }
    return out;
}

// The four bytes, lowest first, weighted 1, 256, 65536 and 16777216 and summed in a signed 32-bit
// integer. A top byte of 128 or more overflows that sum; the overflow is the caller's to handle, as
// it always was, rather than a negative number.
std::string dwordText(const std::vector<std::uint8_t>& data) {
    std::int64_t sum = 0;
    std::int64_t weight = 1;
    for (std::size_t i = 0; i < 4; ++i, weight *= 256)
        sum += (i < data.size() ? data[i] : 0) * weight;
    if (sum > INT32_MAX)
        pl::raise(pl::err::Overflow);
    return text::number(sum);
}

} // namespace

RootKey Registry::GetRootKey(std::string& path) {
    RootKey result = 0;
    for (const RootName& row : rootNames) {
        const std::string upper = text::toUpper(path);
        if (upper.starts_with(row.longName) || upper.starts_with(row.shortName)) {
            result = row.key;
            // Later rows test what is left, so "HKCU\HKUsers" ends below HKEY_USERS.
            if (const std::size_t sep = path.find('\\'); sep != std::string::npos)
                path.erase(0, sep + 1);
        }
    }
    return result;
}

std::string Registry::HexByte(int value) {
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string reversed;
    for (unsigned v = static_cast<unsigned>(value); v != 0; v >>= 4)
        reversed.push_back(digits[v & 0xF]);
    if (reversed.empty())
        reversed.push_back('0');
    if ((value & 0xF0) == 0)
        reversed.push_back('0');
    return std::string(reversed.rbegin(), reversed.rend());
}

std::string Registry::GetRegValue(std::string_view callerPath, std::string_view valueName) const {
    ViewedPath p = takeViewMarker(callerPath);
    if (tooShort(p.path))
        return {};
    const RootKey root = GetRootKey(p.path);
    const std::uint32_t access = KEY_QUERY_VALUE | p.viewFlag;
    if (!backend_.keyExists(root, p.path, viewOf(access)))
        return {};
    RegValue value;
    if (backend_.queryValue(root, p.path, valueName, viewOf(access), value) != RegOk || value.data.empty())
        return {};
    switch (value.type) {
    case regtype::Binary:
        return binaryText(value.data);
    case regtype::Dword:
        return dwordText(value.data);
    default:
        // The text without its terminating NUL; the inner NULs of a multi-string stay.
        return std::string(value.data.begin(), value.data.end() - 1);
    }
}

std::string Registry::SetRegValue(std::string_view callerPath, std::string_view valueName, std::string_view data) {
    ViewedPath p = takeViewMarker(callerPath);
    if (tooShort(p.path))
        return {};
    const RootKey root = GetRootKey(p.path);
    try {
        const std::uint32_t access = KEY_ALL_ACCESS | p.viewFlag;
        if (backend_.createKey(root, p.path, viewOf(access)) != RegOk)
            return "Create or Open Error";
        RegValue value;
        value.name = std::string(valueName);
        value.type = regtype::Sz;
        value.data.assign(data.begin(), data.end());
        value.data.push_back(0);
        return booleanText(backend_.setValue(root, p.path, value, viewOf(access)) == RegOk);
    } catch (...) {
        return "Open Error";
    }
}

std::string Registry::DeleteRegEntry(std::string_view callerPath, std::string_view valueName) {
    ViewedPath p = takeViewMarker(callerPath);
    if (tooShort(p.path))
        return {};
    const RootKey root = GetRootKey(p.path);
    if (!valueName.empty()) {
        const std::uint32_t access = KEY_ALL_ACCESS | p.viewFlag;
        if (!backend_.keyExists(root, p.path, viewOf(access)))
            return booleanText(false);
        return booleanText(backend_.deleteValue(root, p.path, valueName, viewOf(access)) == RegOk);
    }
    // Removing a whole key has always opened it in the default view, marker or not.
    const std::uint32_t access = KEY_ALL_ACCESS;
    if (!backend_.keyExists(root, p.path, viewOf(access)))
        return booleanText(false);
    return booleanText(backend_.deleteKey(root, p.path, viewOf(access)) == RegOk);
}

std::optional<std::string> Registry::EnumRegStringValues(std::string_view callerPath) const {
    ViewedPath p = takeViewMarker(callerPath);
    const RootKey root = GetRootKey(p.path);
    const std::uint32_t access = KEY_READ | p.viewFlag;
    if (!backend_.keyExists(root, p.path, viewOf(access)))
        return std::string();
    std::vector<RegValue> values;
    if (backend_.enumValues(root, p.path, viewOf(access), values) != RegOk)
        return std::nullopt;
    std::string list;
    bool any = false;
    for (const RegValue& value : values) {
        if (value.type != regtype::Sz)
            continue;
        list += value.name;
        list += '\r';
        any = true;
    }
    if (!any)
        return std::nullopt;
    return list;
}

} // namespace pl::platform
