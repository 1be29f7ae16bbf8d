#include "config/profile_list.h"

#include "base/text.h"
#include "platform/environment_expand.h"
#include "platform/paths.h"
#include "platform/suite_settings.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace pl::config {

namespace {

constexpr std::string_view Extension = ".plp";

std::optional<std::string> readFile(const std::string& path) {
    std::ifstream in(platform::fsPath(path), std::ios::binary);
    if (!in)
        return std::nullopt;
    std::stringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

// Written beside the target and renamed over it, so that the assistant or the converter never
// reads half a profile.
bool writeFile(const std::string& path, const std::string& content) {
    namespace fs = std::filesystem;
    const fs::path temporary = platform::fsPath(path + ".tmp");
    std::error_code ec;
    bool written = false;
    {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        // A profile may hold PDF passwords: only its owner may read it, made so before anything is
        // in the file.
        if (out)
            fs::permissions(temporary, fs::perms::owner_read | fs::perms::owner_write, fs::perm_options::replace, ec);
        written = out && !ec && (out << content) && out.flush();
    }
    if (written) {
        fs::rename(temporary, platform::fsPath(path), ec);
        written = !ec;
    }
    if (!written)
        fs::remove(temporary, ec);
    return written;
}

} // namespace

std::string ProfileList::suiteFolder() const {
    std::string folder = platform::regText(services_.registry, platform::SuiteMachineKey, "plDir");
    return platform::ReplaceEnviron(folder, services_.os.environment());
}

std::string ProfileList::ownFolder() const {
    return services_.os.environment().get("userprofile") + platform::PathSep + "Paperlark" + platform::PathSep;
}

void ProfileList::load() {
    entries_.clear();
    selected = -1;
    platform::FileSystem& files = services_.os.files();
    for (const bool own : {false, true}) {
        const std::string folder = own ? ownFolder() : suiteFolder();
        if (folder.empty())
            continue;
        for (const platform::DirEntry& file : files.findAll(folder, "*.plp")) {
            const std::size_t cut = text::ifind(file.name, Extension);
            ProfileEntry entry;
            entry.name = file.name.substr(0, cut);
            entry.own = own;
            entry.fileName = entry.name;
            const auto bytes = readFile(folder + file.name);
            entry.settings = parseProfileText(bytes.value_or(""));
            entry.saved = entry.settings;
            entries_.push_back(std::move(entry));
        }
    }
    if (!entries_.empty())
        selected = 0;
}

std::vector<std::string> ProfileList::names() const {
    std::vector<std::string> list;
    for (const ProfileEntry& entry : entries_)
        if (!entry.deleted)
            list.push_back(entry.name);
    return list;
}

std::optional<std::string> ProfileList::askName(std::string_view proposal) {
    const auto name = view_.askText(texts_(Txt::AskProfileName), texts_(Txt::Title), proposal);
    if (!name)
        return std::nullopt;
    if (!validProfileName(*name)) {
        view_.msgBox(texts_(Txt::NameInvalid, *name), mb::Exclamation, texts_(Txt::Title));
        return std::nullopt;
    }
    for (const ProfileEntry& entry : entries_) {
        if (entry.own && !entry.deleted && text::iequals(entry.name, *name)) {
            view_.msgBox(texts_(Txt::NameTaken, *name), mb::Exclamation, texts_(Txt::Title));
            return std::nullopt;
        }
    }
    return name;
}

void ProfileList::add(ProfileEntry entry) {
    entry.own = true;
    entry.fileName.clear();
    entry.deleted = false;
    entries_.push_back(std::move(entry));
    selected = static_cast<int>(entries_.size()) - 1;
    view_.refresh();
}

void ProfileList::newProfile() {
    if (const auto name = askName({})) {
        ProfileEntry entry;
        entry.name = *name;
        add(std::move(entry));
    }
}

void ProfileList::copyProfile() {
    if (selected < 0 || entries_[selected].deleted)
        return;
    const ProfileEntry& from = entries_[selected];
    // A suite profile copied under its own name takes its place for this user.
    const std::string proposal = from.own ? texts_(Txt::CopyOf, from.name) : from.name;
    if (const auto name = askName(proposal)) {
        ProfileEntry entry;
        entry.name = *name;
        entry.settings = from.settings;
        add(std::move(entry));
    }
}

void ProfileList::renameProfile(std::string& renamedFrom, std::string& renamedTo) {
    if (selected < 0 || !entries_[selected].own || entries_[selected].deleted)
        return;
    if (const auto name = askName(entries_[selected].name)) {
        renamedFrom = entries_[selected].name;
        renamedTo = *name;
        entries_[selected].name = *name;
        view_.refresh();
    }
}

void ProfileList::deleteProfile() {
    if (selected < 0 || !entries_[selected].own || entries_[selected].deleted)
        return;
    ProfileEntry& entry = entries_[selected];
    if (view_.msgBox(texts_(Txt::AskDelete, entry.name), mb::YesNo | mb::Question, texts_(Txt::Title)) != mb::Yes)
        return;
    if (entry.fileName.empty())
        entries_.erase(entries_.begin() + selected);
    else
        entry.deleted = true;
    selected = -1;
    view_.refresh();
}

bool ProfileList::check() {
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        const ProfileEntry& entry = entries_[i];
        if (!entry.own || entry.deleted || (entry.settings == entry.saved && !entry.fileName.empty()))
            continue;
        if (const Refusal refusal = checkProfile(entry.settings)) {
            selected = static_cast<int>(i);
            view_.refresh();
            view_.msgBox(entry.name + ": " + texts_(refusal.text, refusal.detail), mb::Exclamation, texts_(Txt::Title));
            return false;
        }
    }
    return true;
}

bool ProfileList::save() {
    platform::FileSystem& files = services_.os.files();
    const std::string folder = ownFolder();
    const auto failed = [&](const std::string& path) {
        view_.msgBox(texts_(Txt::WriteFailed, path), mb::Exclamation, texts_(Txt::Title));
        return false;
    };
    const auto pathOf = [&](const std::string& name) { return folder + name + std::string(Extension); };

    for (auto it = entries_.begin(); it != entries_.end();) {
        if (it->deleted) {
            if (!files.remove(files.resolveCase(pathOf(it->fileName))))
                return failed(pathOf(it->fileName));
            it = entries_.erase(it);
        } else {
            ++it;
        }
    }
    std::vector<std::string> replaced;
    for (ProfileEntry& entry : entries_) {
        if (!entry.own)
            continue;
        const bool renamed = !entry.fileName.empty() && entry.fileName != entry.name;
        if (entry.settings == entry.saved && !entry.fileName.empty() && !renamed)
            continue;
        if (renamed && text::iequals(entry.fileName, entry.name)) {
            // Only the letter case changed: on a file system that ignores case both names are one
            // file, so the file itself is renamed before it is written.
            std::error_code ec;
            std::filesystem::rename(platform::fsPath(pathOf(entry.fileName)), platform::fsPath(pathOf(entry.name)), ec);
        } else if (renamed) {
            replaced.push_back(entry.fileName);
        }
        if (!files.createFolder(folder) || !writeFile(pathOf(entry.name), profileText(entry.settings)))
            return failed(pathOf(entry.name));
        entry.fileName = entry.name;
        entry.saved = entry.settings;
    }
    for (const std::string& name : replaced) {
        // The old name may have been taken again meanwhile (renamed to, or a new profile): that
        // file was just written and stays.
        const bool reused = std::any_of(entries_.begin(), entries_.end(), [&](const ProfileEntry& entry) {
            std::error_code ec;
            return entry.own && text::iequals(entry.name, name) &&
                   (entry.name == name || std::filesystem::equivalent(platform::fsPath(pathOf(entry.name)),
                                                                      platform::fsPath(pathOf(name)), ec));
        });
        if (!reused && files.exists(pathOf(name)) && !files.remove(pathOf(name)))
            return failed(pathOf(name));
    }
    return true;
}

} // namespace pl::config
