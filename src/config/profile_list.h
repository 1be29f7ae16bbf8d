#pragma once
// The profiles page: the suite's profiles, which can only be copied, and the user's own in their
// profile folder, which can be made, copied, renamed, deleted and edited. Nothing touches a file
// until the changes are saved; then deletions go first, then every new or changed profile is
// written, then the files of renamed profiles are removed.

#include "config/config_texts.h"
#include "config/config_view.h"
#include "config/profile_settings.h"
#include "platform/services.h"

#include <string>
#include <vector>

namespace pl::config {

struct ProfileEntry {
    std::string name;
    bool own = false;     // in the user's profile folder; the suite's profiles are read-only
    std::string fileName; // the name it has on disk without ".plp"; empty for one not yet saved
    ProfileSettings settings;
    ProfileSettings saved; // as on disk
    bool deleted = false;
};

class ProfileList {
public:
    ProfileList(Services& services, ConfigView& view, const ConfigTexts& texts)
        : services_(services), view_(view), texts_(texts) {}

    // The folders: the suite folder (plDir) and %userprofile%/Paperlark/.
    std::string suiteFolder() const;
    std::string ownFolder() const;

    void load();
    std::vector<ProfileEntry>& entries() { return entries_; }
    const std::vector<ProfileEntry>& entries() const { return entries_; }
    // The names the job dialog offers, suite first, as the dialog lists them.
    std::vector<std::string> names() const;
    int selected = -1;

    // Event procedures of the page's buttons; each asks what it needs through the view. A name
    // changed from `renamedFrom` is reported so that a default naming it can follow.
    void newProfile();
    void copyProfile();
    void renameProfile(std::string& renamedFrom, std::string& renamedTo);
    void deleteProfile();

    // The first own profile whose settings cannot be written, selected, with the refusal shown.
    bool check();
    // Writes every change; false (with a message) when a file could not be written or removed.
    bool save();

private:
    std::optional<std::string> askName(std::string_view proposal);
    void add(ProfileEntry entry);

    Services& services_;
    ConfigView& view_;
    const ConfigTexts& texts_;
    std::vector<ProfileEntry> entries_;
};

} // namespace pl::config
