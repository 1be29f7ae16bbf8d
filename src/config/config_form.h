#pragma once
// The configuration program behind the job dialog's "Edit Configuration": one window with four
// pages (language, defaults, profiles, policy). The view edits the public values below and calls
// the event procedures; nothing is written until Apply or OK, and Cancel leaves everything as it
// was. Values are written through the registry module into the user's key; profiles are files in
// the user's profile folder.

#include "config/config_texts.h"
#include "config/config_view.h"
#include "config/policy_page.h"
#include "config/profile_list.h"
#include "platform/services.h"

#include <string>
#include <vector>

namespace pl::config {

struct LanguageChoice {
    std::string label;
    int code = 0;     // 0 = as the locale says (no value of the user's own), else 1, 2 or 3
    std::string file; // the language file for code 3
};

// The Defaults page. ADefault: 0 none, 1 email, 2 saveas, 3 desktop.
struct Defaults {
    std::string defaultProfile; // empty: not set
    bool openPdf = true;
    int defaultAction = 0;
    std::string desktopCaption;
    std::string userSpool;
    bool debug = false;
    bool operator==(const Defaults&) const = default;
};

class ConfigForm {
public:
    ConfigForm(Services& services, ConfigView& view);

    // Reads every value and profile; the texts follow the assistant's language.
    void Form_Load();

    const ConfigTexts& texts() const { return texts_; }

    // Language
    std::vector<LanguageChoice> languages;
    int language = 0; // index into `languages`

    // Defaults, and what the administrator's machine key holds for those it also answers
    Defaults defaults;
    std::string machineDefaultProfile, machineDefaultAction, machineDesktopCaption;

    // Profiles and policy
    ProfileList profiles;
    PolicyPage policy;

    void cmdNew_Click() { profiles.newProfile(); }
    void cmdCopy_Click() { profiles.copyProfile(); }
    void cmdRename_Click();
    void cmdDelete_Click();

    // Writes what changed; false (with a message, nothing of the refused part written) when a value
    // cannot be written as it stands.
    bool cmdApply_Click();
    void cmdOk_Click();
    void cmdCancel_Click();

private:
    void loadLanguage();
    void loadDefaults();
    bool check();
    // The registry values that changed; false when one could not be written (said in a message).
    bool writeValues();
    bool writeValue(std::string_view name, std::string_view value);

    Services& services_;
    ConfigView& view_;
    ConfigTexts texts_;
    int savedLanguage_ = 0;
    Defaults savedDefaults_;
};

} // namespace pl::config
