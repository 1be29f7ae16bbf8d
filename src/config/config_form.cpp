#include "config/config_form.h"

#include "base/text.h"
#include "platform/paths.h"
#include "platform/suite_settings.h"
#include "texts/language_selection.h"
#include "texts/texts.h"

#include <algorithm>
#include <array>

namespace pl::config {

namespace {

constexpr std::string_view UserKey = platform::SuiteUserKey;
constexpr std::string_view MachineKey = platform::SuiteMachineKey;
constexpr std::array<std::string_view, 4> DefaultActionWords{"", "email", "saveas", "desktop"};

} // namespace

ConfigForm::ConfigForm(Services& services, ConfigView& view)
    : profiles(services, view, texts_), services_(services), view_(view) {}

void ConfigForm::Form_Load() {
    policy.load(services_.registry);
    profiles.load();
    loadLanguage();
    loadDefaults();
}

void ConfigForm::loadLanguage() {
    const platform::Registry& registry = services_.registry;
    const int code = texts::StoredLanguageCode(platform::regText(registry, UserKey, "language"));
    // The language the assistant speaks: the user's choice, else the machine's.
    const int anyCode = texts::SetSpr(services_);
    // Without a stored choice the assistant follows the locale: German for a German one.
    const std::string locale = platform::regText(registry, "HKCU\\Control Panel\\International", "locale");
    texts_.setGerman(anyCode == texts::German || (anyCode == 0 && text::trimBlanks(locale).ends_with("07")));

    languages = {{texts_(Txt::LanguageAuto), 0, {}},
                 {texts_(Txt::LanguageGerman), texts::German, {}},
                 {texts_(Txt::LanguageEnglish), texts::English, {}}};
    std::vector<std::string> files;
    for (const platform::DirEntry& entry : services_.os.files().findAll(profiles.suiteFolder(), "*.lan"))
        files.push_back(entry.name);
    const std::string lanFile = platform::userThenMachine(registry, "LanFile");
    if (code == texts::External && !lanFile.empty() &&
        std::none_of(files.begin(), files.end(), [&](const std::string& f) { return text::iequals(f, lanFile); }))
        files.push_back(lanFile);
    for (const std::string& file : files) {
        const std::string name = text::iendsWith(file, ".lan") ? file.substr(0, file.size() - 4) : file;
        languages.push_back({texts_(Txt::LanguageFile, name), texts::External, file});
    }

    language = 0;
    for (std::size_t i = 0; i < languages.size(); ++i) {
        const LanguageChoice& choice = languages[i];
        if (choice.code == code && (code != texts::External || text::iequals(choice.file, lanFile)))
            language = static_cast<int>(i);
    }
    savedLanguage_ = language;
}

void ConfigForm::loadDefaults() {
    const platform::Registry& registry = services_.registry;
    const auto user = [&](std::string_view name) { return platform::regText(registry, UserKey, name); };
    defaults.defaultProfile = user("DefaultProfile");
    // The dialog ticks the box for any value but "0".
    defaults.openPdf = user("OpenPdf") != "0";
    const std::string action = text::toLower(user("ADefault"));
    const auto word = std::find(DefaultActionWords.begin() + 1, DefaultActionWords.end(), action);
    defaults.defaultAction = word == DefaultActionWords.end() ? 0 : static_cast<int>(word - DefaultActionWords.begin());
    defaults.desktopCaption = user("DesktopCaption");
    defaults.userSpool = user("psdir");
    defaults.debug = user("Debug") == "1";
    savedDefaults_ = defaults;

    machineDefaultProfile = platform::regText(registry, MachineKey, "DefaultProfile");
    machineDefaultAction = platform::regText(registry, MachineKey, "ADefault");
    machineDesktopCaption = platform::regText(registry, MachineKey, "DesktopCaption");
}

void ConfigForm::cmdRename_Click() {
    std::string from, to;
    profiles.renameProfile(from, to);
    if (!from.empty() && defaults.defaultProfile == from)
        defaults.defaultProfile = to;
}

void ConfigForm::cmdDelete_Click() {
    if (profiles.selected < 0)
        return;
    const std::string name = profiles.entries()[profiles.selected].name;
    profiles.deleteProfile();
    const std::vector<std::string> names = profiles.names();
    if (defaults.defaultProfile == name && std::find(names.begin(), names.end(), name) == names.end())
        defaults.defaultProfile.clear();
}

bool ConfigForm::check() {
    if (!profiles.check())
        return false;
    const std::string spool(text::trimBlanks(defaults.userSpool));
    if (!spool.empty() && !platform::fsPath(spool).is_absolute()) {
        view_.msgBox(texts_(Txt::SpoolNotAbsolute, spool), mb::Exclamation, texts_(Txt::Title));
        return false;
    }
    return true;
}

bool ConfigForm::writeValue(std::string_view name, std::string_view value) {
    if (value.empty()) {
        // Nothing of the user's own: the machine's value or the built-in default applies again.
        if (!platform::regText(services_.registry, UserKey, name).empty())
            services_.registry.DeleteRegEntry(UserKey, name);
        return true;
    }
    if (services_.registry.SetRegValue(UserKey, name, value) == "True")
        return true;
    view_.msgBox(texts_(Txt::WriteFailed, std::string(UserKey) + "\\" + std::string(name)), mb::Exclamation,
                 texts_(Txt::Title));
    return false;
}

bool ConfigForm::writeValues() {
    bool ok = true;
    if (language != savedLanguage_) {
        const LanguageChoice& choice = languages[language];
        ok = writeValue("language", choice.code == 0 ? "" : text::number(choice.code)) && ok;
        if (choice.code == texts::External)
            ok = writeValue("LanFile", choice.file) && ok;
    }
    const Defaults& d = defaults;
    const Defaults& was = savedDefaults_;
    if (d.defaultProfile != was.defaultProfile)
        ok = writeValue("DefaultProfile", d.defaultProfile) && ok;
    if (d.openPdf != was.openPdf)
        ok = writeValue("OpenPdf", d.openPdf ? "1" : "0") && ok;
    if (d.defaultAction != was.defaultAction)
        ok = writeValue("ADefault", DefaultActionWords[d.defaultAction]) && ok;
    if (d.desktopCaption != was.desktopCaption)
        ok = writeValue("DesktopCaption", d.desktopCaption) && ok;
    if (d.userSpool != was.userSpool) {
        const std::string_view spool = text::trimBlanks(d.userSpool);
        ok = writeValue("psdir", spool.empty() ? "" : platform::withTrailingSep(spool)) && ok;
    }
    if (d.debug != was.debug)
        ok = writeValue("Debug", d.debug ? "1" : "0") && ok;
    if (policy.changed() && !policy.locked())
        ok = writeValue("APol", policy.userValue()) && ok;
    return ok;
}

bool ConfigForm::cmdApply_Click() {
    bool ok = false;
    trapErrors(services_.errors, "plConfig.cmdApply_Click", "", [&] {
        const ProfileEntry* current = profiles.selected >= 0 ? &profiles.entries()[profiles.selected] : nullptr;
        const std::string selectedName = current != nullptr && !current->deleted ? current->name : std::string();
        const bool selectedOwn = current != nullptr && current->own;
        if (!check())
            return;
        ok = writeValues();
        ok = profiles.save() && ok;
        if (!ok)
            return;
        // What was written is what the page now starts from; the texts follow a new language and
        // the profile that was selected stays selected.
        Form_Load();
        const auto& entries = profiles.entries();
        for (std::size_t i = 0; i < entries.size(); ++i)
            if (entries[i].name == selectedName && entries[i].own == selectedOwn)
                profiles.selected = static_cast<int>(i);
        view_.refresh();
    });
    return ok;
}

void ConfigForm::cmdOk_Click() {
    if (cmdApply_Click())
        view_.closeWindow();
}

void ConfigForm::cmdCancel_Click() {
    view_.closeWindow();
}

} // namespace pl::config
