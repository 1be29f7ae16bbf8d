// The profile combo box: filled from the profile folders, refilled only when the files changed,
// with the default profile preselected and the user's own choice kept across refills.

#include "dialog/profiles.h"

#include "base/text.h"
#include "dialog/job_dialog.h"
#include "dialog/settings.h"
#include "platform/environment_expand.h"
#include "platform/paths.h"

namespace pl::dialog {

std::string userProfileFolder(const platform::Environment& env) {
    return env.get("userprofile") + platform::PathSep + "Paperlark" + platform::PathSep;
}

std::string profileNamesIn(const platform::FileSystem& files, std::string_view folder) {
    // An empty folder value would list the working folder, which holds no profiles.
    if (folder.empty())
        return {};
    std::string names;
    for (const auto& entry : files.findAll(folder, "*.plp")) {
        const auto at = text::ifind(entry.name, ".plp");
        names += entry.name.substr(0, at);
        names += '|';
    }
    return names;
}

namespace {

std::vector<std::string> splitAtBars(std::string_view list) {
    std::vector<std::string> names;
    std::size_t from = 0;
    for (auto bar = list.find('|'); bar != std::string_view::npos; bar = list.find('|', from)) {
        names.emplace_back(list.substr(from, bar - from));
        from = bar + 1;
    }
    return names;
}

int indexOf(const forms::Control& combo, std::string_view name) {
    for (std::size_t i = 0; i < combo.items.size(); ++i)
        if (combo.items[i] == name)
            return static_cast<int>(i);
    return -1;
}

} // namespace

void JobDialog::selectProfile(int index) {
    forms::Control& combo = control("plProfile");
    if (index < -1 || index >= static_cast<int>(combo.items.size()))
        raise(err::InvalidProcedureCall, "plProfile has no entry " + text::number(index));
    const bool changed = combo.value != index;
    combo.value = index;
    combo.text = index < 0 ? std::string() : combo.items[static_cast<std::size_t>(index)];
    if (changed && index >= 0)
        actions().plProfile_Click();
}

int JobDialog::LoadProfiles() {
    std::string step;
    int unchanged = 0; // also the answer after an error: the caller then restores the user's choice
    trapErrors(errors(), "plDialog1.LoadProfiles", step, [&] {
        step = "Gibt 0 zurueck, wenn die Liste geaendert wurde";
        auto& registry = services().registry;
        const auto& env = services().os.environment();
        std::string installationFolder = registry.GetRegValue(MachineKey, "pldir");
        platform::ReplaceEnviron(installationFolder, env);

        step = "Liste ermitteln";
        const auto& files = services().os.files();
        const std::string list =
            profileNamesIn(files, installationFolder) + profileNamesIn(files, userProfileFolder(env));

        step = "Liste geaendert?";
        if (list == ProfileList) {
            unchanged = 1;
            return;
        }
        ProfileList = list;

        step = "Liste in Combo fuellen";
        forms::Control& combo = control("plProfile");
        combo.items.clear();
        combo.value = -1;
        combo.text.clear();
        for (auto& name : splitAtBars(list))
            combo.items.push_back(std::move(name));

        step = "Default setzen";
        bool defaultNamed = false;
        for (auto key : {UserKey, MachineKey}) {
            const std::string name = registry.GetRegValue(key, "DefaultProfile");
            if (isAbsent(name) || ProfileList.find(name) == std::string::npos)
                continue; // that default profile is gone: the next source decides
            // Letter case counts here: "Fax" does not select "fax".
            if (const int at = indexOf(combo, name); at >= 0)
                selectProfile(at);
            defaultNamed = true;
            break;
        }
        if (!defaultNamed && text::toLower(list).find("high quality") != std::string::npos) {
            for (std::size_t i = 0; i < combo.items.size(); ++i)
                if (text::toLower(combo.items[i]) == "high quality") {
                    selectProfile(static_cast<int>(i));
                    break;
                }
            // From now on the user has an explicit default.
            registry.SetRegValue(UserKey, "DefaultProfile", "High Quality");
        }
        if (combo.text.empty() && !combo.items.empty())
            selectProfile(0);
    });
    return unchanged;
}

void JobDialog::refreshProfiles() {
    const std::string chosen = control("plProfile").text;
    if (LoadProfiles() != 0)
        return;
    const forms::Control& combo = control("plProfile");
    if (const int at = indexOf(combo, chosen); at >= 0)
        selectProfile(at);
}

} // namespace pl::dialog
