#include "config/policy_page.h"

#include "base/text.h"
#include "platform/suite_settings.h"

namespace pl::config {

namespace {

// The text the job dialog goes by: the machine's value and the user's, lower-cased, cut after
// the first "|".
std::string effectivePolicy(std::string_view machine, std::string_view user) {
    std::string policy = text::toLower(machine) + text::toLower(user);
    const std::size_t bar = policy.find('|');
    if (bar != std::string::npos)
        policy.erase(bar + 1);
    return policy;
}

PolicyChoice choiceIn(std::string_view policy, const PolicyFeature& feature) {
    // An enable code wins over the disable code of the same feature.
    if (text::icontains(policy, feature.enableCode))
        return PolicyChoice::Show;
    if (text::icontains(policy, feature.disableCode))
        return PolicyChoice::Hide;
    return PolicyChoice::NotSet;
}

} // namespace

const std::array<PolicyFeature, FeatureCount>& policyFeatures() {
    static constexpr std::array<PolicyFeature, FeatureCount> features{{
        {"disableemail", "enableemail", Txt::FeatureEmail},
        {"disablesaveas", "enablesaveas", Txt::FeatureSaveAs},
        {"disablequality", "enablequality", Txt::FeatureProfile},
        {"disabledesktop", "enabledesktop", Txt::FeatureDesktop},
        {"disablemultidoc", "enablemultidoc", Txt::FeatureMultiDoc},
        {"disablefilename", "enablefilename", Txt::FeatureFileName},
        {"disableopenpdf", "enableopenpdf", Txt::FeatureOpenPdf},
        {"disableencryptpdf", "enableencryptpdf", Txt::FeatureEncrypt},
        {"disableconfig", "enableconfig", Txt::FeatureConfig},
    }};
    return features;
}

void PolicyPage::load(const platform::Registry& registry) {
    machine_ = platform::regText(registry, platform::SuiteMachineKey, "APol");
    userText_ = platform::regText(registry, platform::SuiteUserKey, "APol");
    locked_ = machine_.find('|') != std::string::npos;
    const std::string user = effectivePolicy(userText_, "");
    for (int i = 0; i < FeatureCount; ++i)
        user_[i] = choiceIn(user, policyFeatures()[i]);
    savedUser_ = user_;
}

PolicyChoice PolicyPage::machineChoice(int feature) const {
    return choiceIn(effectivePolicy(machine_, ""), policyFeatures()[feature]);
}

bool PolicyPage::setUserChoice(int feature, PolicyChoice choice) {
    if (locked_)
        return false;
    user_[feature] = choice;
    return true;
}

bool PolicyPage::shown(int feature) const {
    const PolicyFeature& f = policyFeatures()[feature];
    const std::string policy = effectivePolicy(machine_, changed() ? userValue() : userText_);
    return text::icontains(policy, f.enableCode) || !text::icontains(policy, f.disableCode);
}

std::string PolicyPage::userValue() const {
    std::string value;
    for (int i = 0; i < FeatureCount; ++i) {
        if (user_[i] == PolicyChoice::NotSet)
            continue;
        if (!value.empty())
            value += ',';
        value += user_[i] == PolicyChoice::Hide ? policyFeatures()[i].disableCode : policyFeatures()[i].enableCode;
    }
    return value;
}

} // namespace pl::config
