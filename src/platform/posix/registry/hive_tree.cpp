#include "platform/posix/registry/hive_tree.h"

#include "base/text.h"

#include <algorithm>
#include <functional>

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

// The key at `path`, created with any missing parents.
long obtainKey(HiveKey& root, std::string_view path, bool& changed, HiveKey*& out) {
    std::vector<std::string_view> names;
    if (!splitKeyPath(path, names))
        return RegBadPathName;
    for (std::string_view name : names)
        if (!isWritableName(name))
            return RegInvalidParameter;
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

bool applyRegFileKey(HiveKey& root, RootKey rootKey, RegFileKey& section) {
    bool changed = false;
    if (section.root != rootKey)
        return false;
    if (section.remove) {
        eraseBranch(root, section.subKey, changed);
        return true;
    }
    HiveKey* key = nullptr;
    if (obtainKey(root, section.subKey, changed, key) != RegOk)
        return false;
    for (RegFileValue& v : section.values) {
        if (v.remove) {
            deleteValue(*key, {}, v.name, changed);
        } else if (auto it = valueNamed(*key, v.name); it != key->values.end()) {
            it->type = v.type;
            it->data = std::move(v.data);
        } else if (isWritableName(v.name)) {
            key->values.push_back(RegValue{std::move(v.name), v.type, std::move(v.data)});
        }
    }
    return true;
}

const RegFileKey* applyRegFile(HiveKey& root, RootKey rootKey, const RegFile& file) {
    for (const RegFileKey& section : file.keys) {
        RegFileKey copy = section;
        if (!applyRegFileKey(root, rootKey, copy))
            return &section;
    }
    return nullptr;
}

} // namespace pl::platform::posix
