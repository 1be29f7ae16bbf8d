#include "platform/posix/registry/hive_tree.h"

#include "base/text.h"

#include <algorithm>
#include <functional>
#include <unordered_map>

namespace pl::platform::posix {

namespace {

template <class Key> Key* findIn(Key& from, std::string_view path) {
    std::vector<std::string_view> names;
    if (!splitKeyPath(path, names))
        return nullptr;
    Key* key = &from;
    for (std::string_view name : names) {
        auto it = std::find_if(key->subKeys.begin(), key->subKeys.end(),
                               [&](const HiveKey& k) { return text::iequals(k.name, name); });
        if (it == key->subKeys.end())
            return nullptr;
        key = &*it;
    }
    return key;
}

std::vector<RegValue>::iterator valueNamed(HiveKey& key, std::string_view valueName) {
    return std::find_if(key.values.begin(), key.values.end(),
                        [&](const RegValue& v) { return text::iequals(v.name, valueName); });
}

bool isAscii(std::string_view s) {
    return std::all_of(s.begin(), s.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

char asciiLower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Names in an order that puts names equal but for case side by side; plain names need no copy.
bool caseBlindLess(std::string_view a, std::string_view b) {
    if (isAscii(a) && isAscii(b))
        return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                            [](char x, char y) { return asciiLower(x) < asciiLower(y); });
    return text::toLower(a) < text::toLower(b);
}

// The key names of a path that a hive file can hold: RegOk, or why not.
long writableKeyNames(std::string_view path, std::vector<std::string_view>& names) {
    if (!splitKeyPath(path, names))
        return RegBadPathName;
    for (std::string_view name : names)
        if (!isWritableName(name))
            return RegInvalidParameter;
    return RegOk;
}

// The key at `path`, created with any missing parents.
long obtainKey(HiveKey& root, std::string_view path, bool& changed, HiveKey*& out) {
    std::vector<std::string_view> names;
    if (const long rc = writableKeyNames(path, names); rc != RegOk)
        return rc;
    HiveKey* key = &root;
    for (std::string_view name : names) {
        auto it = std::find_if(key->subKeys.begin(), key->subKeys.end(),
                               [&](const HiveKey& k) { return text::iequals(k.name, name); });
        if (it == key->subKeys.end()) {
            key->subKeys.push_back(HiveKey{std::string(name), {}, {}});
            changed = true;
            key = &key->subKeys.back();
        } else {
            key = &*it;
        }
    }
    out = key;
    return RegOk;
}

// Removes the key at `path` with everything below it; the caller has checked what must be checked.
void eraseBranch(HiveKey& root, std::string_view path, bool& changed) {
    std::vector<std::string_view> names;
    if (!splitKeyPath(path, names) || names.empty())
        return;
    const std::string_view last = names.back();
    const auto lastStart = static_cast<std::size_t>(last.data() - path.data());
    const std::string_view parentPath = path.substr(0, lastStart == 0 ? 0 : lastStart - 1);
    HiveKey* parent = root.find(parentPath);
    if (parent == nullptr)
        return;
    const auto removed = std::erase_if(parent->subKeys, [&](const HiveKey& k) { return text::iequals(k.name, last); });
    changed = changed || removed != 0;
}

void visitSections(const HiveKey& key, const std::string& path, RootKey rootKey,
                   const std::function<void(const RegFileKey&)>& visit) {
    if (!path.empty() || !key.values.empty()) {
        RegFileKey section;
        section.root = rootKey;
        section.subKey = path;
        for (const RegValue& v : key.values)
            section.values.push_back(RegFileValue{v.name, false, v.type, v.data});
        visit(section);
    }
    for (const HiveKey& sub : key.subKeys)
        visitSections(sub, path.empty() ? sub.name : path + '\\' + sub.name, rootKey, visit);
}

} // namespace

const HiveKey* HiveKey::find(std::string_view path) const {
    return findIn(*this, path);
}
HiveKey* HiveKey::find(std::string_view path) {
    return findIn(*this, path);
}

const RegValue* HiveKey::findValue(std::string_view valueName) const {
    auto it =
        std::find_if(values.begin(), values.end(), [&](const RegValue& v) { return text::iequals(v.name, valueName); });
    return it == values.end() ? nullptr : &*it;
}

bool splitKeyPath(std::string_view path, std::vector<std::string_view>& names) {
    names.clear();
    if (path.size() > 1 && path.ends_with('\\'))
        path.remove_suffix(1);
    if (path.empty())
        return true;
    for (;;) {
        const std::size_t sep = path.find('\\');
        const std::string_view name = path.substr(0, sep);
        if (name.empty())
            return false;
        names.push_back(name);
        if (sep == std::string_view::npos)
            return true;
        path.remove_prefix(sep + 1);
    }
}

long createKey(HiveKey& root, std::string_view path, bool& changed) {
    HiveKey* key = nullptr;
    return obtainKey(root, path, changed, key);
}

long setValue(HiveKey& root, std::string_view path, const RegValue& value, bool& changed) {
    if (!isWritableName(value.name))
        return RegInvalidParameter;
    HiveKey* key = nullptr;
    if (const long rc = obtainKey(root, path, changed, key); rc != RegOk)
        return rc;
    auto it = valueNamed(*key, value.name);
    if (it == key->values.end()) {
        key->values.push_back(value);
        changed = true;
    } else if (it->type != value.type || it->data != value.data) {
        it->type = value.type;
        it->data = value.data;
        changed = true;
    }
    return RegOk;
}

long deleteValue(HiveKey& root, std::string_view path, std::string_view valueName, bool& changed) {
    HiveKey* key = root.find(path);
    if (key == nullptr)
        return RegFileNotFound;
    auto it = valueNamed(*key, valueName);
    if (it == key->values.end())
        return RegFileNotFound;
    key->values.erase(it);
    changed = true;
    return RegOk;
}

long deleteKey(HiveKey& root, std::string_view path, bool& changed) {
    const HiveKey* key = root.find(path);
    if (key == nullptr)
        return RegFileNotFound;
    if (key == &root)
        return RegAccessDenied;
    if (!key->subKeys.empty())
        return RegKeyHasChildren;
    eraseBranch(root, path, changed);
    return RegOk;
}

void forEachSection(const HiveKey& root, RootKey rootKey, const std::function<void(const RegFileKey&)>& visit) {
    visitSections(root, std::string(), rootKey, visit);
}

RegFile toRegFile(const HiveKey& root, RootKey rootKey) {
    RegFile file;
    forEachSection(root, rootKey, [&](const RegFileKey& section) { file.keys.push_back(section); });
    return file;
}

HiveLoader::HiveLoader(HiveKey& root, RootKey rootKey) : root_(root), rootKey_(rootKey) {}

HiveKey* HiveLoader::obtain(std::string_view path) {
    std::vector<std::string_view> names;
    if (writableKeyNames(path, names) != RegOk)
        return nullptr;
    HiveKey* key = &root_;
    std::string keyPath; // lower case
    for (std::string_view name : names) {
        auto [index, fresh] = children_.try_emplace(keyPath);
        if (fresh)
            for (std::size_t i = 0; i < key->subKeys.size(); ++i)
                index->second.try_emplace(text::toLower(key->subKeys[i].name), i);
        const std::string lower = text::toLower(name);
        auto [child, added] = index->second.try_emplace(lower, key->subKeys.size());
        if (added)
            key->subKeys.push_back(HiveKey{std::string(name), {}, {}});
        key = &key->subKeys[child->second];
        keyPath.append(lower).push_back('\\');
    }
    return key;
}

bool HiveLoader::apply(RegFileKey& section) {
    if (section.root != rootKey_)
        return false;
    if (section.remove) {
        bool changed = false;
        eraseBranch(root_, section.subKey, changed);
        children_.clear(); // positions have moved
        return true;
    }
    HiveKey* key = obtain(section.subKey);
    if (key == nullptr)
        return false;
    const bool removes =
        std::any_of(section.values.begin(), section.values.end(), [](const RegFileValue& v) { return v.remove; });
    if (key->values.empty() && !removes)
        takeNewValues(*key, section.values);
    else
        mergeValues(*key, section.values);
    return true;
}

// The usual case, a key's one section: the values go in as they come, exactly as many as there are
// (no spare room), and names that come twice are found by sorting, which needs no copy of a name.
void HiveLoader::takeNewValues(HiveKey& key, std::vector<RegFileValue>& values) {
    std::erase_if(values, [](const RegFileValue& v) { return !isWritableName(v.name); });
    std::vector<std::uint32_t> order(values.size());
    for (std::uint32_t i = 0; i < order.size(); ++i)
        order[i] = i;
    std::stable_sort(order.begin(), order.end(),
                     [&](std::uint32_t a, std::uint32_t b) { return caseBlindLess(values[a].name, values[b].name); });
    // Of names that come twice, the first keeps its place and spelling and takes the last one's data.
    std::vector<bool> dropped(values.size(), false);
    for (std::size_t i = 0; i < order.size();) {
        std::size_t j = i + 1;
        while (j < order.size() && !caseBlindLess(values[order[i]].name, values[order[j]].name))
            ++j;
        if (j - i > 1) {
            RegFileValue& last = values[order[j - 1]];
            values[order[i]].type = last.type;
            values[order[i]].data = std::move(last.data);
            for (std::size_t k = i + 1; k < j; ++k)
                dropped[order[k]] = true;
        }
        i = j;
    }
    key.values.reserve(values.size());
    for (std::size_t i = 0; i < values.size(); ++i)
        if (!dropped[i])
            key.values.push_back(RegValue{std::move(values[i].name), values[i].type, std::move(values[i].data)});
}

// Anything else, in order: a later section of a key, deletions.
void HiveLoader::mergeValues(HiveKey& key, std::vector<RegFileValue>& values) {
    std::unordered_map<std::string, std::size_t> byName;
    const auto index = [&] {
        byName.clear();
        for (std::size_t i = 0; i < key.values.size(); ++i)
            byName.try_emplace(text::toLower(key.values[i].name), i);
    };
    index();
    for (RegFileValue& v : values) {
        if (!isWritableName(v.name))
            continue;
        const std::string lower = text::toLower(v.name);
        const auto at = byName.find(lower);
        if (v.remove) {
            if (at != byName.end()) {
                key.values.erase(key.values.begin() + static_cast<std::ptrdiff_t>(at->second));
                index();
            }
        } else if (at != byName.end()) {
            key.values[at->second].type = v.type;
            key.values[at->second].data = std::move(v.data);
        } else {
            byName.emplace(lower, key.values.size());
            key.values.push_back(RegValue{std::move(v.name), v.type, std::move(v.data)});
        }
    }
}

const RegFileKey* applyRegFile(HiveKey& root, RootKey rootKey, const RegFile& file) {
    HiveLoader loader(root, rootKey);
    for (const RegFileKey& section : file.keys) {
        RegFileKey copy = section;
        if (!loader.apply(copy))
            return &section;
    }
    return nullptr;
}

} // namespace pl::platform::posix
