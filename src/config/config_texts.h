#pragma once
// The configuration program's own texts, in German and English. It speaks the language the
// assistant speaks: German when German is chosen, English otherwise (a language file of the suite
// translates the assistant only).

#include <string>
#include <string_view>

namespace pl::config {

enum class Txt {
    Title,
    TabLanguage,
    TabDefaults,
    TabProfiles,
    TabPolicy,
    LanguageIntro,
    LanguageAuto,
    LanguageGerman,
    LanguageEnglish,
    LanguageFile,
    DefaultProfile,
    NotSet,
    OpenPdf,
    DefaultAction,
    ActionNone,
    ActionEmail,
    ActionSaveAs,
    ActionDesktop,
    ActionMultiDoc,
    ActionSaveDir,
    ActionSaveFile,
    DesktopCaption,
    UserSpool,
    Debug,
    AdminValue,
    SuiteProfile,
    OwnProfile,
    NewProfile,
    CopyProfile,
    RenameProfile,
    DeleteProfile,
    Format,
    Quality,
    QualityDefault,
    QualityPrepress,
    QualityPrinter,
    QualityEbook,
    QualityScreen,
    PdfA,
    Resolution,
    ExtraSwitches,
    UserPassword,
    OwnerPassword,
    AutoAction,
    ActionTarget,
    ReadOnlyProfile,
    PolicyIntro,
    PolicyLocked,
    PolicyFeature,
    PolicyMachine,
    PolicyUser,
    PolicyResult,
    PolicyHide,
    PolicyShow,
    Shown,
    Hidden,
    FeatureEmail,
    FeatureSaveAs,
    FeatureProfile,
    FeatureDesktop,
    FeatureMultiDoc,
    FeatureFileName,
    FeatureOpenPdf,
    FeatureEncrypt,
    FeatureConfig,
    AskProfileName,
    NameInvalid,
    NameTaken,
    AskDelete,
    SwitchRefused,
    DeviceInSwitches,
    PasswordInSwitches,
    PasswordUnusable,
    TargetMissing,
    ResolutionRange,
    SpoolNotAbsolute,
    WriteFailed,
    CopyOf,
    Ok,
    Cancel,
    Apply,
    Count
};

class ConfigTexts {
public:
    explicit ConfigTexts(bool german = false) : german_(german) {}
    bool german() const { return german_; }
    void setGerman(bool german) { german_ = german; }
    // The text; "$1$" in it is replaced by `detail`.
    std::string operator()(Txt id, std::string_view detail = {}) const;

private:
    bool german_;
};

} // namespace pl::config
