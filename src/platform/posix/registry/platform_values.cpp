#include "platform/posix/registry/platform_values.h"

#include "base/text.h"
#include "platform/posix/registry/hive_tree.h"
#include "platform/posix/xdg_dirs.h"

#include <array>
#include <cstdlib>
#include <fstream>
#include <functional>

#include <sys/utsname.h>

namespace pl::platform::posix {

namespace {

struct PlatformKey {
    RootKey root;
    std::string_view path;
    std::vector<std::string_view> valueNames;
};

const std::array<PlatformKey, 4>& platformKeys() {
    static const std::array<PlatformKey, 4> keys{{
        {HKEY_CURRENT_USER,
         "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders",
         {"Desktop", "Local AppData"}},
        {HKEY_CURRENT_USER, "Control Panel\\International", {"locale"}},
        {HKEY_LOCAL_MACHINE,
         "SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion",
         {"CurrentVersion", "CurrentBuildNumber", "CSDVersion"}},
        {HKEY_LOCAL_MACHINE, "Software\\tobrin\\PaperlarkXP", {"plDir"}},
    }};
    return keys;
}

// `path` names `key` itself (exact) or one of its parents.
bool names(const PlatformKey& key, std::string_view path, bool exact) {
    std::vector<std::string_view> wanted;
    std::vector<std::string_view> given;
    splitKeyPath(key.path, wanted);
    if (!splitKeyPath(path, given) || given.size() > wanted.size() || (exact && given.size() != wanted.size()))
        return false;
    for (std::size_t i = 0; i < given.size(); ++i)
        if (!text::iequals(given[i], wanted[i]))
            return false;
    return true;
}

std::string firstSetVariable(std::initializer_list<const char*> names) {
    for (const char* name : names)
        if (const char* value = std::getenv(name); value != nullptr && *value != '\0')
            return value;
    return {};
}

// One field of os-release: KEY=value, the value optionally in single or double quotes.
std::string osReleaseField(std::string_view field) {
    for (const char* file : {"/etc/os-release", "/usr/lib/os-release"}) {
        std::ifstream in(file);
        if (!in)
            continue;
        for (std::string line; std::getline(in, line);) {
            if (!line.starts_with(field) || line.size() <= field.size() || line[field.size()] != '=')
                continue;
            std::string value = line.substr(field.size() + 1);
            if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front())
                value = value.substr(1, value.size() - 2);
            return text::replaceAll(text::replaceAll(value, "\\\"", "\""), "\\\\", "\\");
        }
        return {};
    }
    return {};
}

// The numbers at the start of the kernel release, "6.1.0-18-amd64" -> 6, 1, 0.
std::vector<std::string> kernelNumbers() {
    struct utsname names {};
    std::vector<std::string> numbers;
    if (::uname(&names) != 0)
        return numbers;
    std::string current;
    for (const char* p = names.release;; ++p) {
        if (*p >= '0' && *p <= '9') {
            current += *p;
            continue;
        }
        if (!current.empty())
            numbers.push_back(current);
        current.clear();
        if (*p != '.')
            break;
    }
    return numbers;
}

std::string windowsNtValue(std::string_view valueName) {
    const std::vector<std::string> numbers = kernelNumbers();
    auto number = [&](std::size_t i) { return i < numbers.size() ? numbers[i] : std::string("0"); };
    if (text::iequals(valueName, "CurrentVersion"))
        return number(0) + "." + number(1);
    if (text::iequals(valueName, "CurrentBuildNumber"))
        return number(2);
    std::string name = osReleaseField("PRETTY_NAME");
    if (name.empty())
        name = osReleaseField("NAME");
    if (name.empty()) {
        struct utsname names {};
        if (::uname(&names) == 0)
            name = names.sysname;
    }
    return name;
}

std::string valueOf(std::string_view valueName) {
    if (text::iequals(valueName, "Desktop"))
        return xdgDesktopDir();
    if (text::iequals(valueName, "Local AppData"))
        return xdgDataHome();
    if (text::iequals(valueName, "locale"))
        return localeIdentifier(firstSetVariable({"LC_ALL", "LC_MESSAGES", "LANG"}));
    if (text::iequals(valueName, "plDir"))
        return suiteFolder();
    return windowsNtValue(valueName);
}

RegValue textValue(std::string_view name, const std::string& value) {
    RegValue v{std::string(name), regtype::Sz, {value.begin(), value.end()}};
    v.data.push_back(0);
    return v;
}

struct LocaleId {
    std::string_view name; // "lang" or "lang_TERRITORY"
    std::string_view id;
};

// Territory-specific entries come before the language's own, which covers every other territory.
constexpr std::array<LocaleId, 52> localeIds{{
    {"en_GB", "00000809"}, {"en_AU", "00000C09"}, {"en_CA", "00001009"}, {"en_NZ", "00001409"}, {"en_IE", "00001809"},
    {"en_ZA", "00001C09"}, {"en", "00000409"},    {"de", "00000407"},    {"fr_BE", "0000080C"}, {"fr_CA", "00000C0C"},
    {"fr_CH", "0000100C"}, {"fr", "0000040C"},    {"it", "00000410"},    {"nl_BE", "00000813"}, {"nl", "00000413"},
    {"es", "0000040A"},    {"pt_BR", "00000416"}, {"pt", "00000816"},    {"pl", "00000415"},    {"ru", "00000419"},
    {"zh_TW", "00000404"}, {"zh_HK", "00000C04"}, {"zh_SG", "00001004"}, {"zh", "00000804"},    {"cs", "00000405"},
    {"hu", "0000040E"},    {"fi", "0000040B"},    {"nb", "00000414"},    {"no", "00000414"},    {"nn", "00000814"},
    {"sv", "0000041D"},    {"da", "00000406"},    {"el", "00000408"},    {"tr", "0000041F"},    {"ja", "00000411"},
    {"ko", "00000412"},    {"sk", "0000041B"},    {"sl", "00000424"},    {"hr", "0000041A"},    {"ro", "00000418"},
    {"bg", "00000402"},    {"uk", "00000422"},    {"et", "00000425"},    {"lv", "00000426"},    {"lt", "00000427"},
    {"ca", "00000403"},    {"he", "0000040D"},    {"ar", "00000401"},    {"th", "0000041E"},    {"vi", "0000042A"},
    {"id", "00000421"},    {"is", "0000040F"},
}};

} // namespace

bool isPlatformKey(RootKey root, std::string_view subKey) {
    for (const PlatformKey& key : platformKeys())
        if (key.root == root && names(key, subKey, false))
            return true;
    return false;
}

std::vector<RegValue> platformValues(RootKey root, std::string_view subKey) {
    std::vector<RegValue> values;
    for (const PlatformKey& key : platformKeys())
        if (key.root == root && names(key, subKey, true))
            for (std::string_view name : key.valueNames)
                values.push_back(textValue(name, valueOf(name)));
    return values;
}

std::string localeIdentifier(std::string_view posixLocale) {
    // "de_DE.UTF-8@euro": language, territory, then codeset and modifier, which do not matter here.
    const std::string_view name = posixLocale.substr(0, posixLocale.find_first_of(".@"));
    const std::string_view language = name.substr(0, name.find('_'));
    for (const LocaleId& entry : localeIds) {
        if (entry.name.find('_') != std::string_view::npos ? text::iequals(entry.name, name)
                                                           : text::iequals(entry.name, language))
            return std::string(entry.id);
    }
    return "00000409";
}

} // namespace pl::platform::posix
